#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "Simulator/SimulatedMac.h"
#include "StatusCenter/PrivacyStatusWatcher.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro::test {
namespace {

std::string describe(const PrivacyStatusChange& change) {
    return change.identifier + " " + std::to_string(change.oldStatus) + "->" + std::to_string(change.newStatus);
}

class WatcherTest : public ::testing::Test {
protected:
    WatcherTest() {
        mac.workspace().install({"com.example.Other", "Other", "file:///Applications/Other.app/", 0.3});
        other = mac.workspace().start("com.example.Other");
        watcher->addChangeHandler([this](const PrivacyStatusChange& change) {
            told.push_back(describe(change) + " @" + std::to_string(static_cast<int>(mac.now() * 100 + 0.5)));
        });
    }
    // The listings one Full Disk Access probe makes on this Mac as it is now.
    std::size_t listingsOfOneProbe() {
        auto before = mac.fileSystem().listingCount();
        VantroRequestStatusCenter::checkHasFullDiskAccess();
        return mac.fileSystem().listingCount() - before;
    }
    void toBackground() {
        mac.workspace().activate(other);
        mac.runFor(1.0);
    }
    void backToHost() { mac.workspace().activate(mac.workspace().host()); }

    sim::SimulatedMac mac;
    sim::SimApplicationPtr other;
    std::shared_ptr<PrivacyStatusWatcher> watcher = PrivacyStatusWatcher::sharedWatcher();
    std::vector<std::string> told;
};

TEST_F(WatcherTest, TellsWhatChangedWhileTheHostWasAwayOnceItComesBack) {
    // What the user does in System Settings while the host is in the
    // background, and what the host hears 0.1 s after it comes back (at 2.10).
    struct Case {
        const char* name;
        std::function<void(sim::SimulatedMac&)> userDoes;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {"nothing", [](sim::SimulatedMac&) {}, {}},
        {"grants Full Disk Access", [](sim::SimulatedMac& m) { m.privacy().setFullDiskAccess(true); },
         {"Privacy_AllFiles 1->2 @210"}},
        {"allows Calendars",
         [](sim::SimulatedMac& m) { m.privacy().setConsentForIdentifier("Privacy_Calendars", sim::Consent::Authorized); },
         {"Privacy_Calendars 0->2 @210"}},
        {"grants both, told in watch order",
         [](sim::SimulatedMac& m) {
             m.privacy().setConsentForIdentifier("Privacy_Calendars", sim::Consent::Denied);
             m.privacy().setFullDiskAccess(true);
         },
         {"Privacy_AllFiles 1->2 @210", "Privacy_Calendars 0->1 @210"}},
        {"grants Contacts, which is not watched",
         [](sim::SimulatedMac& m) { m.privacy().setConsentForIdentifier("Privacy_Contacts", sim::Consent::Authorized); },
         {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        sim::SimulatedMac fresh;
        auto w = PrivacyStatusWatcher::sharedWatcher();
        std::vector<std::string> heard;
        w->addChangeHandler([&](const PrivacyStatusChange& change) {
            heard.push_back(describe(change) + " @" + std::to_string(static_cast<int>(fresh.now() * 100 + 0.5)));
        });
        w->setWatchedIdentifiers({"Privacy_AllFiles", "Privacy_Calendars", "Privacy_AllFiles"});
        EXPECT_EQ(w->watchedIdentifiers(), (std::vector<std::string>{"Privacy_AllFiles", "Privacy_Calendars"}));
        fresh.workspace().activate(fresh.workspace().start(SystemPreferencesBundleIdentifier));
        fresh.runFor(1.0);
        c.userDoes(fresh);
        fresh.runFor(1.0);
        EXPECT_TRUE(heard.empty()) << "nothing is read while the host is away";
        fresh.workspace().activate(fresh.workspace().host());
        fresh.runFor(0.099);
        EXPECT_TRUE(heard.empty()) << "the reading waits 0.1 s after the activation";
        fresh.runFor(5.0);
        EXPECT_EQ(heard, c.expected);
    }
}

TEST_F(WatcherTest, EachReadingProbesFullDiskAccessOnceHoweverManyCategoriesDependOnIt) {
    // Full Disk Access and the three volume categories all rest on the probe.
    watcher->setWatchedIdentifiers({"Privacy_AllFiles", "Privacy_FilesAndFolders", "Privacy_NetworkVolume",
                                    "Privacy_RemovableVolume", "Privacy_Calendars"});
    const auto probe = listingsOfOneProbe();
    ASSERT_GT(probe, 0u);
    toBackground();
    auto before = mac.fileSystem().listingCount();
    backToHost();
    mac.runFor(0.03);
    mac.workspace().activate(other);
    mac.runFor(0.03);
    backToHost();  // a second return within 0.1 s of the first makes no second reading
    mac.runFor(2.0);
    EXPECT_EQ(mac.fileSystem().listingCount() - before, probe);
    // While the host stays active nothing is read at all.
    before = mac.fileSystem().listingCount();
    mac.runFor(30.0);
    EXPECT_EQ(mac.fileSystem().listingCount(), before);
    EXPECT_TRUE(told.empty());
}

TEST_F(WatcherTest, NothingIsReadWhileNothingIsWatched) {
    auto guide = Vantro::sharedKit();
    // Never watched, and watched then emptied: activations and a whole guide
    // session read nothing.
    for (bool watchedBefore : {false, true}) {
        SCOPED_TRACE(watchedBefore);
        if (watchedBefore) {
            watcher->setWatchedIdentifiers({"Privacy_AllFiles"});
            watcher->setWatchedIdentifiers({});
        }
        const auto before = mac.fileSystem().listingCount();
        toBackground();
        backToHost();
        mac.runFor(1.0);
        guide->askAccessForPanelIdentifier(VantroPrivacyCalendars);
        mac.runFor(5.0);
        guide->stop();
        mac.runFor(1.0);
        EXPECT_EQ(mac.fileSystem().listingCount(), before);
        EXPECT_EQ(mac.workspace().activationObserverCount(), 0u);
    }
    EXPECT_TRUE(told.empty());
}

TEST_F(WatcherTest, AnotherApplicationsActivationReadsNothing) {
    watcher->setWatchedIdentifiers({"Privacy_AllFiles"});
    const auto before = mac.fileSystem().listingCount();
    mac.privacy().setFullDiskAccess(true);
    toBackground();
    mac.workspace().activate(mac.workspace().start(SystemPreferencesBundleIdentifier));
    mac.runFor(2.0);
    EXPECT_EQ(mac.fileSystem().listingCount(), before);
    EXPECT_TRUE(told.empty());
}

TEST_F(WatcherTest, ReadsOnceASecondWhileAGuideSessionRunsAndOnceWhenItEnds) {
    watcher->setWatchedIdentifiers({"Privacy_AllFiles"});
    auto guide = Vantro::sharedKit();
    guide->setStopOnActivateOfHostApplication(false);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);  // at 0.00: ticks at 1, 2, 3 …
    mac.runFor(2.5);
    const auto probe = listingsOfOneProbe();
    mac.privacy().setFullDiskAccess(true);  // at 2.50
    mac.runFor(0.49);
    EXPECT_TRUE(told.empty());
    mac.runFor(0.01);
    EXPECT_EQ(told, (std::vector<std::string>{"Privacy_AllFiles 1->2 @300"}));
    mac.privacy().setFullDiskAccess(false);  // at 3.00, told at the end of the session
    mac.runFor(0.5);
    guide->stop();  // at 3.50
    auto before = mac.fileSystem().listingCount();
    mac.runFor(0.099);
    EXPECT_EQ(told.size(), 1u);
    mac.runFor(0.001);
    EXPECT_EQ(told.back(), "Privacy_AllFiles 2->1 @360");
    EXPECT_EQ(mac.fileSystem().listingCount() - before, probe);
    // No session, no ticks.
    before = mac.fileSystem().listingCount();
    mac.runFor(10.0);
    EXPECT_EQ(mac.fileSystem().listingCount(), before);
}

TEST_F(WatcherTest, FoldersNeverAskedForStayUntouched) {
    mac.privacy().setFullDiskAccess(false);
    watcher->setWatchedIdentifiers({"Privacy_DesktopFolder", "Privacy_DocumentsFolder", "Privacy_DownloadsFolder"});
    toBackground();
    backToHost();
    mac.runFor(2.0);
    EXPECT_TRUE(mac.privacy().prompts().empty());
    EXPECT_EQ(mac.fileSystem().listingsOf("~/Desktop/") + mac.fileSystem().listingsOf("~/Documents/") +
                  mac.fileSystem().listingsOf("~/Downloads/"),
              0u);
}

TEST_F(WatcherTest, HandlersMayChangeTheListAndThemselvesWhileTold) {
    watcher->setWatchedIdentifiers({"Privacy_AllFiles", "Privacy_Calendars", "Bogus"});
    std::vector<std::string> second;
    PrivacyStatusWatcher::HandlerToken token = 0;
    token = watcher->addChangeHandler([&](const PrivacyStatusChange& change) {
        second.push_back(change.identifier);
        watcher->removeChangeHandler(token);
        watcher->setWatchedIdentifiers({"Privacy_Calendars"});
    });
    mac.privacy().setFullDiskAccess(true);
    mac.privacy().setConsentForIdentifier("Privacy_Calendars", sim::Consent::Authorized);
    const auto logged = mac.log().lines().size();
    mac.runOnePass();  // past the pass whose Full Disk Access verdict is kept
    watcher->recheckPrivacyStatuses();
    // Both changes of the reading under way reach both handlers that were there.
    EXPECT_EQ(told, (std::vector<std::string>{"Privacy_AllFiles 1->2 @0", "Privacy_Calendars 0->2 @0"}));
    EXPECT_EQ(second, (std::vector<std::string>{"Privacy_AllFiles", "Privacy_Calendars"}));
    EXPECT_EQ(watcher->watchedIdentifiers(), (std::vector<std::string>{"Privacy_Calendars"}));
    EXPECT_EQ(watcher->lastStatus("Privacy_AllFiles"), PrivacyAuthorizationStatusNotDetermined);
    // An identifier nobody serves is never asked for, so never logged.
    EXPECT_EQ(mac.log().lines().size(), logged);
    mac.privacy().setFullDiskAccess(false);
    watcher->recheckPrivacyStatuses();
    EXPECT_EQ(told.size(), 2u);
}

}  // namespace
}  // namespace vantro::test
