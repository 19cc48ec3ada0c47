#include <gtest/gtest.h>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro::test {
namespace {

using Row = sim::SimPermissionList::Row;

// A host that embeds the permission list for one category and shows it.
struct Host {
    explicit Host(std::vector<std::string> identifiers = {std::string(VantroPrivacyFullDiskAccess)}) {
        controller->setRequestedPrivacyCategoryIdentifiers(std::move(identifiers));
        controller->setReasonStrings(VantroViewController::ReasonStrings{{"Privacy_AllFiles", "To back up every file."}});
        list.show();
    }
    long status(std::size_t row = 0) {
        return controller->privacyCategories().at(row)->valueForKey(PrivacyCategoryStatusKey)->integerValue();
    }
    bool timerRunning() {
        auto timer = controller->vantroWatcherTimer();
        return timer && timer->isValid();
    }
    // Runs until the given virtual time.
    void runUntil(double time) { mac.runFor(time - mac.now()); }

    sim::SimulatedMac mac;
    std::shared_ptr<VantroViewController> controller = VantroViewController::create();
    sim::SimPermissionList list{mac, controller};
    std::shared_ptr<Vantro> guide = Vantro::sharedKit();
};

class Road : public ::testing::Test, public Host {
protected:
    explicit Road(std::vector<std::string> identifiers = {std::string(VantroPrivacyFullDiskAccess)}) : Host(std::move(identifiers)) {}
};

TEST_F(Road, FromGrantPermissionToPermissionGranted) {
    // t = 0: the row asks to grant Full Disk Access.
    EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied);
    EXPECT_EQ(list.rows(), (std::vector<Row>{{"Full Disk Access", "To back up every file.", "Grant Permission", true}}));

    // t = 1.0: the user clicks; the guide opens System Preferences at the anchor.
    list.userClicks(1.0, 0);
    runUntil(1.0);
    ASSERT_EQ(mac.workspace().openedURLs().size(), 1u);
    EXPECT_EQ(mac.workspace().openedURLs()[0], "x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
    EXPECT_FALSE(guide->isOverlayShown());
    // t = 1.1: the click's rebuild finds nothing new.
    runUntil(1.1);
    EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied);

    // t = 1.8: System Preferences comes forward, the overlay lies over it and
    // the list starts refreshing every second.
    runUntil(1.79);
    EXPECT_FALSE(guide->isOverlayShown());
    EXPECT_FALSE(timerRunning());
    runUntil(1.8);
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_TRUE(timerRunning());
    EXPECT_EQ(mac.workspace().front()->bundleIdentifier(), SystemPreferencesBundleIdentifier);

    // t = 3.0 to 5.0: the user unlocks the pane and drags the icon into the list.
    mac.userDoes(1.2, "unlocks the pane", [&] { mac.systemPreferences().userUnlocks(); });
    mac.userDoes(3.2, "drags the icon into the list", [&] {
        sim::userDragsIcon(mac, *guide->windowController(), mac.systemPreferences().listPoint());
    });
    runUntil(5.0);
    EXPECT_TRUE(mac.privacy().hasFullDiskAccess());
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied);  // the last tick's rebuild came at 4.9, before the drop

    // t = 5.5: the user comes back to the host; the session ends and the timer stops.
    mac.userDoes(0.5, "comes back to the host", [&] { mac.workspace().activate(mac.workspace().host()); });
    runUntil(5.5);
    EXPECT_FALSE(guide->isOverlayShown());
    EXPECT_FALSE(timerRunning());
    EXPECT_EQ(guide->monitor(), nullptr);
    EXPECT_EQ(mac.workspace().activationObserverCount(), 1u);  // the list's own; the guide's is gone
    EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied);

    // t = 5.6: 0.1 s after the activation the row reads granted.
    runUntil(5.59);
    EXPECT_EQ(list.rows()[0].buttonTitle, "Grant Permission");
    runUntil(5.6);
    EXPECT_EQ(status(), PrivacyAuthorizationStatusAuthorized);
    EXPECT_EQ(list.rows(), (std::vector<Row>{{"Full Disk Access", "To back up every file.", "Permission Granted", false}}));
}

