#include <gtest/gtest.h>

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

TEST_F(OverlayPlacement, TheOverlayFollowsTheFurtherBackOfTwoSettingsWindows) {
    mac.systemPreferences().addExtraWindow({{{30, 40}, {500, 300}}, std::nullopt});
    startGuiding();
    EXPECT_EQ(overlay()->frame(), (Rect{{30, 900 - (40 + 300 + 110)}, {500, 410}}));
}

TEST_F(OverlayPlacement, NoWindowWhileTheHostIsInFront) {
    startGuiding();
    guide->setStopOnActivateOfHostApplication(false);
    mac.workspace().activate(mac.workspace().host());
    mac.runFor(0.1);
    EXPECT_TRUE(mac.systemPreferences().isRunning());
    EXPECT_FALSE(guide->preferencesWindow().has_value());
}

TEST_F(OverlayPlacement, EveryPlacementReactivatesPreferencesAndTellsTheDelegateOnlyAfterAHiding) {
    startGuiding();
    EXPECT_EQ(delegate->count("did"), 1);
    for (int i = 0; i < 3; ++i) guide->updateOverlay();
    EXPECT_EQ(delegate->count("did"), 1);
    EXPECT_GE(mac.timeline().matching("becomes the active application").size(), 1u);
    mac.workspace().host()->setHidden(true);
    mac.workspace().host()->setHidden(false);
    guide->updateOverlay();
    EXPECT_EQ(delegate->count("did"), 2);
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

class TitleCheck : public GuideFixture {
protected:
    TitleCheck() { mac.windows().setScreenRecordingAllowed(true); }
};

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

struct OverlayObserver : Observer {
    std::vector<bool> seen;
    void observeValueForKeyPath(std::string_view, Observable& object, ObservationContext) override {
        seen.push_back(static_cast<Vantro&>(object).isOverlayShown());
    }
};

TEST_F(OverlayPlacement, ObserversOfIsOverlayShownHearEveryChange) {
    static const char context[] = "test";
    OverlayObserver observer;
    guide->addObserver(observer, "isOverlayShown", ObservingOptionInitial, context);
    startGuiding();
    guide->stop();
    guide->removeObserver(observer, "isOverlayShown", context);
    // initial NO, controller created (still NO), shown, hidden
    EXPECT_EQ(observer.seen, (std::vector<bool>{false, false, true, false}));
}

}  // namespace
}  // namespace vantro::test
