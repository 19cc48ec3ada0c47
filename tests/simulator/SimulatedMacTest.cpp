#include <gtest/gtest.h>

#include <filesystem>

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
    } cases[] = {{"10.9", 1265}, {"10.13", 1561}, {"10.14", 1671}, {"10.15", 1894}, {"13", NSAppKitVersionNumber13_0},
                  {"14", NSAppKitVersionNumber14_0}, {"15", 2575}, {"26", 2685}, {"27", 2775}};
    for (const auto& c : cases) {
        SimulatedMac mac(MacConfiguration{.release = c.release});
        EXPECT_EQ(flooredAppKitVersion(), c.floorValue) << c.release;
        EXPECT_GT(mac.system().appKitVersionNumber(), c.floorValue) << "running systems report a fraction";
    }
    EXPECT_FALSE(MacRelease::named("10.8").has_value());
    EXPECT_FALSE(MacRelease::named("16").has_value()) << "after 15 came 26";
    EXPECT_EQ(MacRelease::named("26")->title(), "macOS 26 (Tahoe)");
    EXPECT_EQ(MacRelease::named("27")->title(), "macOS 27");
}

TEST(SimulatedMac, SystemVersionChecksCompareWholeVersions) {
    SimulatedMac mac(MacConfiguration{.release = "10.11"});
    EXPECT_TRUE(mac.system().isOperatingSystemAtLeastVersion({10, 11, 0}));
    EXPECT_TRUE(mac.system().isOperatingSystemAtLeastVersion({10, 9, 9}));
    EXPECT_FALSE(mac.system().isOperatingSystemAtLeastVersion({10, 12, 0}));
    EXPECT_FALSE(mac.system().isOperatingSystemAtLeastVersion({11, 0, 0}));
}

}  // namespace
}  // namespace vantro::sim
