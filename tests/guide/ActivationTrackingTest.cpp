#include <gtest/gtest.h>

#include "support/GuideFixture.h"

namespace vantro::test {
namespace {

using ActivationTracking = GuideFixture;

// Each transition of the session's activation state, from a state reached by
// the flags, with the three stop flags as given.
TEST_F(ActivationTracking, TransitionsFollowTheStateTable) {
    enum Who { SystemPreferences, Host, Other };
    struct Case {
        const char* name;
        bool sawPreferences, sawOther;
        Who activated;
        bool stopOnQuit, stopOnDeactivate, stopOnHost;
        bool preferencesRunning;
        bool stops;
        bool sawPreferencesAfter, sawOtherAfter;
    } cases[] = {
        {"start, preferences", false, false, SystemPreferences, true, false, true, true, false, true, true},
        {"start, host", false, false, Host, true, false, true, true, false, false, false},
        {"start, other", false, false, Other, true, false, true, true, false, false, true},
        {"away, preferences", false, true, SystemPreferences, true, false, true, true, false, true, true},
        {"away, host", false, true, Host, true, false, true, true, true, false, true},
        {"away, other", false, true, Other, true, false, true, true, false, false, true},
        {"guiding, host, defaults", true, true, Host, true, false, true, true, true, true, true},
        {"guiding, host, no host flag", true, true, Host, true, false, false, true, false, true, true},
        {"guiding, host, deactivate flag", true, true, Host, false, true, false, true, true, true, true},
        {"guiding, host, quit flag, preferences gone", true, true, Host, true, false, false, false, true, true, true},
        {"guiding, host, no flags, preferences gone", true, true, Host, false, false, false, false, false, true, true},
        {"guiding, other, defaults", true, true, Other, true, false, true, true, false, true, true},
        {"guiding, other, deactivate flag", true, true, Other, false, true, false, true, true, true, true},
        {"guiding, other, preferences gone", true, true, Other, true, false, true, false, true, true, true},
        {"guiding, other, host flag only, gone", true, true, Other, false, false, true, false, false, true, true},
        {"guiding, preferences", true, true, SystemPreferences, true, true, true, true, false, true, true},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac m;
        auto kit = Vantro::sharedKit();
        kit->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);  // System Preferences starts launching
        m.workspace().install({"com.example.Other", "Other", "file:///Applications/Other.app/", 0.3});
        auto other = m.workspace().start("com.example.Other");
        if (!c.preferencesRunning) m.workspace().quit(SystemPreferencesBundleIdentifier);
        kit->setDidSeeSystemPreferences(c.sawPreferences);
        kit->setDidSeeOtherApplication(c.sawOther);
        kit->setStopOnQuitOfSystemPreferences(c.stopOnQuit);
        kit->setStopOnDeactivateOfSystemPreferences(c.stopOnDeactivate);
        kit->setStopOnActivateOfHostApplication(c.stopOnHost);
        auto pending = m.runLoop().pendingCount();
        RunningApplicationPtr activated = c.activated == Host ? RunningApplicationPtr(m.workspace().host())
                                          : c.activated == Other ? RunningApplicationPtr(other)
                                                                 : RunningApplicationPtr(m.workspace().start(SystemPreferencesBundleIdentifier));
        kit->applicationChanged(activated);
        EXPECT_EQ(m.workspace().activationObserverCount() == 0, c.stops) << c.name;
        EXPECT_EQ(kit->didSeeSystemPreferences(), c.sawPreferencesAfter) << c.name;
        EXPECT_EQ(kit->didSeeOtherApplication(), c.sawOtherAfter) << c.name;
        bool firstSight = c.activated == SystemPreferences && !c.sawPreferences;
        EXPECT_EQ(m.runLoop().pendingCount() > pending, firstSight || c.activated == SystemPreferences) << c.name;
        if (c.activated != SystemPreferences) {
            EXPECT_FALSE(kit->isOverlayShown()) << c.name;
            EXPECT_EQ(kit->monitor(), nullptr) << c.name;
        } else {
            EXPECT_NE(kit->monitor(), nullptr) << c.name;
        }
        kit->stop();
    }
}

TEST_F(ActivationTracking, ASecondActivationOfPreferencesSchedulesNoSecondFirstSightWork) {
    startGuiding();
    guide->setStopOnActivateOfHostApplication(false);
    mac.workspace().activate(otherApp());
    mac.runFor(0.1);
    const auto urlsBefore = mac.workspace().openedURLs().size();
    mac.workspace().activate(systemPreferencesApp());
    mac.runFor(2.0);
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(mac.workspace().openedURLs().size(), urlsBefore);
    EXPECT_EQ(mac.windows().monitorCount(), 1u);
    EXPECT_EQ(delegate->count("did"), 2);  // told again: the overlay had been hidden
}

TEST_F(ActivationTracking, AMouseEventInPreferencesRefreshesTwiceHalfASecondApart) {
    startGuiding();
    mac.runFor(1.0);
    int before = mac.windows().windowListRequests();
    mac.systemPreferences().userMovesWindow({200, 80});
    // Three events (down, dragged, up), each refreshing at once: updateOverlay
    // and checkWindowName each read the window list.
    int immediate = mac.windows().windowListRequests() - before;
    EXPECT_EQ(immediate, 3 * 2);
    EXPECT_EQ(overlay()->frame(), overWindowAt(200, 80));
    mac.runFor(0.49);
    EXPECT_EQ(mac.windows().windowListRequests() - before, immediate);
    mac.runFor(0.01);
    EXPECT_EQ(mac.windows().windowListRequests() - before, 2 * immediate);
}

TEST_F(ActivationTracking, TheMonitorSeesOnlyOtherApplicationsAndIsTriedAgainWhenRefused) {
    mac.windows().setRefusesMonitors(true);
    startGuiding();
    EXPECT_EQ(guide->monitor(), nullptr);
    mac.windows().setRefusesMonitors(false);
    guide->setStopOnActivateOfHostApplication(false);
    mac.workspace().activate(mac.workspace().host());
    mac.runFor(0.1);
    mac.workspace().activate(systemPreferencesApp());
    mac.runFor(0.1);
    ASSERT_NE(guide->monitor(), nullptr);
    const int before = mac.windows().windowListRequests();
    mac.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, {}}, mac.workspace().host()->processIdentifier());
    EXPECT_EQ(mac.windows().windowListRequests(), before);
}

