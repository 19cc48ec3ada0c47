#include <gtest/gtest.h>

#include <filesystem>

#include "Simulator/SimOverlay.h"
#include "support/GuideFixture.h"
#include "support/TemporaryResources.h"

namespace vantro::test {
namespace {

using OverlayPlacement = GuideFixture;

Value windowAt(int pid, double x, double y, double w, double h, std::optional<std::string> title = std::nullopt) {
    Value::Dictionary d{{"kCGWindowOwnerPID", Value(pid)},
                        {"kCGWindowBounds", Value(Value::Dictionary{{"X", Value(x)}, {"Y", Value(y)}, {"Width", Value(w)}, {"Height", Value(h)}})}};
    if (title) d.emplace("kCGWindowName", Value(*title));
    return Value(std::move(d));
}

TEST_F(OverlayPlacement, TheFrameCoversTheWindowAndAStripBelowIt) {
    guide->placeWindowForItem(windowAt(1, 100, 50, 668, 580));
    ASSERT_NE(overlay(), nullptr);
    EXPECT_EQ(overlay()->frame(), (Rect{{100, 160}, {668, 690}}));
    EXPECT_TRUE(guide->isOverlayShown());
    // Bounds are read in single precision.
    guide->placeWindowForItem(windowAt(1, 100.1, 50, 668, 580));
    EXPECT_EQ(overlay()->frame().origin.x, static_cast<double>(100.1f));
    // A description without bounds places the overlay from zeros.
    guide->placeWindowForItem(Value(Value::Dictionary{}));
    EXPECT_EQ(overlay()->frame(), (Rect{{0, 900 - 110}, {0, 110}}));
}

TEST(OverlayFrame, OnlyTheMainScreensHeightCounts) {
    // The window at (100, 50) sized 668 × 580: y = H − (50 + 580 + 110),
    // wherever the main screen's origin lies.
    struct Case {
        Rect screen;
        double y;
    } cases[] = {
        {{{0, 0}, {1440, 900}}, 160},
        {{{0, -300}, {1440, 900}}, 160},
        {{{-1440, 200}, {1440, 900}}, 160},
        {{{0, 0}, {1280, 800}}, 60},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        mac.windows().setMainScreenFrame(c.screen);
        auto guide = Vantro::sharedKit();
        guide->placeWindowForItem(windowAt(1, 100, 50, 668, 580));
        EXPECT_EQ(guide->windowController()->window()->frame(), (Rect{{100, c.y}, {668, 690}}))
            << c.screen.origin.x << ", " << c.screen.origin.y;
    }
}

TEST_F(OverlayPlacement, OnlyOnScreenWindowsOfTheDisplayAreLookedAt) {
    // A minimised settings window, further back than any other, and the
    // desktop's own windows never reach the guide.
    mac.systemPreferences().addExtraWindow({{{30, 40}, {500, 300}}, std::nullopt, true});
    bool sawDesktop = false, sawOffScreen = false;
    mac.windows().setDescriptionFilter([&](std::vector<Value>& list) {
        for (const auto& d : list) {
            sawDesktop |= d.find("kCGWindowLayer")->integerValue() <= sim::kCGDesktopIconWindowLevel;
            sawOffScreen |= d.find("kCGWindowIsOnscreen") == nullptr;
        }
    });
    startGuiding();
    EXPECT_EQ(overlay()->frame(), overWindowAt(386, 120));
    EXPECT_FALSE(sawDesktop);
    EXPECT_FALSE(sawOffScreen);
}

// The ordinary windows on screen, front to back.
std::vector<long> ordinaryWindows(sim::SimulatedMac& mac) {
    std::vector<long> numbers;
    for (const auto& w : mac.windows().windows())
        if (w.layer == 0) numbers.push_back(w.number);
    return numbers;
}

TEST_F(OverlayPlacement, PlacingBringsEverySettingsWindowForward) {
    mac.systemPreferences().addExtraWindow({{{30, 40}, {500, 300}}, std::nullopt});
    guide->setStopOnActivateOfHostApplication(false);
    startGuiding();
    EXPECT_EQ(overlay()->frame(), overWindowAt(30, 40, 500, 300)) << "the further back of the two";
    constexpr long settings = sim::SimWindows::preferencesWindowNumber, second = settings + 1;
    constexpr long host = sim::SimWindows::hostWindowNumber;
    // A click into the host's window and one back into the settings window
    // leave the second settings window behind the host's.
    mac.windows().userClicksWindow(host);
    mac.runFor(0.1);
    EXPECT_FALSE(guide->isOverlayShown());
    mac.windows().userClicksWindow(settings);
    EXPECT_EQ(ordinaryWindows(mac), (std::vector<long>{settings, host, second}));
    // The placement that follows activates System Preferences with all its windows.
    mac.runFor(0.1);
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(ordinaryWindows(mac), (std::vector<long>{settings, second, host}));
}

TEST(OverlayActivation, ARefreshUnderwayWhenTheUserLeavesBringsPreferencesBackWhereTheSystemLetsIt) {
    // The user clicks the desktop while the guide shows the overlay: the
    // click reaches the guide's monitor before the host hears of Finder's
    // activation, so the refresh still finds System Preferences in front and
    // activates it regardless of the application now active. From macOS 14
    // the system ignores that wish.
    struct Case {
        const char* release;
        bool preferencesBack;
    } cases[] = {{"10.15", true}, {"13", true}, {"14", false}};
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(1.5);
        ASSERT_TRUE(guide->isOverlayShown()) << c.release;
        mac.windows().userClicksDesktop();
        mac.runFor(0.1);
        EXPECT_EQ(mac.workspace().front()->bundleIdentifier() == SystemPreferencesBundleIdentifier, c.preferencesBack) << c.release;
        EXPECT_EQ(guide->isOverlayShown(), c.preferencesBack) << c.release;
    }
}

TEST_F(OverlayPlacement, TheOverlayJumpsToTheSettingsWindowAtOnce) {
    startGuiding();
    mac.runFor(1.0);
    const double before = mac.now();
    const auto movesBefore = mac.timeline().matching("moves to", "overlay").size();
    mac.systemPreferences().userMovesWindow({200, 80});
    // No animation: no time passes and the overlay makes one move.
    EXPECT_EQ(mac.now(), before);
    EXPECT_EQ(overlay()->frame(), overWindowAt(200, 80));
    EXPECT_EQ(sim::simOverlayWindow(*guide->windowController())->displayedFrame(), overlay()->frame())
        << "drawn at its new place before the main loop goes on";
    EXPECT_EQ(mac.timeline().matching("moves to", "overlay").size(), movesBefore + 1);
}

TEST_F(OverlayPlacement, OnlyWindowsTallerThanAHundredPointsOfTheFrontPreferencesQualify) {
    startGuiding();
    int pid = mac.systemPreferences().processIdentifier();
    struct Case {
        const char* name;
        std::vector<Value> windows;
        std::optional<double> foundX;
    } cases[] = {
        {"exactly 100", {windowAt(pid, 10, 0, 300, 100)}, std::nullopt},
        {"100.5", {windowAt(pid, 10, 0, 300, 100.5)}, 10},
        {"another owner", {windowAt(pid + 1, 10, 0, 300, 400)}, std::nullopt},
        {"the one further back", {windowAt(pid, 10, 0, 300, 400), windowAt(pid, 20, 0, 300, 400)}, 20},
        {"a short one behind", {windowAt(pid, 10, 0, 300, 400), windowAt(pid, 20, 0, 300, 50)}, 10},
        {"no bounds", {Value(Value::Dictionary{{"kCGWindowOwnerPID", Value(pid)}})}, std::nullopt},
        {"no owner", {Value(Value::Dictionary{{"kCGWindowBounds", Value(Value::Dictionary{{"Height", Value(500)}})}})}, std::nullopt},
    };
    for (const auto& c : cases) {
        mac.windows().setDescriptionFilter([&](std::vector<Value>& list) { list = c.windows; });
        auto found = guide->preferencesWindow();
        ASSERT_EQ(found.has_value(), c.foundX.has_value()) << c.name;
        if (found) {
            EXPECT_EQ(found->findKeyPath("kCGWindowBounds.X")->doubleValue(), *c.foundX) << c.name;
        }
    }
    mac.windows().setDescriptionFilter(nullptr);
    mac.windows().setWindowListUnavailable(true);
    EXPECT_FALSE(guide->preferencesWindow().has_value());
}

TEST_F(OverlayPlacement, RetriesEveryHalfSecondGoOnAfterStop) {
    mac.systemPreferences().setLaunchDelay(3.0);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    guide->updateOverlay();  // the host is in front: no window, a retry is scheduled
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 1u);
    guide->stop();
    mac.runFor(1.0);
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 1u);
    EXPECT_FALSE(guide->isOverlayShown());
    // System Preferences comes forward after the session ended: a retry shows the overlay again.
    mac.runFor(2.5);
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 0u);
}

