#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/PlatformUnderTest.h"

namespace vantro::test {
namespace {

namespace fs = std::filesystem;

// The file manager's contract: what fileExistsAtPath:isDirectory: and
// contentsOfDirectoryAtPath:error: answer on a real disk, and the Cocoa error
// with its POSIX error beneath that a failed listing reports.
class FileSystemContract : public ::testing::Test {
protected:
    void SetUp() override {
        root = put->scratchDirectory();
        fs::create_directories(root + "/folder/sub");
        fs::create_directories(root + "/empty");
        std::ofstream(root + "/folder/a.txt") << "a";
        std::ofstream(root + "/folder/.hidden") << "h";
        std::ofstream(root + "/plain") << "x";
    }

    static std::vector<std::string> sorted(std::vector<std::string> names) {
        std::sort(names.begin(), names.end());
        return names;
    }

    std::unique_ptr<PlatformUnderTest> put = makePlatformUnderTest();
    FileSystem& fileSystem = put->platform().fileSystem();
    std::string root;
};

TEST_F(FileSystemContract, ExistsTellsDirectoriesFromFiles) {
    struct Case {
        std::string path;
        bool exists;
        bool isDirectory;
    } cases[] = {
        {root + "/plain", true, false},
        {root + "/folder", true, true},
        {root + "/folder/", true, true},
        {root + "/folder/a.txt", true, false},
        {root + "/missing", false, false},
        {root + "/plain/below", false, false},
        // The file manager takes paths as they are: a tilde is a name like
        // any other, not the home folder.
        {"~", false, false},
    };
    for (const auto& c : cases) {
        bool isDirectory = !c.isDirectory;
        EXPECT_EQ(fileSystem.fileExistsAtPath(c.path, &isDirectory), c.exists) << c.path;
        // Foundation leaves the flag undefined for a path that is not there.
        if (c.exists) {
            EXPECT_EQ(isDirectory, c.isDirectory) << c.path;
        }
        EXPECT_EQ(fileSystem.fileExistsAtPath(c.path, nullptr), c.exists) << c.path;
    }
}

TEST_F(FileSystemContract, ListingsNameEveryEntryButTheDotEntries) {
    auto listing = fileSystem.contentsOfDirectoryAtPath(root + "/folder", nullptr);
    ASSERT_TRUE(listing.has_value());
    // Foundation does not promise an order.
    EXPECT_EQ(sorted(*listing), (std::vector<std::string>{".hidden", "a.txt", "sub"}));

    PlatformError error;
    auto empty = fileSystem.contentsOfDirectoryAtPath(root + "/empty", &error);
    ASSERT_TRUE(empty.has_value()) << "an empty folder lists, with nothing in it";
    EXPECT_TRUE(empty->empty());

    // Any thread may ask.
    std::optional<std::vector<std::string>> fromAnotherThread;
    bool existsFromAnotherThread = false;
    std::thread([&] {
        fromAnotherThread = fileSystem.contentsOfDirectoryAtPath(root + "/folder", nullptr);
        existsFromAnotherThread = fileSystem.fileExistsAtPath(root + "/folder/a.txt", nullptr);
    }).join();
    ASSERT_TRUE(fromAnotherThread.has_value());
    EXPECT_EQ(sorted(*fromAnotherThread), sorted(*listing));
    EXPECT_TRUE(existsFromAnotherThread);
}

TEST_F(FileSystemContract, ListingFailuresCarryTheirPosixError) {
    struct Case {
        std::string path;
        std::int64_t cocoa;
        std::int64_t posix;
    } cases[] = {
        {root + "/missing", NSFileReadNoSuchFileError, ENOENT},
        {root + "/missing/deeper", NSFileReadNoSuchFileError, ENOENT},
        // Listing takes the path as it is: "~" is no folder of the working one.
        {"~", NSFileReadNoSuchFileError, ENOENT},
        {root + "/plain", NSFileReadUnknownError, ENOTDIR},
        {root + "/plain/below", NSFileReadUnknownError, ENOTDIR},
    };
    for (const auto& c : cases) {
        PlatformError error;
        EXPECT_FALSE(fileSystem.contentsOfDirectoryAtPath(c.path, &error).has_value()) << c.path;
        EXPECT_EQ(error.domain, NSCocoaErrorDomain) << c.path;
        EXPECT_EQ(error.code, c.cocoa) << c.path;
        ASSERT_NE(error.underlying, nullptr) << c.path;
        EXPECT_EQ(error.underlying->domain, NSPOSIXErrorDomain) << c.path;
        EXPECT_EQ(error.underlying->code, c.posix) << c.path;
        // A caller that does not want the error may leave it out.
        EXPECT_FALSE(fileSystem.contentsOfDirectoryAtPath(c.path, nullptr).has_value()) << c.path;
    }
}

TEST_F(FileSystemContract, RefusalsAreNoPermissionOverTheirPosixError) {
    struct Case {
        std::string what;
        std::optional<std::string> path;
        std::int64_t posix;
    } cases[] = {
        {"permission bits", put->denyReadingByPermissions(root + "/folder") ? std::optional(root + "/folder") : std::nullopt,
         EACCES},
        {"privacy protection", put->privacyProtectedDirectory(), EPERM},
    };
    int checked = 0;
    for (const auto& c : cases) {
        if (!c.path) continue;
        ++checked;
        PlatformError error;
        EXPECT_FALSE(fileSystem.contentsOfDirectoryAtPath(*c.path, &error).has_value()) << c.what;
        EXPECT_EQ(error.domain, NSCocoaErrorDomain) << c.what;
        EXPECT_EQ(error.code, NSFileReadNoPermissionError) << c.what;
        ASSERT_NE(error.underlying, nullptr) << c.what;
        EXPECT_EQ(error.underlying->domain, NSPOSIXErrorDomain) << c.what;
        EXPECT_EQ(error.underlying->code, c.posix) << c.what;
        // A refused folder is still there, and still a folder.
        bool isDirectory = false;
        EXPECT_TRUE(fileSystem.fileExistsAtPath(*c.path, &isDirectory)) << c.what;
        EXPECT_TRUE(isDirectory) << c.what;
    }
    if (checked == 0) GTEST_SKIP() << "neither refusal can be arranged for this process";
}

TEST_F(FileSystemContract, TildesExpandToTheHomeFolder) {
    const std::string home = put->homeDirectory();
    struct Case {
        std::string in;
        std::string expanded;
    } cases[] = {
        {"~", home},
        {"~/Library/Mail", home + "/Library/Mail"},
        {"/Users/nobody/~", "/Users/nobody/~"},
        {"/absolute/path", "/absolute/path"},
        {"relative/path", "relative/path"},
        {"", ""},
    };
    for (const auto& c : cases) EXPECT_EQ(fileSystem.stringByExpandingTildeInPath(c.in), c.expanded) << c.in;
}

// Only paths without symbolic links, under a top-level folder that does not
// exist or the home folder, are standardised here: on a Mac, ".." in an
// absolute path is resolved against the disk's symbolic links, and a leading
// "/private" is dropped when the rest names an existing file.
TEST_F(FileSystemContract, StandardisingExpandsCollapsesAndResolvesParents) {
    const std::string home = put->homeDirectory();
    struct Case {
        std::string in;
        std::string standardized;
    } cases[] = {
        {"~", home},
        {"~/Library/Safari/", home + "/Library/Safari"},
        {"~/Library//./Safari", home + "/Library/Safari"},
        {"/vantro-none/a//b/./c/", "/vantro-none/a/b/c"},
        {"/vantro-none/a/b/../c", "/vantro-none/a/c"},
        {"/vantro-none/a/b/../../c", "/vantro-none/c"},
        // A relative path keeps its references to the parent folder.
        {"vantro-none/a/../b", "vantro-none/a/../b"},
        {"vantro-none//a/./b/", "vantro-none/a/b"},
    };
    for (const auto& c : cases) EXPECT_EQ(fileSystem.stringByStandardizingPath(c.in), c.standardized) << c.in;
}

}  // namespace
}  // namespace vantro::test
