#include <gtest/gtest.h>

#include <cairo.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimCanvas.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"
#include "Pixels.h"
#include "support/LayoutEdits.h"
#include "support/TemporaryResources.h"

namespace vantro {
namespace {

constexpr const char* guideMessage = "Drag Vantro Demo into the list above.";

// What the user sees and can do with the overlay a guide session lays over
// System Preferences, when the overlay comes from a given layout.
struct OverlayBehaviour {
    // The window's level straight from the layout, before the guide sets it;
    // -1 without a window.
    long levelAtLoad = -1;
    bool shown = false;
    long levelWhenShown = -1;
    bool iconOutlet = false;
    bool fieldOutlet = false;
    // A text field shows the guide's message.
    bool showsMessage = false;
    bool borderless = false;
    // A non-activating panel as well (the App Store build's window).
    bool nonactivatingPanel = false;
    // Drawn over its whole frame: the settings window under it is hidden.
    bool opaque = false;
    bool drawsPanel = false;
    bool drawsArrow = false;
    bool drawsIcon = false;
    // While the user drags the icon, the controller says it is in a drag.
    bool dragFollowed = false;
    // After the user pressed on the overlay, System Preferences is still in
    // front and the overlay still shows.
    bool hostStaysBehind = false;
    bool operator==(const OverlayBehaviour&) const = default;
};

void PrintTo(const OverlayBehaviour& b, std::ostream* os) {
    // The levels, then the flags in the order they are declared.
    *os << "{level " << b.levelAtLoad << "/" << b.levelWhenShown;
    for (bool flag : {b.shown, b.iconOutlet, b.fieldOutlet, b.showsMessage, b.borderless, b.nonactivatingPanel, b.opaque,
                      b.drawsPanel, b.drawsArrow, b.drawsIcon, b.dragFollowed, b.hostStaysBehind})
        *os << " " << flag;
    *os << "}";
}

OverlayBehaviour observeOverlay(const std::string& layout, bool appStoreBuild = false) {
    test::TemporaryResources resources;
    resources.write("VantroWindowController.xib", layout);
    auto configuration = resources.configuration();
    configuration.appStoreBuild = appStoreBuild;
    sim::SimulatedMac mac(configuration);
    OverlayBehaviour b;
    if (auto loaded = VantroWindowController::initWithWindowNibName("VantroWindowController"); loaded->window())
        b.levelAtLoad = loaded->window()->level();

    auto guide = Vantro::sharedKit();
    guide->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess, std::string(guideMessage));
    mac.runFor(1.5);
    auto controller = guide->windowController();
    auto* window = controller ? sim::simOverlayWindow(*controller) : nullptr;
    if (!window) return b;
    b.shown = guide->isOverlayShown();
    b.levelWhenShown = window->level();
    b.iconOutlet = controller->iconView() != nullptr;
    b.fieldOutlet = controller->unlockMessageField() != nullptr;
    const auto texts = window->textsShown(*controller);
    b.showsMessage = std::find(texts.begin(), texts.end(), guideMessage) != texts.end();
    b.borderless = (window->styleMask() & ~NSWindowStyleMaskNonactivatingPanel) == NSWindowStyleMaskBorderless;
    b.nonactivatingPanel = (window->styleMask() & NSWindowStyleMaskNonactivatingPanel) != 0;

    const Rect frame = window->frame();
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(frame.size.width),
                                                          static_cast<int>(frame.size.height));
    cairo_t* cairo = cairo_create(surface);
    sim::renderOverlay(cairo, *window, *controller, {0, 0});
    const int pixels = static_cast<int>(frame.size.width * frame.size.height);
    using test::countPixels, test::Pixel;
    b.opaque = countPixels(surface, [](const Pixel& p) { return p.a == 255; }) == pixels;
    b.drawsPanel = countPixels(surface, [](const Pixel& p) { return p.a == 255 && p.r > 225 && p.g > 225 && p.b > 225; }) > 5000;
    b.drawsArrow = countPixels(surface, [](const Pixel& p) { return p.a > 200 && p.g > 120 && p.r < 60 && p.b < 60; }) > 500;
    b.drawsIcon = countPixels(surface, [](const Pixel& p) { return p.a > 200 && p.b > 150 && p.r < 150; }) > 500;
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);

    if (sim::userStartsDraggingIcon(mac, *controller)) {
        b.dragFollowed = controller->inDrag();
        mac.dragging().cancel();
    }
    mac.runFor(0.2);
    auto front = mac.workspace().front();
    b.hostStaysBehind = guide->isOverlayShown() && front && front->bundleIdentifier() == SystemPreferencesBundleIdentifier;
    return b;
}

