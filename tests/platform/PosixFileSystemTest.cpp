#include <gtest/gtest.h>

#include <cerrno>

#include "Platform/PosixFileSystem.h"

namespace vantro {
namespace {

// The POSIX file manager's own rules, beyond what every file manager shares
// (those are in contract/FileSystemContract.cpp): the whole error table, and
// standardisation as plain string work against a fixed home.

TEST(PosixErrors, MapToCocoaCodes) {
    struct Case {
        int posix;
        std::int64_t cocoa;
    } cases[] = {{EPERM, 257}, {EACCES, 257}, {ENOENT, 260}, {ENOTDIR, 256}, {EIO, 256}};
    for (const auto& c : cases) {
        auto error = PosixFileSystem::cocoaErrorForPosixCode(c.posix);
        EXPECT_EQ(error.domain, NSCocoaErrorDomain);
        EXPECT_EQ(error.code, c.cocoa) << c.posix;
        ASSERT_NE(error.underlying, nullptr);
        EXPECT_EQ(error.underlying->domain, NSPOSIXErrorDomain);
        EXPECT_EQ(error.underlying->code, c.posix);
        EXPECT_EQ(error.underlying->underlying, nullptr);
    }
}

TEST(PosixPaths, ExpandTildesAndStandardize) {
    PosixFileSystem fileSystem("/Users/alice");
    struct Case {
        const char* in;
        const char* expanded;
        const char* standardized;
    } cases[] = {
        {"~/Library/Safari/", "/Users/alice/Library/Safari/", "/Users/alice/Library/Safari"},
        {"~", "/Users/alice", "/Users/alice"},
        {"/a//b/./c/", "/a//b/./c/", "/a/b/c"},
        {"/a/b/../c", "/a/b/../c", "/a/c"},
        {"/..", "/..", "/"},
        {"~bob/x", "~bob/x", "~bob/x"},
        {"relative/../x", "relative/../x", "relative/../x"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(fileSystem.stringByExpandingTildeInPath(c.in), c.expanded) << c.in;
        EXPECT_EQ(fileSystem.stringByStandardizingPath(c.in), c.standardized) << c.in;
    }
}

}  // namespace
}  // namespace vantro
