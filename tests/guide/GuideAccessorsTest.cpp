#include <gtest/gtest.h>

#include "Simulator/SimOverlay.h"
#include "support/GuideFixture.h"

namespace vantro::test {
namespace {

using GuideAccessors = GuideFixture;

struct Announcements : Observer {
    int count = 0;
    void observeValueForKeyPath(std::string_view, Observable&, ObservationContext) override { ++count; }
};
const char announcementsContext[] = "announcements";

// The guide observes the hiding of the application it was made with, whatever
// host application it is given later; given that one back, it lets go of it
// when it goes.
TEST_F(GuideAccessors, ReplacingTheHostApplicationLeavesTheHiddenObservationWhereItWas) {
    startGuiding();
    auto host = guide->hostApplication();
    auto other = otherApp();
    const auto hostObservations = host->observationCount();
    const auto otherObservations = other->observationCount();
    guide->setHostApplication(other);
    EXPECT_EQ(guide->hostApplication(), other);
    EXPECT_EQ(host->observationCount(), hostObservations);
    EXPECT_EQ(other->observationCount(), otherObservations);
    other->setHidden(true);
    EXPECT_TRUE(guide->isOverlayShown());
    mac.workspace().host()->setHidden(true);
    EXPECT_FALSE(guide->isOverlayShown());
    guide->setHostApplication(nullptr);
    EXPECT_EQ(host->observationCount(), hostObservations);
    guide->setHostApplication(host);

    auto own = makeShared<Vantro>();
    EXPECT_EQ(host->observationCount(), hostObservations + 1);
    own->setHostApplication(other);
    own->setHostApplication(host);
    own.reset();
    EXPECT_EQ(host->observationCount(), hostObservations);
    EXPECT_TRUE(mac.log().objections().empty());
}

TEST_F(GuideAccessors, IsOverlayShownFollowsTheWindowOfTheControllerSet) {
    Announcements announcements;
    guide->addObserver(announcements, "isOverlayShown", ObservingOptionNone, announcementsContext);
    auto first = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto second = VantroWindowController::initWithWindowNibName("VantroWindowController");
    ASSERT_TRUE(first->window() && second->window());
    const auto layoutsLoaded = mac.timeline().matching("loads the layout", "overlay").size();

    guide->setWindowController(first);
    EXPECT_EQ(announcements.count, 1);
    EXPECT_FALSE(guide->isOverlayShown()) << "setting shows nothing";
    first->window()->orderFront();
    EXPECT_TRUE(guide->isOverlayShown());
    EXPECT_EQ(announcements.count, 2);

    guide->setWindowController(second);
    EXPECT_EQ(announcements.count, 3);
    EXPECT_FALSE(guide->isOverlayShown()) << "the second window is hidden";
    EXPECT_TRUE(first->window()->isVisible()) << "setting hides nothing";
    first->window()->orderOut();
    EXPECT_EQ(announcements.count, 3) << "the first window is no longer followed";
    EXPECT_EQ(first->window()->observationCount(), 0u);

    // The guide places the controller it was given rather than loading one.
    startGuiding();
    EXPECT_EQ(guide->windowController(), second);
    EXPECT_TRUE(second->window()->isVisible());
    EXPECT_EQ(second->message(), guide->message());
    EXPECT_EQ(mac.timeline().matching("loads the layout", "overlay").size(), layoutsLoaded);
    const int beforeRemoval = announcements.count;

    guide->setWindowController(nullptr);
    EXPECT_EQ(announcements.count, beforeRemoval + 1);
    EXPECT_FALSE(guide->isOverlayShown());
    EXPECT_EQ(second->window()->observationCount(), 0u);
    guide->removeObserver(announcements, "isOverlayShown", announcementsContext);
    guide->stop();
}

}  // namespace
}  // namespace vantro::test
