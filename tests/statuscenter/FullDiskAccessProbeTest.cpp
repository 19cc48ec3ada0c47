#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "statuscenter/CenterFixture.h"

namespace vantro {
namespace {

using sim::SimFileSystem;
using S = VantroRequestStatusCenter;

const std::vector<std::string>& protectedDirectories() { return sim::SimPrivacy::fullDiskAccessDirectories(); }

void forEachDirectory(sim::SimulatedMac& mac, void (*apply)(SimFileSystem&, const std::string&)) {
    for (const auto& d : protectedDirectories()) apply(mac.fileSystem(), d);
}

TEST(FullDiskAccessProbe, HeldWithoutLookingUpTo1561AndProbedAbove) {
    struct Case { double appKit; bool probes; } cases[] = {{1561.0, false}, {1561.99, false}, {1562.0, true}, {1671.2, true}};
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
    using Setup = void (*)(sim::SimulatedMac&);
    struct Case { const char* name; Setup setup; bool verdict; std::size_t listings; } cases[] = {
        {"a fresh Mac stops at the first refusal", [](sim::SimulatedMac&) {}, false, 1},
        {"with Full Disk Access all eight are tried", [](sim::SimulatedMac& m) { m.privacy().setFullDiskAccess(true); }, true, 8},
        {"no directory at all",
         [](sim::SimulatedMac& m) { forEachDirectory(m, [](SimFileSystem& fs, const std::string& d) { fs.setHomeEntry(d, SimFileSystem::Entry::Missing); }); },
         false, 0},
        {"plain files are not directories",
         [](sim::SimulatedMac& m) { forEachDirectory(m, [](SimFileSystem& fs, const std::string& d) { fs.setHomeEntry(d, SimFileSystem::Entry::PlainFile); }); },
         false, 0},
        {"EACCES is not a refusal",
         [](sim::SimulatedMac& m) {
             forEachDirectory(m, [](SimFileSystem& fs, const std::string& d) { fs.setHomeEntry(d, SimFileSystem::Entry::Missing); });
             m.fileSystem().setHomeEntry(protectedDirectories()[4], SimFileSystem::Entry::Directory);
             m.fileSystem().setListingError("~/" + protectedDirectories()[4], EACCES);
         },
         true, 1},
        {"EPERM after readable directories",
         [](sim::SimulatedMac& m) {
             m.privacy().setFullDiskAccess(true);
             m.fileSystem().setListingError("~/" + protectedDirectories().back(), EPERM);
         },
         false, 8},
        {"other failures decide nothing",
         [](sim::SimulatedMac& m) { forEachDirectory(m, [](SimFileSystem& fs, const std::string& d) { fs.setListingError("~/" + d, EIO); }); },
         true, 8},
        {"EPERM after EACCES", [](sim::SimulatedMac& m) { m.fileSystem().setListingError("~/" + protectedDirectories()[0], EACCES); }, false, 2},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        c.setup(mac);
        EXPECT_EQ(S::checkHasFullDiskAccess(), c.verdict) << c.name;
        EXPECT_EQ(mac.fileSystem().listingCount(), c.listings) << c.name;
    }
}

// How the protected directories answer, release by release, and what the
// probe makes of it: the false "denied" of 27 (the privacy database's folder
// refused to a holder of Full Disk Access) and the false "granted" of an empty
// listing taken for access. Below 26 the plain probe's answers stand, even the
// empty listing's.
TEST(FullDiskAccessProbe, ReleaseTable) {
    enum Answers { AsTheSystem, RefusedListEmpty, DatabaseFolderGone, DatabaseFolderEmpty, DatabaseFolderRefused, OnlyMailEmpty };
    struct Case {
        const char* release;
        bool holdsFullDiskAccess;
        Answers answers;
        bool verdict;
        std::size_t listings;
    } cases[] = {
        {"15", true, AsTheSystem, true, 8},
        {"15", false, AsTheSystem, false, 1},
        {"15", false, RefusedListEmpty, true, 8},  // the plain probe, kept as it was below 26
        {"15", true, DatabaseFolderEmpty, true, 8},
        {"26", true, AsTheSystem, true, 8},
        {"26", false, AsTheSystem, false, 1},
        {"26", false, RefusedListEmpty, false, 1},  // the database's folder is never empty when readable
        {"26", true, DatabaseFolderEmpty, false, 1},
        {"26", true, DatabaseFolderRefused, false, 1},  // its refusal still decides on 26
        {"26", false, DatabaseFolderGone, false, 1},  // the next folder refuses
        {"26", true, OnlyMailEmpty, true, 8},  // an empty folder beside full ones decides nothing
        {"27", true, AsTheSystem, true, 7},  // the database's folder is not listed
        {"27", true, DatabaseFolderGone, true, 7},
        {"27", false, AsTheSystem, false, 4},  // three ENOENTs, then Mail's EPERM
        {"27", false, RefusedListEmpty, false, 7},  // nothing listed with contents
        {"27", false, DatabaseFolderGone, false, 4},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.privacy().setFullDiskAccess(c.holdsFullDiskAccess);
        const std::string database = protectedDirectories()[0];
        switch (c.answers) {
        case AsTheSystem: break;
        case RefusedListEmpty: mac.privacy().setRefusedListingsLookEmpty(true); break;
        case DatabaseFolderGone: mac.fileSystem().setHomeEntry(database, SimFileSystem::Entry::Missing); break;
        case DatabaseFolderEmpty: mac.fileSystem().setHomeEntry(database, SimFileSystem::Entry::Directory); break;
        case DatabaseFolderRefused: mac.fileSystem().setListingError("~/" + database, EPERM); break;
        case OnlyMailEmpty: mac.fileSystem().setHomeEntry("Library/Mail", SimFileSystem::Entry::Directory); break;
        }
        const std::string name = std::string(c.release) + (c.holdsFullDiskAccess ? " held " : " not held ") + std::to_string(c.answers);
        EXPECT_EQ(S::hasFullDiskAccess(), c.verdict) << name;
        EXPECT_EQ(S::hasFullDiskAccess(), c.verdict) << name;
        EXPECT_EQ(mac.fileSystem().listingCount(), c.listings) << name << ": one probe per pass";
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
    EXPECT_TRUE(S::hasFullDiskAccess());
    EXPECT_EQ(fs.listingCount(), afterFirst + 8);
    EXPECT_EQ(mac.runLoop().pendingTimers(), 1u);
}

TEST(FullDiskAccessProbe, AModalAlertKeepsTheVerdict) {
    sim::SimulatedMac mac;
    EXPECT_FALSE(S::hasFullDiskAccess());
    mac.privacy().setFullDiskAccess(true);
    const std::size_t listings = mac.fileSystem().listingCount();
    // Main-queue work runs while the alert is up; the timer does not.
    std::optional<bool> duringAlert;
    mac.runLoop().dispatchAsyncMain([&] { duringAlert = S::hasFullDiskAccess(); });
    mac.alerts().answerNext(1, 2.0);
    S::sharedRequestStatusCenter()->alertOpenPrivacyPreferences(VantroPrivacyFullDiskAccess);
    EXPECT_EQ(duringAlert, std::optional<bool>(false));
    EXPECT_EQ(mac.fileSystem().listingCount(), listings);
    EXPECT_FALSE(S::hasFullDiskAccess());
    mac.runOnePass();
    EXPECT_TRUE(S::hasFullDiskAccess());
}

}  // namespace
}  // namespace vantro
