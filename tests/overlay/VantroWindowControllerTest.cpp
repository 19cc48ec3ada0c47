#include <gtest/gtest.h>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

struct Recorder : Observer {
    std::vector<std::pair<std::string, bool>> seen;
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext) override {
        seen.emplace_back(std::string(keyPath), static_cast<VantroWindowController&>(object).inDrag());
    }
};

const char recorderContext[] = "recorder";

TEST(VantroWindowController, LoadsTheOverlayWithItsIconView) {
    sim::SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    ASSERT_TRUE(controller->window());
    ASSERT_TRUE(controller->iconView());
    // The outlets name the window's own subviews.
    auto* window = sim::simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    EXPECT_EQ(controller->iconView(), window->iconViewWithId(window->layout().outlets.at("iconView")));
    auto field = std::dynamic_pointer_cast<sim::SimTextField>(controller->unlockMessageField());
    ASSERT_TRUE(field);
    EXPECT_EQ(field, window->textFieldWithId(window->layout().outlets.at("unlockMessageField")));
    EXPECT_FALSE(controller->window()->isVisible()) << "the overlay waits to be shown";
    EXPECT_EQ(controller->iconView()->image(), sim::applicationIconImageName(mac));
    // The controller's inDrag is the icon view's, announced as a dependent key.
    EXPECT_EQ(VantroWindowController::keyPathsForValuesAffectingInDrag(), (std::vector<std::string>{"iconView.inDrag"}));
    // The field shows the message only through its binding.
    EXPECT_EQ(field->stringValue(*controller), "");
    controller->setMessage("Shown through the binding.");
    EXPECT_EQ(field->stringValue(*controller), "Shown through the binding.");
}

TEST(VantroWindowController, ReannouncesTheIconViewsInDrag) {
    sim::SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    ASSERT_TRUE(controller->iconView());
    Recorder recorder;
    controller->addObserver(recorder, "inDrag", ObservingOptionNone, recorderContext);
    auto* window = sim::simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    window->orderFront();
    ASSERT_TRUE(sim::userStartsDraggingIcon(mac, *controller));
    EXPECT_TRUE(controller->inDrag());
    mac.dragging().cancel();
    EXPECT_EQ(recorder.seen, (std::vector<std::pair<std::string, bool>>{{"inDrag", true}, {"inDrag", false}}));
    // Every set of the icon's inDrag is announced, changed or not.
    controller->iconView()->setInDrag(false);
    EXPECT_EQ(recorder.seen.size(), 3u);
    controller->removeObserver(recorder, "inDrag", recorderContext);
}

TEST(VantroWindowController, StopsObservingItsIconViewWhenDestroyed) {
    sim::SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    ASSERT_TRUE(controller->iconView());
    // The icon view outlives the controller here.
    auto keep = controller->iconView()->shared_from_this();
    EXPECT_EQ(keep->observationCount(), 1u);
    controller.reset();
    EXPECT_EQ(keep->observationCount(), 0u);
    keep->setInDrag(true);  // reaches no freed controller
    EXPECT_TRUE(mac.log().objections().empty());
}

TEST(VantroWindowController, SettingTheIconViewMovesTheInDragObservation) {
    sim::SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto layoutIcon = controller->iconView();
    ASSERT_TRUE(layoutIcon);
    Recorder recorder;
    controller->addObserver(recorder, "inDrag", ObservingOptionNone, recorderContext);

    auto other = ZVMainBundleIconImageView::initWithFrame({{0, 0}, {32, 32}}, "other");
    other->setInDrag(true);
    controller->setIconView(other);
    // The change of icon view is announced with the new icon view's inDrag.
    EXPECT_EQ(recorder.seen, (std::vector<std::pair<std::string, bool>>{{"inDrag", true}}));
    EXPECT_EQ(layoutIcon->observationCount(), 0u);
    EXPECT_EQ(other->observationCount(), 1u);
    layoutIcon->setInDrag(true);  // no longer the controller's
    other->setInDrag(false);
    EXPECT_EQ(recorder.seen, (std::vector<std::pair<std::string, bool>>{{"inDrag", true}, {"inDrag", false}}));

    // Setting the same icon view again leaves one registration.
    controller->setIconView(other);
    EXPECT_EQ(other->observationCount(), 1u);
    EXPECT_EQ(recorder.seen.size(), 3u);

    // The controller does not keep the icon view: once its maker lets go, the
    // outlet is empty, inDrag is NO, and nothing is left to remove.
    other.reset();
    EXPECT_EQ(controller->iconView(), nullptr);
    EXPECT_FALSE(controller->inDrag());
    controller->setIconView(layoutIcon);
    EXPECT_TRUE(controller->inDrag()) << "the layout's icon view was set in a drag above";
    controller->setIconView(nullptr);
    EXPECT_FALSE(controller->inDrag());
    EXPECT_EQ(layoutIcon->observationCount(), 0u);
    controller->removeObserver(recorder, "inDrag", recorderContext);
    controller.reset();
    EXPECT_TRUE(mac.log().objections().empty()) << ::testing::PrintToString(mac.log().objections());
}

