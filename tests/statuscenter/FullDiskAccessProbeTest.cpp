#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

using sim::SimFileSystem;
using sim::SimPrivacy;
using S = VantroRequestStatusCenter;

const std::vector<std::string>& protectedDirectories() { return SimPrivacy::fullDiskAccessDirectories(); }

TEST(FullDiskAccessProbe, HeldWithoutLookingUpTo1561AndProbedAbove) {
    struct Case {
        double appKit;
        bool probes;
    } cases[] = {{1561.0, false}, {1561.99, false}, {1562.0, true}, {1671.2, true}};
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit));
        EXPECT_EQ(S::hasFullDiskAccess(), !c.probes) << c.appKit;
        EXPECT_EQ(mac.fileSystem().listingCount() > 0, c.probes) << c.appKit;
        // Only the probing path sets the end-of-pass timer.
        EXPECT_EQ(mac.runLoop().pendingTimers(), c.probes ? 1u : 0u) << c.appKit;
    }
}

TEST(FullDiskAccessProbe, ASandboxedHostHoldsItWithoutProbingAndIsCheckedOnce) {
    sim::SimulatedMac mac(sim::MacConfiguration{.sandboxed = true});
    EXPECT_TRUE(S::hasFullDiskAccess());
    EXPECT_TRUE(S::hasFullDiskAccess());
    EXPECT_EQ(mac.fileSystem().listingCount(), 0u);
    EXPECT_EQ(mac.runLoop().pendingTimers(), 0u);
    EXPECT_EQ(mac.system().validityChecks(), 1);
}

TEST(FullDiskAccessProbe, VerdictTable) {
    enum Setup { Fresh, Granted, AllMissing, AllPlainFiles, OnlyOneWithEacces, GrantedButLastEperm, OtherErrorsOnly, EaccesThenEperm };
    struct Case {
        const char* name;
        Setup setup;
        bool verdict;
        std::size_t listings;
    } cases[] = {
        {"a fresh Mac stops at the first refusal", Fresh, false, 1},
        {"with Full Disk Access all eight are tried", Granted, true, 8},
        {"no directory at all", AllMissing, false, 0},
        {"plain files are not directories", AllPlainFiles, false, 0},
        {"EACCES is not a refusal", OnlyOneWithEacces, true, 1},
        {"EPERM after readable directories", GrantedButLastEperm, false, 8},
        {"other failures decide nothing", OtherErrorsOnly, true, 8},
        {"EPERM after EACCES", EaccesThenEperm, false, 2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        auto& fs = mac.fileSystem();
        auto home = [](const std::string& relative) { return "~/" + relative; };
        switch (c.setup) {
        case Fresh: break;
        case Granted: mac.privacy().setFullDiskAccess(true); break;
        case AllMissing:
            for (const auto& d : protectedDirectories()) fs.setHomeEntry(d, SimFileSystem::Entry::Missing);
            break;
        case AllPlainFiles:
            for (const auto& d : protectedDirectories()) fs.setHomeEntry(d, SimFileSystem::Entry::PlainFile);
            break;
        case OnlyOneWithEacces:
            for (const auto& d : protectedDirectories()) fs.setHomeEntry(d, SimFileSystem::Entry::Missing);
            fs.setHomeEntry(protectedDirectories()[4], SimFileSystem::Entry::Directory);
            fs.setListingError(home(protectedDirectories()[4]), EACCES);
            break;
        case GrantedButLastEperm:
            mac.privacy().setFullDiskAccess(true);
            fs.setListingError(home(protectedDirectories().back()), EPERM);
            break;
        case OtherErrorsOnly:
            for (const auto& d : protectedDirectories()) fs.setListingError(home(d), EIO);
            break;
        case EaccesThenEperm:
            fs.setListingError(home(protectedDirectories()[0]), EACCES);
            break;
        }
        EXPECT_EQ(S::checkHasFullDiskAccess(), c.verdict) << c.name;
        EXPECT_EQ(fs.listingCount(), c.listings) << c.name;
    }
}

TEST(FullDiskAccessProbe, TheDirectoriesAreTheEightInOrderExpandedAndStandardised) {
    sim::SimulatedMac mac;
    mac.privacy().setFullDiskAccess(true);
    EXPECT_TRUE(S::checkHasFullDiskAccess());
    std::vector<std::string> expected;
    for (const auto& d : protectedDirectories()) expected.push_back(mac.homeDirectory() + "/" + d);
    EXPECT_EQ(mac.fileSystem().listedPaths(), expected);
}

TEST(FullDiskAccessProbe, OneProbePerRunLoopPass) {
    sim::SimulatedMac mac;
    auto& fs = mac.fileSystem();
    EXPECT_FALSE(S::hasFullDiskAccess());
    std::size_t afterFirst = fs.listingCount();
    mac.privacy().setFullDiskAccess(true);
    EXPECT_FALSE(S::hasFullDiskAccess()) << "the verdict of this pass stands";
    EXPECT_EQ(fs.listingCount(), afterFirst);

    mac.runOnePass();
    EXPECT_EQ(mac.runLoop().pendingTimers(), 0u);
    EXPECT_TRUE(S::hasFullDiskAccess()) << "the next pass probes afresh";
    EXPECT_EQ(fs.listingCount(), afterFirst + 8);
    EXPECT_TRUE(S::hasFullDiskAccess());
    EXPECT_EQ(fs.listingCount(), afterFirst + 8);
    EXPECT_EQ(mac.runLoop().pendingTimers(), 1u);
}

TEST(FullDiskAccessProbe, AModalAlertKeepsTheVerdict) {
    sim::SimulatedMac mac;
    auto center = S::sharedRequestStatusCenter();
    EXPECT_FALSE(S::hasFullDiskAccess());
    mac.privacy().setFullDiskAccess(true);
    const std::size_t listings = mac.fileSystem().listingCount();

    // Main-queue work runs while the alert is up; the timer does not.
    std::optional<bool> duringAlert;
    mac.runLoop().dispatchAsyncMain([&] { duringAlert = S::hasFullDiskAccess(); });
    mac.alerts().answerNext(1, 2.0);
    center->alertOpenPrivacyPreferences(VantroPrivacyFullDiskAccess);
    ASSERT_TRUE(duringAlert.has_value());
    EXPECT_FALSE(*duringAlert);
    EXPECT_EQ(mac.fileSystem().listingCount(), listings);
    EXPECT_FALSE(S::hasFullDiskAccess());

    mac.runOnePass();
    EXPECT_TRUE(S::hasFullDiskAccess());
}

}  // namespace
}  // namespace vantro
