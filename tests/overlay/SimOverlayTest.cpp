#include <gtest/gtest.h>

#include <cairo.h>

#include <unistd.h>

#include <filesystem>

#include "Overlay/VantroArrowView.h"
#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimCanvas.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

struct VisibleRecorder : Observer {
    int count = 0;
    void observeValueForKeyPath(std::string_view, Observable&, ObservationContext) override { ++count; }
};
const char visibleContext[] = "visible";

std::optional<OverlayNib> projectLayout() { return readOverlayNib(VANTRO_TEST_RESOURCES_DIR "/VantroWindowController.xib"); }

TEST(OverlayLayoutFile, HoldsTheWindowItsViewsAndTheOwnersOutlets) {
    auto nib = projectLayout();
    ASSERT_TRUE(nib);
    EXPECT_EQ(nib->ownerClass, "VantroWindowController");
    EXPECT_EQ(nib->windowClass, "VantroWindow");
    EXPECT_FALSE(nib->visibleAtLaunch);
    EXPECT_EQ(nib->contentRect.size, (Size{668, 690})) << "a System Preferences window of 668 × 580 and the strip of 110";
    std::vector<std::string> classes;
    for (const auto& v : nib->views) classes.push_back(v.className);
    EXPECT_EQ(classes, (std::vector<std::string>{"VantroContentView", "VantroView", "ZVMainBundleIconImageView", "NSTextField",
                                                 "VantroArrowView"}));
    ASSERT_TRUE(nib->outletView("iconView"));
    EXPECT_EQ(nib->outletView("iconView")->className, "ZVMainBundleIconImageView");
    ASSERT_TRUE(nib->outletView("unlockMessageField"));
    const NibView& field = *nib->outletView("unlockMessageField");
    EXPECT_EQ(field.className, "NSTextField");
    EXPECT_EQ(field.ownerBindings.at("value"), "message");
    EXPECT_EQ(field.autoresizingMask, NSViewWidthSizable | NSViewMaxYMargin);
    EXPECT_EQ(nib->outletView("window"), nullptr) << "the window outlet names the window, not a view";
    for (std::size_t i = 1; i < nib->views.size(); ++i) EXPECT_EQ(nib->views[i].superview, 0);

    // The message panel and the icon lie in the strip below the settings
    // window; the arrow rises from the panel into the settings list.
    const Rect panel = nib->views[1].frame;
    EXPECT_LE(panel.maxY(), 110);
    const Rect icon = nib->outletView("iconView")->frame;
    EXPECT_LE(icon.maxY(), panel.maxY());
    const NibView& arrow = nib->views[4];
    EXPECT_LT(arrow.frame.minY(), panel.maxY());
    EXPECT_GT(arrow.frame.maxY(), 110 + 100);
}

TEST(OverlayLayoutFile, AutoresizingSharesTheChangeAmongFlexibleParts) {
    const Rect frame{{10, 20}, {100, 50}};
    const Size from{200, 100}, to{300, 160};
    struct Case {
        const char* name;
        unsigned mask;
        Rect expected;
    } cases[] = {
        {"nothing flexible: keeps left and bottom margins", NSViewNotSizable, frame},
        {"width", NSViewWidthSizable, {{10, 20}, {200, 50}}},
        {"left margin", NSViewMinXMargin, {{110, 20}, {100, 50}}},
        {"right margin only", NSViewMaxXMargin, frame},
        {"both side margins in proportion", NSViewMinXMargin | NSViewMaxXMargin, {{20, 20}, {100, 50}}},
        {"width and height", NSViewWidthSizable | NSViewHeightSizable, {{10, 20}, {200, 110}}},
        {"top margin: stays at the bottom", NSViewMaxYMargin, frame},
        {"bottom margin: follows the top", NSViewMinYMargin, {{10, 80}, {100, 50}}},
    };
    for (const auto& c : cases) EXPECT_EQ(autoresizedFrame(frame, c.mask, from, to), c.expected) << c.name;
    // All flexible parts of zero length share the change equally.
    EXPECT_EQ(autoresizedFrame({{0, 0}, {0, 0}}, NSViewMinXMargin | NSViewWidthSizable, {0, 0}, {10, 0}),
              (Rect{{5, 0}, {5, 0}}));
    // A shrink never makes a negative size.
    EXPECT_EQ(autoresizedFrame({{0, 0}, {10, 10}}, NSViewWidthSizable, {20, 20}, {0, 20}).size.width, 0);
}

