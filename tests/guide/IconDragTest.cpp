#include <gtest/gtest.h>

#include "Simulator/SimOverlay.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "support/GuideFixture.h"

namespace vantro::test {
namespace {

using IconDrag = GuideFixture;

// A drop on the locked pane grants nothing; once the user unlocks it, the
// same drop grants Full Disk Access, and the next activation of the host ends
// the session.
TEST_F(IconDrag, DraggingTheIconIntoTheListGrantsFullDiskAccessAndTheStatusCenterSeesIt) {
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_EQ(center->fullDiskAccessAuthorizationStatus(), PrivacyAuthorizationStatusDenied);
    startGuiding();
    ASSERT_TRUE(mac.systemPreferences().isLocked());
    const Point list = mac.systemPreferences().listPoint();
    ASSERT_TRUE(sim::userDragsIcon(mac, *guide->windowController(), list));
    EXPECT_TRUE(mac.systemPreferences().grantedByDrop().empty());
    EXPECT_FALSE(mac.privacy().hasFullDiskAccess());
    mac.systemPreferences().userUnlocks();
    ASSERT_TRUE(sim::userDragsIcon(mac, *guide->windowController(), list));
    EXPECT_EQ(mac.systemPreferences().grantedByDrop(), std::vector<std::string>{"Privacy_AllFiles"});
    EXPECT_FALSE(guide->windowController()->inDrag());
    mac.runOnePass();  // the probe's verdict lasts one pass of the run loop
    EXPECT_EQ(center->fullDiskAccessAuthorizationStatus(), PrivacyAuthorizationStatusAuthorized);

    mac.workspace().activate(mac.workspace().host());
    mac.runFor(0.1);
    EXPECT_FALSE(sessionRegistered());
    EXPECT_FALSE(guide->isOverlayShown());
}

TEST_F(IconDrag, ActivationsDuringADragKeepTheOverlayAndTheSession) {
    startGuiding();
    ASSERT_TRUE(sim::userStartsDraggingIcon(mac, *guide->windowController()));
    ASSERT_TRUE(guide->windowController()->inDrag());
    mac.workspace().activate(mac.workspace().host());
    mac.runFor(0.1);
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_TRUE(sessionRegistered());
    EXPECT_NE(guide->monitor(), nullptr);
    EXPECT_TRUE(guide->didSeeOtherApplication());
    EXPECT_TRUE(mac.dragging().cancel());
    EXPECT_FALSE(guide->windowController()->inDrag());
    mac.workspace().activate(otherApp());
    mac.runFor(0.1);
    EXPECT_FALSE(guide->isOverlayShown());
}

}  // namespace
}  // namespace vantro::test
