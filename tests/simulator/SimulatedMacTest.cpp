#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro::sim {
namespace {

TEST(SimulatedMac, EachMacIsAFreshProcessAndLeavesNothingBehind) {
    std::shared_ptr<VantroRequestStatusCenter> first;
    std::string firstRoot;
    {
        SimulatedMac mac;
        EXPECT_EQ(HostProcess::currentOrNull(), &mac.process());
        first = VantroRequestStatusCenter::sharedRequestStatusCenter();
        first->setAllowPotentiallyVerboseRechecks(false);
        mac.defaults().setBool(true, kContactsAccessRequested);
        first->authorizationRequestTypeForIdentifier(VantroPrivacyFullDiskAccess);
        EXPECT_EQ(mac.bundles().reads("RequestTypes.plist"), 1);
        firstRoot = mac.rootDirectory();
        EXPECT_TRUE(std::filesystem::is_directory(mac.homeDirectory()));
    }
    EXPECT_EQ(HostProcess::currentOrNull(), nullptr);
    EXPECT_FALSE(std::filesystem::exists(firstRoot));

    SimulatedMac mac;
    auto second = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_NE(second, first);
    EXPECT_TRUE(second->allowPotentiallyVerboseRechecks());
    EXPECT_FALSE(mac.defaults().boolForKey(kContactsAccessRequested));
    second->authorizationRequestTypeForIdentifier(VantroPrivacyFullDiskAccess);
    EXPECT_EQ(mac.bundles().reads("RequestTypes.plist"), 1);  // read anew by the new process
    EXPECT_NE(mac.rootDirectory(), firstRoot);
}

TEST(SimulatedMac, ReleasesReportRealAppKitNumbers) {
    struct Case {
        const char* release;
        double floorValue;
    } cases[] = {{"10.9", 1265}, {"10.15", 1894}, {"13", NSAppKitVersionNumber13_0}, {"14", NSAppKitVersionNumber14_0},
                  {"26", 2685}};
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        EXPECT_EQ(flooredAppKitVersion(), c.floorValue) << c.release;
        EXPECT_GT(mac.system().appKitVersionNumber(), c.floorValue) << "running systems report a fraction";
    }
}

TEST(SimulatedMac, AnUnknownReleaseIsRefusedByName) {
    for (const char* release : {"10.8", "16", "", "14.1"}) {
        try {
            SimulatedMac mac(MacConfiguration{.release = release});
            ADD_FAILURE() << "made a Mac of release \"" << release << "\"";
        } catch (const std::invalid_argument& error) {
            EXPECT_NE(std::string(error.what()).find(std::string("\"") + release + "\""), std::string::npos) << error.what();
        }
        EXPECT_EQ(HostProcess::currentOrNull(), nullptr) << "nothing is left installed";
    }
    EXPECT_EQ(MacConfiguration{.release = "16"}.appKitVersionNumber(), 0);
}

TEST(SimulatedMac, DisksOfProcessesThatNoLongerRunAreRemoved) {
    namespace fs = std::filesystem;
    // A process that has ended, and one that runs (this one's parent).
    pid_t ended = fork();
    if (ended == 0) _exit(0);
    ASSERT_GT(ended, 0);
    waitpid(ended, nullptr, 0);
    fs::path base;
    {
        SimulatedMac first;
        base = fs::path(first.rootDirectory()).parent_path();
    }
    const fs::path abandoned = base / ("vantro-mac-" + std::to_string(ended) + "-test01");
    const fs::path running = base / ("vantro-mac-" + std::to_string(getppid()) + "-test02");
    const fs::path foreign = base / "vantro-mac-notapid";
    for (const auto& folder : {abandoned, running, foreign}) fs::create_directories(folder / "Users" / "alice");
    fs::permissions(abandoned / "Users", fs::perms::none);

    SimulatedMac mac;
    EXPECT_FALSE(fs::exists(abandoned));
    EXPECT_TRUE(fs::exists(running));
    EXPECT_TRUE(fs::exists(foreign));
    EXPECT_NE(fs::path(mac.rootDirectory()).filename().string().find("vantro-mac-" + std::to_string(getpid()) + "-"),
              std::string::npos);
    fs::remove_all(running);
    fs::remove_all(foreign);
}

TEST(SimulatedMac, ABundleReadsEachStringsTableOnce) {
    SimulatedMac mac(MacConfiguration{.languages = {"de"}});
    auto bundle = mac.bundles().frameworkBundle();
    const std::string granted = bundle->localizedString("Permission Granted", "", std::nullopt);
    EXPECT_NE(granted, "Permission Granted") << "the German table is read";
    for (int i = 0; i < 3; ++i) bundle->localizedString("Grant Permission", "", std::nullopt);
    bundle->localizedString("No Such Key", "", std::nullopt);
    EXPECT_EQ(mac.bundles().reads("Localizable.strings"), 1);
    bundle->localizedString("Full Disk Access", "", std::string("PrivacyCategoryLabels"));
    EXPECT_EQ(mac.bundles().reads("PrivacyCategoryLabels.strings"), 1) << "each table is read on its own";

    // Another language is another file, read once in its turn.
    mac.defaults().setUserLanguages({"fr"});
    EXPECT_NE(bundle->localizedString("Permission Granted", "", std::nullopt), granted);
    bundle->localizedString("Permission Granted", "", std::nullopt);
    EXPECT_EQ(mac.bundles().reads("Localizable.strings"), 2);
}

TEST(SimulatedMac, SystemVersionChecksCompareWholeVersions) {
    SimulatedMac mac(MacConfiguration{.release = "10.11"});
    EXPECT_TRUE(mac.system().isOperatingSystemAtLeastVersion({10, 11, 0}));
    EXPECT_TRUE(mac.system().isOperatingSystemAtLeastVersion({10, 9, 9}));
    EXPECT_FALSE(mac.system().isOperatingSystemAtLeastVersion({10, 12, 0}));
}

TEST(SimulatedMac, ATemporaryFolderThatCannotHoldTheDiskIsAFailureNamingIt) {
    namespace fs = std::filesystem;
    const char* before = std::getenv("TMPDIR");
    const std::string saved = before ? before : "";
    const fs::path scratch = fs::temp_directory_path() / ("vantro-tmpdir-test-" + std::to_string(getpid()));
    fs::create_directories(scratch);
    std::ofstream(scratch / "file") << "";
    const struct {
        std::string folder;
        std::string cause;
    } cases[] = {
        {(scratch / "missing").string(), "No such file or directory"},
        {(scratch / "file" / "tmp").string(), "Not a directory"},
    };
    for (const auto& c : cases) {
        setenv("TMPDIR", c.folder.c_str(), 1);
        try {
            SimulatedMac mac;
            ADD_FAILURE() << "made a Mac in " << c.folder << " at " << mac.rootDirectory();
        } catch (const SetupFailure& failure) {
            const std::string message = failure.what();
            EXPECT_NE(message.find(c.folder + ": " + c.cause), std::string::npos) << message;
        }
        EXPECT_EQ(HostProcess::currentOrNull(), nullptr) << "nothing is left installed";
    }
    if (before)
        setenv("TMPDIR", saved.c_str(), 1);
    else
        unsetenv("TMPDIR");
    fs::remove_all(scratch);
}

}  // namespace
}  // namespace vantro::sim