// However the user leaves System Preferences without granting, the overlay
// goes and the timer stops; once back in the host the session is over and
// the row reads as before.
TEST(LeavingTheRoad, WithoutGrantingTheOverlayGoesAndTheRowStaysAsItWas) {
    struct Case { const char* name; void (*leave)(Host&); std::size_t observersWhileAway; } cases[] = {
        {"another application comes forward",
         [](Host& h) {
             h.mac.workspace().install({"com.example.Mail", "Mail", "file:///Applications/Mail.app/", 0.3});
             h.mac.workspace().activate(h.mac.workspace().start("com.example.Mail"));
         },
         2},
        {"System Preferences quits", [](Host& h) { h.mac.systemPreferences().userQuits(); }, 1},
        // Hidden, the host is not yet back: the session goes on.
        {"the host hides", [](Host& h) { h.mac.workspace().host()->setHidden(true); }, 2},
    };
    for (const auto& c : cases) {
        Host h;
        h.list.userClicks(0, 0);
        h.runUntil(1.0);
        ASSERT_TRUE(h.guide->isOverlayShown()) << c.name;
        ASSERT_TRUE(h.timerRunning()) << c.name;
        c.leave(h);
        h.runUntil(1.2);
        EXPECT_FALSE(h.guide->isOverlayShown()) << c.name;
        EXPECT_FALSE(h.timerRunning()) << c.name;
        EXPECT_TRUE(h.guide->didSeeSystemPreferences()) << c.name;
        EXPECT_EQ(h.mac.workspace().activationObserverCount(), c.observersWhileAway) << c.name;
        h.mac.workspace().activate(h.mac.workspace().host());
        h.runUntil(1.4);
        EXPECT_EQ(h.mac.workspace().activationObserverCount(), 1u) << c.name;
        EXPECT_EQ(h.list.rows()[0].buttonTitle, "Grant Permission") << c.name;
        EXPECT_TRUE(h.list.rows()[0].buttonEnabled) << c.name;
    }
}

class CalendarsRoad : public Road {
protected:
    CalendarsRoad() : Road({std::string(VantroPrivacyCalendars)}) {}
};

TEST_F(CalendarsRoad, ARefusedPromptOffersThePaneThroughTheRefusalAlert) {
    EXPECT_EQ(list.rows(), (std::vector<Row>{{"Calendars", "", "Request Permission", true}}));
    mac.privacy().answerNextPrompt(sim::PromptAnswer::deny(1.0));
    mac.alerts().answerNext(0, 1.0);  // "Open Privacy Preferences"
    list.userClicks(0.5, 0);  // the prompt comes up at 0.5, the user refuses at 1.5
    runUntil(1.45);
    EXPECT_TRUE(mac.alerts().shown().empty());
    runUntil(3.0);  // the alert came at 1.5, after the answer's hop to the main queue; answered at 2.5
    ASSERT_EQ(mac.alerts().shown().size(), 1u);
    EXPECT_TRUE(mac.alerts().shown()[0].onMainThread);
    EXPECT_EQ(mac.alerts().shown()[0].alert.messageText, "Permission Refused");
    ASSERT_EQ(mac.workspace().openedURLs().size(), 1u);
    EXPECT_EQ(mac.workspace().openedURLs()[0], "x-apple.systempreferences:com.apple.preference.security?Privacy_Calendars");
    EXPECT_DOUBLE_EQ(mac.alerts().shown()[0].shownAt, 1.5);
    // System Preferences comes forward at 3.3; that activation rebuilds the list at 3.4.
    runUntil(3.4);
    EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied);
    EXPECT_EQ(list.rows()[0].buttonTitle, "Request Permission");
}

}  // namespace
}  // namespace vantro::test
