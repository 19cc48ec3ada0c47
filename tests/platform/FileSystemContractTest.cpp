#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "Platform/PosixFileSystem.h"

namespace vantro {
namespace {

namespace fs = std::filesystem;

// The file manager's contract, run against the real POSIX file system.
class FileSystemContract : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "vantro-fs-XXXXXX").string();
        root = mkdtemp(pattern.data());
        fileSystem = std::make_unique<PosixFileSystem>(root + "/home");
        fs::create_directories(root + "/home/Documents");
        std::ofstream(root + "/home/Documents/a.txt") << "a";
        std::ofstream(root + "/plain") << "x";
    }
    void TearDown() override {
        fs::permissions(root + "/home/Documents", fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(root);
    }
    std::string root;
    std::unique_ptr<PosixFileSystem> fileSystem;
};

TEST_F(FileSystemContract, ExistsTellsDirectoriesFromFiles) {
    bool isDirectory = true;
    EXPECT_TRUE(fileSystem->fileExistsAtPath(root + "/plain", &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(fileSystem->fileExistsAtPath(root + "/home", &isDirectory));
    EXPECT_TRUE(isDirectory);
    EXPECT_FALSE(fileSystem->fileExistsAtPath(root + "/missing", &isDirectory));
    EXPECT_FALSE(isDirectory);
    EXPECT_TRUE(fileSystem->fileExistsAtPath(root + "/plain", nullptr));
}

TEST_F(FileSystemContract, ListingFailuresCarryTheirPosixError) {
    struct Case {
        std::string path;
        std::int64_t cocoa;
        std::int64_t posix;
    } cases[] = {
        {root + "/missing", NSFileReadNoSuchFileError, ENOENT},
        {root + "/plain", NSFileReadUnknownError, ENOTDIR},
    };
    for (const auto& c : cases) {
        PlatformError error;
        EXPECT_FALSE(fileSystem->contentsOfDirectoryAtPath(c.path, &error).has_value()) << c.path;
        EXPECT_EQ(error.domain, NSCocoaErrorDomain);
        EXPECT_EQ(error.code, c.cocoa) << c.path;
        ASSERT_NE(error.underlying, nullptr);
        EXPECT_EQ(error.underlying->domain, NSPOSIXErrorDomain);
        EXPECT_EQ(error.underlying->code, c.posix) << c.path;
    }
    auto listing = fileSystem->contentsOfDirectoryAtPath(root + "/home/Documents", nullptr);
    ASSERT_TRUE(listing.has_value());
    EXPECT_EQ(*listing, std::vector<std::string>{"a.txt"});
}

TEST_F(FileSystemContract, PermissionBitsGiveNoPermissionWithEACCES) {
    if (geteuid() == 0) GTEST_SKIP() << "permission bits do not stop the super-user";
    fs::permissions(root + "/home/Documents", fs::perms::none);
    PlatformError error;
    EXPECT_FALSE(fileSystem->contentsOfDirectoryAtPath(root + "/home/Documents", &error));
    EXPECT_EQ(error.code, NSFileReadNoPermissionError);
    EXPECT_EQ(error.underlying->code, EACCES);
}

TEST(PosixErrors, MapToCocoaCodes) {
    struct Case {
        int posix;
        std::int64_t cocoa;
    } cases[] = {{EPERM, 257}, {EACCES, 257}, {ENOENT, 260}, {ENOTDIR, 256}, {EIO, 256}};
    for (const auto& c : cases) {
        auto error = PosixFileSystem::cocoaErrorForPosixCode(c.posix);
        EXPECT_EQ(error.code, c.cocoa) << c.posix;
        EXPECT_EQ(error.underlying->code, c.posix);
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