TEST_F(OverlayPlacement, EachRetryLivesOnItsOwn) {
    mac.systemPreferences().setLaunchDelay(3.0);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    // The host is in front: each call finds no window and schedules a retry
    // of its own; they are neither merged nor cancelled.
    guide->updateOverlay();
    guide->updateOverlay();
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 2u);
    mac.runFor(0.5);
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 2u);
    guide->stop();
    EXPECT_EQ(mac.runLoop().pendingPerforms(guide.get(), "updateOverlay"), 2u);
}

class TitleCheck : public GuideFixture {
protected:
    TitleCheck() { mac.windows().setScreenRecordingAllowed(true); }
};

TEST_F(TitleCheck, OnlyTheExactTitleCountsAsThePane) {
    startGuiding();
    ASSERT_TRUE(guide->didSeePrivacyPanel());
    struct Case {
        const char* title;
        bool overlayStays;
    } cases[] = {
        {"Security & Privacy", true},   {"security & privacy", false}, {"SECURITY & PRIVACY", false},
        {"Security & Privacy ", false}, {"Security", false},
    };
    for (const auto& c : cases) {
        titlePreferencesWindows(c.title);
        guide->placeWindowForItem(*guide->preferencesWindow());
        ASSERT_TRUE(guide->isOverlayShown());
        guide->checkWindowName();
        EXPECT_EQ(guide->isOverlayShown(), c.overlayStays) << c.title;
    }
}