// The real layout, and copies each missing one thing the overlay relies on:
// each case says how what the user sees differs from the real layout's.
TEST(OverlayLayout, EveryPartOfTheLayoutShowsInWhatTheUserSees) {
    OverlayBehaviour real;
    real.levelAtLoad = 0;
    real.shown = true;
    real.levelWhenShown = NSPopUpMenuWindowLevel;
    real.iconOutlet = real.fieldOutlet = real.showsMessage = true;
    real.borderless = true;
    real.drawsPanel = real.drawsArrow = real.drawsIcon = true;
    real.dragFollowed = real.hostStaysBehind = true;
    const OverlayBehaviour noWindow{};
    struct Case {
        const char* name;
        test::LayoutEdit edit;
        std::function<void(OverlayBehaviour&)> differs;
    } cases[] = {
        {"the real layout", test::unchanged(), [](OverlayBehaviour&) {}},
        {"owner of another class",
         test::replacing(R"(customClass="VantroWindowController")", R"(customClass="NSWindowController")"),
         [&](OverlayBehaviour& b) { b = noWindow; }},
        {"window outlet", test::withoutElement(R"(property="window")"), [&](OverlayBehaviour& b) { b = noWindow; }},
        {"message bound to a key the owner lacks", test::replacing(R"(keyPath="message")", R"(keyPath="title")"),
         [&](OverlayBehaviour& b) { b = noWindow; }},
        // A plain NSWindow: opaque, and a press on it makes the host active,
        // which ends the session once the drag is over.
        {"window class", test::withoutAttribute(R"(customClass="VantroWindow")"),
         [](OverlayBehaviour& b) {
             b.opaque = true;
             b.hostStaysBehind = false;
         }},
        {"window class, with a title bar",
         test::both(test::withoutAttribute(R"(customClass="VantroWindow")"),
                    test::replacing(R"(<windowStyleMask key="styleMask"/>)", R"(<windowStyleMask key="styleMask" titled="YES"/>)")),
         [](OverlayBehaviour& b) {
             b.borderless = false;
             b.opaque = true;
             b.hostStaysBehind = false;
         }},
        // A VantroWindow is borderless whatever the layout asks.
        {"title bar", test::replacing(R"(<windowStyleMask key="styleMask"/>)", R"(<windowStyleMask key="styleMask" titled="YES"/>)"),
         [](OverlayBehaviour&) {}},
        {"window level", test::replacing(R"(customClass="VantroWindow")", R"(customClass="VantroWindow" level="floating")"),
         [](OverlayBehaviour& b) { b.levelAtLoad = 3; }},
        // The icon is still there to drag, but the controller cannot tell.
        {"icon outlet", test::withoutElement(R"(property="iconView")"),
         [](OverlayBehaviour& b) {
             b.iconOutlet = false;
             b.dragFollowed = false;
         }},
        {"icon view class", test::withoutAttribute(R"(customClass="ZVMainBundleIconImageView")"),
         [](OverlayBehaviour& b) {
             b.iconOutlet = false;
             b.drawsIcon = false;
             b.dragFollowed = false;
         }},
        {"message field outlet", test::withoutElement(R"(property="unlockMessageField")"),
         [](OverlayBehaviour& b) { b.fieldOutlet = false; }},
        {"message binding", test::withoutElement(R"(keyPath="message")"), [](OverlayBehaviour& b) { b.showsMessage = false; }},
        {"arrow view class", test::withoutAttribute(R"(customClass="VantroArrowView")"),
         [](OverlayBehaviour& b) { b.drawsArrow = false; }},
        {"background view class", test::withoutAttribute(R"(customClass="VantroView")"),
         [](OverlayBehaviour& b) { b.drawsPanel = false; }},
    };
    for (const auto& c : cases) {
        OverlayBehaviour expected = real;
        c.differs(expected);
        EXPECT_EQ(observeOverlay(c.edit(test::realLayout("VantroWindowController"))), expected) << c.name;
    }
}

}  // namespace
// The App Store build's window has no private activation hook: it keeps the
// host behind as a non-activating panel, and otherwise shows and behaves as
// the ordinary build's, from the real layout and from one with a title bar.
TEST(OverlayLayout, TheAppStoreBuildsPanelKeepsTheHostBehindAsTheOrdinaryWindowDoes) {
    const test::LayoutEdit layouts[] = {
        test::unchanged(),
        test::replacing(R"(<windowStyleMask key="styleMask"/>)", R"(<windowStyleMask key="styleMask" titled="YES"/>)"),
    };
    for (const auto& edit : layouts) {
        const std::string layout = edit(test::realLayout("VantroWindowController"));
        OverlayBehaviour ordinary = observeOverlay(layout);
        EXPECT_TRUE(ordinary.hostStaysBehind);
        EXPECT_FALSE(ordinary.nonactivatingPanel);
        OverlayBehaviour expected = ordinary;
        expected.nonactivatingPanel = true;
        EXPECT_EQ(observeOverlay(layout, true), expected);
    }
}

}  // namespace vantro
