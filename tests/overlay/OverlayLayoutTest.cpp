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
    *os << "{level at load " << b.levelAtLoad << ", shown " << b.shown << " at level " << b.levelWhenShown << ", icon outlet "
        << b.iconOutlet << ", field outlet " << b.fieldOutlet << ", message " << b.showsMessage << ", borderless " << b.borderless
        << ", opaque " << b.opaque << ", panel " << b.drawsPanel << ", arrow " << b.drawsArrow << ", icon " << b.drawsIcon
        << ", drag followed " << b.dragFollowed << ", host behind " << b.hostStaysBehind << "}";
}

// Counts the pixels of a picture of the window that pass `test` (r, g, b, a
// from 0 to 255, not premultiplied).
int countPixels(cairo_surface_t* surface, const std::function<bool(int, int, int, int)>& test) {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    int count = 0;
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y)
        for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
            const auto value = *reinterpret_cast<const std::uint32_t*>(data + y * stride + x * 4);
            const int a = (value >> 24) & 0xff;
            auto un = [a](int c) { return a == 0 ? 0 : c * 255 / a; };
            if (test(un((value >> 16) & 0xff), un((value >> 8) & 0xff), un(value & 0xff), a)) ++count;
        }
    return count;
}

OverlayBehaviour observeOverlay(const std::string& layout) {
    test::TemporaryResources resources;
    resources.write("VantroWindowController.xib", layout);
    sim::SimulatedMac mac(resources.configuration());
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
    b.borderless = window->styleMask() == sim::NSWindowStyleMaskBorderless;

    const Rect frame = window->frame();
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(frame.size.width),
                                                          static_cast<int>(frame.size.height));
    cairo_t* cairo = cairo_create(surface);
    sim::renderOverlay(cairo, *window, *controller, {0, 0});
    const int pixels = static_cast<int>(frame.size.width * frame.size.height);
    b.opaque = countPixels(surface, [](int, int, int, int a) { return a == 255; }) == pixels;
    b.drawsPanel = countPixels(surface, [](int r, int g, int b, int a) { return a == 255 && r > 225 && g > 225 && b > 225; }) > 5000;
    b.drawsArrow = countPixels(surface, [](int r, int g, int b, int a) { return a > 200 && g > 120 && r < 60 && b < 60; }) > 500;
    b.drawsIcon = countPixels(surface, [](int r, int, int b, int a) { return a > 200 && b > 150 && r < 150; }) > 500;
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

TEST(OverlayLayout, APlainWindowActivatesTheHostWhereAVantroWindowDoesNot) {
    const std::string plain = test::withoutAttribute(R"(customClass="VantroWindow")")(test::realLayout("VantroWindowController"));
    for (bool vantroWindow : {true, false}) {
        test::TemporaryResources resources;
        if (!vantroWindow) resources.write("VantroWindowController.xib", plain);
        sim::SimulatedMac mac(resources.configuration());
        auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
        auto* window = sim::simOverlayWindow(*controller);
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->windowClass(), vantroWindow ? "VantroWindow" : "NSWindow");
        EXPECT_EQ(window->isOpaque(), !vantroWindow);
        EXPECT_EQ(window->preventsActivation(), vantroWindow);
        window->setFrame({{100, 160}, {668, 690}}, true, false);
        window->setBackgroundColor(Color::clearColor());
        window->orderFront();
        auto preferences = mac.workspace().start(SystemPreferencesBundleIdentifier);
        mac.workspace().activate(preferences);
        mac.runUntilIdle();
        ASSERT_EQ(mac.workspace().front(), preferences);
        // A press on the clear part over the settings window: through a
        // VantroWindow to the window below, taken by an opaque one.
        EXPECT_EQ(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {300, 400}}, {}), !vantroWindow);
        // A click on the message panel.
        EXPECT_TRUE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {300, 12}}, {{NSEventTypeLeftMouseUp, 1, {300, 12}}}));
        EXPECT_EQ(mac.workspace().front() == mac.workspace().host(), !vantroWindow);
    }
}

}  // namespace
}  // namespace vantro