TEST(VantroWindowController, TheWindowKeepsItsSubviewsAndTheControllerKeepsTheWindow) {
    sim::SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    std::weak_ptr<ZVMainBundleIconImageView> icon = controller->iconView();
    std::weak_ptr<View> field = controller->unlockMessageField();
    ASSERT_FALSE(icon.expired());
    ASSERT_FALSE(field.expired());
    // A field the host connects instead is not kept by the controller.
    auto replacement = std::make_shared<sim::SimTextField>("replacement", "", std::nullopt);
    controller->setUnlockMessageField(replacement);
    EXPECT_EQ(controller->unlockMessageField(), replacement);
    replacement.reset();
    EXPECT_EQ(controller->unlockMessageField(), nullptr);
    EXPECT_FALSE(field.expired()) << "the window still holds the layout's field";
    // The window goes with the controller, and its subviews with it.
    controller.reset();
    EXPECT_TRUE(icon.expired());
    EXPECT_TRUE(field.expired());
    EXPECT_TRUE(mac.log().objections().empty());
}

TEST(VantroWindowController, LayoutThatDoesNotLoadGivesNoWindow) {
    const std::string window =
        R"(<window id="w" customClass="VantroWindow"><rect key="contentRect" x="0" y="0" width="10" height="10"/>)"
        R"(<view key="contentView" id="c"><rect key="frame" x="0" y="0" width="10" height="10"/></view></window>)";
    auto document = [](const std::string& owner, const std::string& objects) {
        return R"(<?xml version="1.0" encoding="UTF-8"?><document type="com.apple.InterfaceBuilder3.Cocoa.XIB" version="3.0"><objects>)"
               R"(<customObject id="-2" customClass="VantroWindowController"><connections>)" +
               owner + "</connections></customObject>" + objects + "</objects></document>";
    };
    struct Case {
        const char* name;
        std::string nibName;
        std::optional<std::string> xib;  // nullopt: the file is removed
    } cases[] = {
        {"another layout name", "VantroViewController", std::string()},
        {"missing file", "VantroWindowController", std::nullopt},
        {"not XML", "VantroWindowController", std::string("<document><objects>")},
        {"not a layout document", "VantroWindowController", std::string("<?xml version=\"1.0\"?><plist version=\"1.0\"/>")},
        {"no window outlet", "VantroWindowController", document("", window)},
        {"window outlet to nothing", "VantroWindowController",
         document(R"(<outlet property="window" destination="missing" id="o"/>)", window)},
        {"window frame without a height", "VantroWindowController",
         document(R"(<outlet property="window" destination="w" id="o"/>)",
                  R"(<window id="w"><rect key="contentRect" x="0" y="0" width="10"/><view key="contentView" id="c">)"
                  R"(<rect key="frame" x="0" y="0" width="10" height="10"/></view></window>)")},
        {"view frame that is not a number", "VantroWindowController",
         document(R"(<outlet property="window" destination="w" id="o"/>)",
                  R"(<window id="w"><rect key="contentRect" x="0" y="0" width="10" height="10"/><view key="contentView" id="c">)"
                  R"(<rect key="frame" x="0" y="0" width="ten" height="10"/></view></window>)")},
        {"outlet the owner does not have", "VantroWindowController",
         document(R"(<outlet property="window" destination="w" id="o"/><outlet property="closeButton" destination="c" id="p"/>)",
                  window)},
    };
    for (const auto& c : cases) {
        test::TemporaryResources resources;
        if (!c.xib)
            resources.remove("VantroWindowController.xib");
        else if (!c.xib->empty())
            resources.write("VantroWindowController.xib", *c.xib);
        sim::SimulatedMac mac(resources.configuration());
        auto controller = VantroWindowController::initWithWindowNibName(c.nibName);
        ASSERT_TRUE(controller) << c.name;
        EXPECT_EQ(controller->window(), nullptr) << c.name;
        EXPECT_EQ(controller->iconView(), nullptr) << c.name;
        EXPECT_EQ(controller->unlockMessageField(), nullptr) << c.name;
        EXPECT_FALSE(controller->inDrag()) << c.name;
        controller->setMessage("still works");
        EXPECT_EQ(controller->message(), std::optional<std::string>("still works")) << c.name;
    }
}

// Under `swift build` the layout is not compiled: the guide's session goes on
// without an overlay, one log line says so, and the platform is never asked
// for a layout it does not have.
TEST(VantroWindowController, AnUncompiledLayoutIsNotAskedForAndSaysSoOnce) {
    for (bool compiled : {true, false}) {
        sim::MacConfiguration configuration;
        configuration.layoutsCompiled = compiled;
        sim::SimulatedMac mac(configuration);
        auto guide = Vantro::sharedKit();
        guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
        mac.runFor(3.0);
        EXPECT_EQ(guide->isOverlayShown(), compiled) << compiled;
        std::vector<std::string> expectedLog;
        if (!compiled) expectedLog.push_back("Compiled layout not found: VantroWindowController");
        EXPECT_EQ(mac.log().lines(), expectedLog) << compiled;
        EXPECT_FALSE(mac.timeline().contains("the layout VantroWindowController is missing", "overlay")) << compiled;
    }
}

}  // namespace
}  // namespace vantro