TEST(OverlayLayoutFile, ParsesLayoutTextAndRejectsWhatIsNotALayout) {
    EXPECT_FALSE(parseOverlayNib(""));
    EXPECT_FALSE(parseOverlayNib("<document"));
    EXPECT_FALSE(parseOverlayNib("<?xml version=\"1.0\"?><document type=\"other\"><objects/></document>"));
    EXPECT_FALSE(readOverlayNib("/nonexistent/VantroWindowController.xib"));
    auto empty = parseOverlayNib(
        R"(<?xml version="1.0"?><document type="com.apple.InterfaceBuilder3.Cocoa.XIB"><objects/></document>)");
    ASSERT_TRUE(empty);
    EXPECT_TRUE(empty->windowId.empty()) << "a layout with no window outlet holds no window";
}

TEST(SimOverlayWindow, IsBorderlessNonOpaqueAndNeverActivatesTheHost) {
    SimulatedMac mac;
    SimOverlayWindow window(mac, std::string(VantroWindowClass), {{0, 0}, {100, 100}}, NSWindowStyleMaskTitled | NSWindowStyleMaskClosable);
    EXPECT_EQ(window.styleMask(), NSWindowStyleMaskBorderless);
    EXPECT_EQ(window.requestedStyleMask(), NSWindowStyleMaskTitled | NSWindowStyleMaskClosable);
    window.setBackgroundColor({1, 0, 0, 1});
    EXPECT_FALSE(window.isOpaque()) << "even with an opaque background";
    EXPECT_TRUE(window.preventsActivation());

    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* overlay = simOverlayWindow(*controller);
    ASSERT_TRUE(overlay);
    overlay->orderFront();
    auto front = mac.workspace().start(SystemPreferencesBundleIdentifier);
    mac.workspace().activate(front);
    mac.runUntilIdle();
    ASSERT_EQ(mac.workspace().front(), front);
    EXPECT_TRUE(userClicksIcon(mac, *controller));
    EXPECT_TRUE(userStartsDraggingIcon(mac, *controller)) << "the first click reaches the icon";
    EXPECT_EQ(mac.workspace().front(), front) << "the host stays behind";
    mac.dragging().cancel();
}

TEST(SimOverlayWindow, AnnouncesVisibleOnEachChangeAndWritesTheTimeline) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    OverlayWindow* window = controller->window();
    ASSERT_TRUE(window);
    VisibleRecorder recorder;
    window->addObserver(recorder, "visible", ObservingOptionNone, visibleContext);
    window->setFrame({{100, 160}, {668, 690}}, true, false);
    window->orderFront();
    window->orderFront();
    EXPECT_EQ(recorder.count, 1);
    window->orderOut();
    window->orderOut();
    EXPECT_EQ(recorder.count, 2);
    window->orderFront();
    EXPECT_EQ(recorder.count, 3);
    EXPECT_EQ(mac.timeline().matching("shown at (100, 160, 668 × 690)", "overlay").size(), 2u);
    EXPECT_EQ(mac.timeline().matching("hidden", "overlay").size(), 1u);
    window->removeObserver(recorder, "visible", visibleContext);
}

TEST(SimOverlayWindow, AShownWindowIsRedrawnAtOnceOnlyWhenAskedToDisplay) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* window = simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    const Rect first{{100, 160}, {668, 690}}, second{{120, 100}, {700, 700}}, third{{0, 0}, {500, 500}};
    window->setFrame(first, false, false);
    window->orderFront();
    EXPECT_EQ(window->displayedFrame(), first) << "ordering in draws the window";

    window->setFrame(second, false, false);
    EXPECT_EQ(window->frame(), second);
    EXPECT_EQ(window->displayedFrame(), first) << "without display the old drawing stays for now";
    mac.runLoop().runOnePass();
    EXPECT_EQ(window->displayedFrame(), second) << "the next display cycle draws it";

    window->setFrame(third, true, false);
    EXPECT_EQ(window->displayedFrame(), third);
}