// Whatever replaces the installed monitor, the old one leaves the system
// exactly once and the guide's refreshes follow only the one it holds.
TEST_F(ActivationTracking, ReplacingTheMonitorRemovesTheOldOneOnce) {
    enum class Replacement { Another, Same, Nothing };
    struct Case {
        const char* name;
        Replacement replacement;
        std::size_t installed;  // monitors in the system after the replacement
        int removals;           // after the replacement and a removeMonitor
    } cases[] = {
        {"another monitor", Replacement::Another, 1, 2},
        {"the same monitor", Replacement::Same, 1, 1},
        {"no monitor", Replacement::Nothing, 0, 1},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        auto kit = Vantro::sharedKit();
        kit->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(1.5);
        auto old = kit->monitor();
        ASSERT_NE(old, nullptr) << c.name;
        std::shared_ptr<EventMonitor> replacement;
        if (c.replacement == Replacement::Another)
            replacement = mac.windows().addGlobalMonitorForEventsMatchingMask(1u << NSEventTypeLeftMouseDown, [](const Event&) {});
        if (c.replacement == Replacement::Same) replacement = old;
        kit->setMonitor(replacement);
        EXPECT_EQ(mac.windows().monitorRemovalRequests(), c.replacement == Replacement::Same ? 0 : 1) << c.name;
        EXPECT_EQ(mac.windows().monitorCount(), c.installed) << c.name;
        EXPECT_EQ(kit->monitor(), replacement) << c.name;
        kit->removeMonitor();
        kit->removeMonitor();
        EXPECT_EQ(mac.windows().monitorRemovalRequests(), c.removals) << c.name;
        EXPECT_EQ(mac.windows().monitorCount(), 0u) << c.name;
        EXPECT_EQ(kit->monitor(), nullptr) << c.name;
    }
}