TEST_F(OverlayPlacement, WithoutAPaneTitleTheCheckLooksAtNothing) {
    std::filesystem::remove_all(mac.realPath("/System/Library/PreferencePanes/Security.prefPane"));
    startGuiding();
    ASSERT_EQ(guide->privacyPanelName(), std::nullopt);
    // The list on 10.15 without Screen Recording has no titles either; a
    // missing title is no match for a missing name.
    const int requests = mac.windows().windowListRequests();
    guide->checkWindowName();
    EXPECT_EQ(mac.windows().windowListRequests(), requests);
    EXPECT_FALSE(guide->didSeePrivacyPanel());
    mac.workspace().host()->setHidden(true);
    mac.workspace().host()->setHidden(false);
    guide->checkWindowName();
    EXPECT_FALSE(guide->isOverlayShown());
    EXPECT_FALSE(guide->didSeePrivacyPanel());
}

TEST_F(TitleCheck, LeavingThePaneHidesTheOverlayAfterEachPlacement) {
    startGuiding();
    EXPECT_TRUE(guide->didSeePrivacyPanel());
    EXPECT_TRUE(guide->isOverlayShown());
    auto didBefore = delegate->count("did");
    mac.systemPreferences().userShowsPane("com.apple.preference.general");
    // Each refresh places and shows the overlay, telling the delegate when it
    // was hidden, and the title check then hides it again: the mouse-down's
    // refresh finds it shown, the mouse-up's finds it hidden.
    EXPECT_FALSE(guide->isOverlayShown());
    EXPECT_EQ(delegate->count("did"), didBefore + 1);
    mac.runFor(0.5);  // the two second refreshes
    EXPECT_EQ(delegate->count("did"), didBefore + 3);
    EXPECT_FALSE(guide->isOverlayShown());
    mac.systemPreferences().userShowsPane(sim::SimSystemPreferences::securityPane);
    EXPECT_TRUE(guide->isOverlayShown());
}

TEST_F(TitleCheck, ADifferentTitleBeforeThePaneWasSeenLeavesTheOverlay) {
    mac.windows().setDescriptionFilter([](std::vector<Value>& list) {
        for (auto& w : list)
            if (auto* d = w.dictionary()) d->insert_or_assign("kCGWindowName", Value("Loading…"));
    });
    startGuiding();
    EXPECT_FALSE(guide->didSeePrivacyPanel());
    EXPECT_TRUE(guide->isOverlayShown());
}

TEST_F(OverlayPlacement, WithoutTitlesTheCheckNeverHides) {
    startGuiding();  // 10.15 without Screen Recording: no titles in the list
    mac.systemPreferences().userShowsPane("com.apple.preference.general");
    EXPECT_FALSE(guide->didSeePrivacyPanel());
    EXPECT_TRUE(guide->isOverlayShown());
}

TEST(OverlayLayoutFailure, AControllerWithoutAWindowKeepsTellingTheDelegate) {
    TemporaryResources resources;
    resources.remove("VantroWindowController.xib");
    sim::SimulatedMac mac(resources.configuration());
    auto guide = Vantro::sharedKit();
    auto delegate = std::make_shared<RecordingDelegate>();
    guide->setDelegate(delegate);
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
    mac.runFor(1.5);
    ASSERT_NE(guide->windowController(), nullptr);
    EXPECT_EQ(guide->windowController()->window(), nullptr);
    EXPECT_FALSE(guide->isOverlayShown());
    guide->updateOverlay();
    EXPECT_GE(delegate->count("did"), 3);
}

}  // namespace
}  // namespace vantro::test
