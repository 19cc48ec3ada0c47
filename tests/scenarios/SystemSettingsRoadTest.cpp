#include <gtest/gtest.h>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::test {
namespace {

// Where the overlay's arrow points, on the screen (origin bottom left).
std::optional<Point> arrowTipOnScreen(const VantroWindowController& controller) {
    auto* window = sim::simOverlayWindow(controller);
    auto arrow = window ? window->firstViewOfClass("VantroArrowView") : std::nullopt;
    if (!arrow) return std::nullopt;
    const Rect w = window->frame();
    return Point{w.origin.x + arrow->frame.origin.x + arrow->frame.size.width / 2, w.origin.y + arrow->frame.maxY() - 1};
}

// The road of one request on System Settings: the overlay lies over the
// sidebar window and points at the list; the user drags the icon into the
// list, turns the host's switch on, types the password and comes back; the
// row reads "Permission Granted". Nothing on the way mentions a lock.
TEST(SystemSettingsRoad, FromGrantPermissionToPermissionGranted) {
    for (const char* release : {"13", "15", "26", "27"}) {
        SCOPED_TRACE(release);
        sim::SimulatedMac mac(sim::MacConfiguration{.release = release});
        auto controller = VantroViewController::create();
        controller->setRequestedPrivacyCategoryIdentifiers({std::string(VantroPrivacyFullDiskAccess)});
        sim::SimPermissionList list{mac, controller};
        list.show();
        auto guide = Vantro::sharedKit();
        auto& settings = mac.systemPreferences();
        auto status = [&] { return controller->privacyCategories().at(0)->valueForKey(PrivacyCategoryStatusKey)->integerValue(); };

        list.userClicks(1.0, 0);
        mac.runFor(2.5);
        ASSERT_EQ(mac.workspace().openedURLs().size(), 2u);
        EXPECT_EQ(mac.workspace().openedURLs()[0],
                  "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?Privacy_AllFiles");
        EXPECT_EQ(settings.windowTitle(), "Full Disk Access");
        ASSERT_TRUE(guide->isOverlayShown());
        const Rect window = settings.windowFrame();
        const Rect overlay = guide->windowController()->window()->frame();
        EXPECT_EQ(overlay, (Rect{{window.origin.x, 900 - window.maxY() - 110}, {window.size.width, window.size.height + 110}}));
        auto tip = arrowTipOnScreen(*guide->windowController());
        ASSERT_TRUE(tip);
        EXPECT_TRUE(settings.listFrameOnScreen().contains(*tip)) << tip->x << ", " << tip->y;

        ASSERT_TRUE(sim::userDragsIcon(mac, *guide->windowController(), settings.listPoint()));
        EXPECT_TRUE(settings.listsHost("Privacy_AllFiles"));
        mac.runFor(1.5);
        EXPECT_EQ(status(), PrivacyAuthorizationStatusDenied) << "listed, but switched off";
        settings.setUnlockAnswerDelay(1.0);
        ASSERT_TRUE(settings.userSwitchesOnHost());
        mac.runFor(2.0);
        EXPECT_EQ(status(), PrivacyAuthorizationStatusAuthorized);
        mac.workspace().activate(mac.workspace().host());
        mac.runFor(0.5);
        EXPECT_FALSE(guide->isOverlayShown());
        EXPECT_EQ(list.rows().at(0).buttonTitle, "Permission Granted");
        EXPECT_FALSE(list.rows().at(0).buttonEnabled);
        EXPECT_EQ(settings.authorizeEvents(), 0);
        for (const auto& entry : mac.timeline().entries())
            EXPECT_EQ(entry.text.find("lock"), std::string::npos) << sim::Timeline::formatEntry(entry);
        EXPECT_TRUE(mac.timeline().contains("says \"Drag Vantro Demo into the list above, or click + below the list", "overlay"));
    }
}

}  // namespace
}  // namespace vantro::test