TEST_F(ActivationTracking, FirstSightWorkOpensPlacesChecksThenAsksToUnlock) {
    mac.windows().setScreenRecordingAllowed(true);
    mac.privacy().setAutomationConsent(SystemPreferencesBundleIdentifier, sim::Consent::Authorized);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    mac.runFor(0.8);  // System Preferences comes forward: first sight 0.5 s later
    ASSERT_TRUE(guide->didSeePrivacyPanel());
    mac.runFor(0.1);
    // The window's title goes astray for a moment and a click hides the
    // overlay, so each step of the first-sight work leaves a trace.
    titlePreferencesWindows("Loading…");
    mac.windows().deliverMouseEvent({NSEventTypeLeftMouseDown, 1, {}}, mac.systemPreferences().processIdentifier());
    ASSERT_FALSE(guide->isOverlayShown());
    const auto mark = mac.timeline().entries().size();
    mac.runFor(0.45);  // the click's second refresh is due only at 1.4 s
    const auto& entries = mac.timeline().entries();
    // Everything that happened at the instant the pane was opened again.
    std::optional<double> instant;
    for (auto i = mark; i < entries.size() && !instant; ++i)
        if (entries[i].text.rfind("is asked to open", 0) == 0) instant = entries[i].time;
    ASSERT_TRUE(instant.has_value());
    std::vector<std::string> atFirstSight;
    for (auto i = mark; i < entries.size(); ++i)
        if (entries[i].time == *instant) atFirstSight.push_back(entries[i].actor + ": " + entries[i].text.substr(0, 14));
    EXPECT_EQ(atFirstSight, (std::vector<std::string>{
                                "System Preferences: is asked to op",
                                "overlay: shown at (386,",
                                "overlay: hidden",
                                "framework: sends the auth",
                                "System Preferences: asks for the a",
                            }));
}

TEST_F(ActivationTracking, ARefreshDueAfterTheMonitorIsGoneDoesNothing) {
    startGuiding();
    mac.runFor(1.0);
    mac.systemPreferences().userShowsPane(sim::SimSystemPreferences::securityPane);  // a second refresh is due in 0.5 s
    guide->stop();
    const int requests = mac.windows().windowListRequests();
    mac.runFor(0.6);
    EXPECT_EQ(mac.windows().windowListRequests(), requests);
    EXPECT_FALSE(guide->isOverlayShown());
}

// Hiding the host hides the overlay at once; showing the host again does not
// bring it back, and no click refreshes it meanwhile: the first click after
// the host is shown again does.
TEST_F(ActivationTracking, NoRefreshWhileTheHostIsHidden) {
    startGuiding();
    mac.runFor(1.0);
    mac.workspace().host()->setHidden(true);
    ASSERT_FALSE(guide->isOverlayShown());
    const int requests = mac.windows().windowListRequests();
    mac.systemPreferences().userShowsPane(sim::SimSystemPreferences::securityPane);
    mac.runFor(0.6);
    EXPECT_EQ(mac.windows().windowListRequests(), requests);
    EXPECT_FALSE(guide->isOverlayShown());
    mac.workspace().host()->setHidden(false);
    EXPECT_FALSE(guide->isOverlayShown());
    mac.systemPreferences().userShowsPane(sim::SimSystemPreferences::securityPane);
    EXPECT_TRUE(guide->isOverlayShown());
}

TEST_F(ActivationTracking, OnlyLeftMouseDownsUpsAndDragsInPreferencesRefresh) {
    startGuiding();
    mac.runFor(1.0);
    const int pid = mac.systemPreferences().processIdentifier();
    struct Case {
        long type;
        bool refreshes;
    } cases[] = {
        {NSEventTypeLeftMouseDown, true},    {NSEventTypeLeftMouseUp, true},    {NSEventTypeLeftMouseDragged, true},
        {NSEventTypeRightMouseDown, false},  {sim::NSEventTypeRightMouseUp, false}, {sim::NSEventTypeMouseMoved, false},
        {sim::NSEventTypeKeyDown, false},    {sim::NSEventTypeScrollWheel, false},
    };
    for (const auto& c : cases) {
        const int requests = mac.windows().windowListRequests();
        mac.windows().deliverMouseEvent({c.type, 1, {}}, pid);
        EXPECT_EQ(mac.windows().windowListRequests() > requests, c.refreshes) << c.type;
        mac.runFor(0.6);
    }
    // While the user drags the settings window, the overlay keeps up with it.
    mac.systemPreferences().userDragsWindow({686, 120}, 1.0);
    mac.runFor(0.3);
    EXPECT_EQ(overlay()->frame().origin.x, mac.systemPreferences().windowFrame().origin.x);
    EXPECT_GT(overlay()->frame().origin.x, 386);
    mac.runFor(0.8);
    EXPECT_EQ(overlay()->frame().origin.x, 686);
}

}  // namespace
}  // namespace vantro::test