TEST(SimOverlayWindow, ViewsFollowTheWindowsFrame) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* window = simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    // A settings window of 780 × 500 and the strip below it.
    window->setFrame({{40, 200}, {780, 610}}, true, false);
    auto panel = window->firstViewOfClass("VantroView");
    auto arrow = window->firstViewOfClass("VantroArrowView");
    ASSERT_TRUE(panel && arrow);
    EXPECT_EQ(panel->frame, (Rect{{10, 8}, {760, 94}})) << "stretches along the bottom strip";
    EXPECT_EQ(arrow->frame.size, (Size{40, 170}));
    EXPECT_EQ(arrow->frame.minY(), 96);
    EXPECT_GT(arrow->frame.minX(), 420) << "the arrow keeps its place in proportion";
    EXPECT_EQ(controller->iconView()->frame(), (Rect{{26, 23}, {64, 64}})) << "the icon stays at the bottom left";
    EXPECT_EQ(iconCenterOnScreen(*controller), (std::optional<Point>{{40 + 58, 200 + 55}}));
    auto field = window->viewWithId(window->layout().outlets.at("unlockMessageField"));
    ASSERT_TRUE(field);
    EXPECT_EQ(field->valueBinding, std::optional<std::string>("message"));
}

TEST(SimOverlayWindow, DoubleClickOnTheIconIsPassedOnAndHiddenIconCannotBeReached) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* window = simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    EXPECT_FALSE(userClicksIcon(mac, *controller)) << "hidden";
    window->orderFront();
    EXPECT_TRUE(userClicksIcon(mac, *controller, 2));
    EXPECT_EQ(window->passedOnMouseDowns(), 1);
    EXPECT_EQ(mac.dragging().sessionsBegun(), 0);
    // A mouse-down on the panel outside the icon does nothing.
    EXPECT_TRUE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 20}}, {{NSEventTypeLeftMouseDragged, 1, {610, 30}}}));
    EXPECT_EQ(mac.dragging().sessionsBegun(), 0);
    window->setBackgroundColor(Color::clearColor());
    EXPECT_FALSE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 400}}, {})) << "clear: goes through";
    window->setBackgroundColor({1, 1, 1, 0.5});
    EXPECT_TRUE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 400}}, {})) << "the window's own background";
}

TEST(SimOverlayWindow, DragStartsFromTheIconAndTravelsWithThePointer) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* window = simOverlayWindow(*controller);
    window->setFrame({{100, 160}, {668, 690}}, true, false);
    window->orderFront();
    std::optional<SimDragging::Drop> offered;
    mac.dragging().setDropTarget([&](const SimDragging::Drop& drop) {
        offered = drop;
        return NSDragOperationGeneric;
    });
    ASSERT_TRUE(userStartsDraggingIcon(mac, *controller));
    const auto& session = mac.dragging().session();
    EXPECT_EQ(session->startLocation(), (Point{100 + 58, 160 + 55}));
    EXPECT_EQ(session->imageFrameOnScreen(), (Rect{{126, 183}, {64, 64}}));
    mac.dragging().moveTo({400, 500});
    EXPECT_EQ(session->imageFrameOnScreen().origin, (Point{126 + 242, 183 + 285}));
    EXPECT_TRUE(controller->inDrag());
    mac.dragging().dropAt({400, 500});
    EXPECT_FALSE(controller->inDrag());
    ASSERT_TRUE(offered);
    EXPECT_EQ(offered->url, mac.bundles().mainBundle()->bundleURL());
    EXPECT_TRUE(mac.timeline().contains("taken", "drag"));
}

// Reads a pixel of an ARGB32 surface as un-premultiplied 0–255 values.
struct Pixel {
    int r, g, b, a;
};
Pixel pixelAt(cairo_surface_t* surface, int x, int y) {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const auto value = *reinterpret_cast<const std::uint32_t*>(data + y * stride + x * 4);
    const int a = (value >> 24) & 0xff;
    auto un = [a](int c) { return a == 0 ? 0 : c * 255 / a; };
    return {un((value >> 16) & 0xff), un((value >> 8) & 0xff), un(value & 0xff), a};
}

TEST(RenderOverlay, DrawsPanelMessageArrowAndIcon) {
    SimulatedMac mac;
    auto controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    auto* window = simOverlayWindow(*controller);
    ASSERT_TRUE(window);
    controller->setMessage("Drag the Vantro Demo icon into the list above to grant it Full Disk Access.");
    window->setBackgroundColor(Color::clearColor());
    window->setFrame({{0, 0}, {668, 690}}, true, false);

    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 700, 720);
    cairo_t* cairo = cairo_create(surface);
    const Point topLeft{16, 15};
    renderOverlay(cairo, *window, *controller, topLeft);
    EXPECT_EQ(pixelAt(surface, 300, 700).a, 0) << "a hidden overlay draws nothing";
    window->orderFront();
    renderOverlay(cairo, *window, *controller, topLeft);
    ASSERT_EQ(cairo_status(cairo), CAIRO_STATUS_SUCCESS);

    // Window point (x, y) lies at picture (16 + x, 15 + 690 − y).
    auto at = [&](double x, double y) { return pixelAt(surface, static_cast<int>(16 + x), static_cast<int>(15 + 690 - y)); };
    const Pixel arrowTail = at(440, 180);
    EXPECT_EQ(arrowTail.r, 0);
    EXPECT_NEAR(arrowTail.g, 160, 1) << "the arrow's green";
    EXPECT_EQ(arrowTail.b, 0);
    const Pixel arrowEdge = at(435.5, 180);
    EXPECT_GT(arrowEdge.r, 200) << "the white outline";
    const Pixel panel = at(300, 12);
    EXPECT_NEAR(panel.r, 236, 1);
    EXPECT_EQ(panel.a, 255);
    EXPECT_EQ(at(5, 400).a, 0) << "clear background over the settings window";
    EXPECT_EQ(at(440, 300).a, 0) << "above the arrow's tip";
    const Pixel icon = at(35, 70);
    EXPECT_GT(icon.b, 150);
    EXPECT_LT(icon.r, 150) << "the icon's blue tile";
    // Some of the message is written in the field's first line.
    int dark = 0;
    for (int x = 110; x < 400; ++x)
        if (at(x, 82).r < 100 && at(x, 82).a > 0) ++dark;
    EXPECT_GT(dark, 10);

    const auto directory = std::filesystem::temp_directory_path() / ("vantro-overlay-" + std::to_string(::getpid()));
    std::filesystem::create_directories(directory);
    const auto png = directory / "overlay.png";
    EXPECT_EQ(cairo_surface_write_to_png(surface, png.c_str()), CAIRO_STATUS_SUCCESS);
    EXPECT_GT(std::filesystem::file_size(png), 1000u);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    std::filesystem::remove_all(directory);
}

TEST(RenderOverlay, CanvasSkipsPathsThatAreNotNumbersAndWrapsLongText) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 200, 100);
    cairo_t* cairo = cairo_create(surface);
    SimCanvas canvas(cairo, {0, 0}, {40, 2});
    canvas.setColor({0, 1, 0, 1});
    BezierPath nan = VantroArrowView().arrowFromPoint({20, 1}, {20, 1}, 8, 20, 20);
    canvas.fillPath(nan);
    canvas.strokePath(nan);
    EXPECT_EQ(cairo_status(cairo), CAIRO_STATUS_SUCCESS);
    for (int x = 0; x < 40; ++x) EXPECT_EQ(pixelAt(surface, x, 1).a, 0);

    const Color black{0, 0, 0, 1};
    EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {200, 100}}, "short", 13, false, black), 1);
    EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {200, 100}}, "one two three four five six seven eight nine ten eleven", 13, false, black), 2);
    EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {200, 100}}, "first\nsecond", 13, false, black), 2);
    EXPECT_GT(drawWrappedText(cairo, {{0, 0}, {60, 100}}, "Datenschutzeinstellungen", 13, false, black), 1)
        << "a word longer than the line is broken";
    EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {200, 20}}, "a b c d e f g h i j k l m n o p q r s t u v w x y z a b c d e f", 13,
                              false, black),
              1)
        << "lines below the field are left out";
    EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {200, 100}}, "", 13, false, black), 1);
    EXPECT_EQ(cairo_status(cairo), CAIRO_STATUS_SUCCESS);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}

}  // namespace
}  // namespace vantro::sim
