#include <gtest/gtest.h>

#include <cairo.h>

#include "Overlay/VantroArrowView.h"
#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Pixels.h"
#include "Simulator/SimCanvas.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

using test::pixelAt;

struct VisibleRecorder : Observer {
    int count = 0;
    void observeValueForKeyPath(std::string_view, Observable&, ObservationContext) override { ++count; }
};
const char visibleContext[] = "visible";

// A simulated Mac with the overlay loaded from the framework's own layout.
class SimulatedOverlay : public ::testing::Test {
protected:
    SimulatedMac mac;
    std::shared_ptr<VantroWindowController> controller = VantroWindowController::initWithWindowNibName("VantroWindowController");
    SimOverlayWindow* window = simOverlayWindow(*controller);
    void SetUp() override { ASSERT_NE(window, nullptr); }
};

TEST_F(SimulatedOverlay, AnnouncesVisibleOnEachChangeAndWritesTheTimeline) {
    VisibleRecorder recorder;
    window->addObserver(recorder, "visible", ObservingOptionNone, visibleContext);
    window->setFrame({{100, 160}, {668, 690}}, true, false);
    for (int i = 0; i < 2; ++i) window->orderFront();
    EXPECT_EQ(recorder.count, 1);
    for (int i = 0; i < 2; ++i) window->orderOut();
    EXPECT_EQ(recorder.count, 2);
    window->orderFront();
    EXPECT_EQ(recorder.count, 3);
    EXPECT_EQ(mac.timeline().matching("shown at (100, 160, 668 × 690)", "overlay").size(), 2u);
    EXPECT_EQ(mac.timeline().matching("hidden", "overlay").size(), 1u);
    window->removeObserver(recorder, "visible", visibleContext);
}

TEST_F(SimulatedOverlay, AShownWindowIsRedrawnAtOnceOnlyWhenAskedToDisplay) {
    const Rect first{{100, 160}, {668, 690}}, second{{120, 100}, {700, 700}}, third{{0, 0}, {500, 500}};
    window->setFrame(first, false, false);
    window->orderFront();
    EXPECT_EQ(window->displayedFrame(), first) << "ordering in draws the window";
    window->setFrame(second, false, false);
    EXPECT_EQ(window->displayedFrame(), first) << "without display the old drawing stays for now";
    mac.runLoop().runOnePass();
    EXPECT_EQ(window->displayedFrame(), second) << "the next display cycle draws it";
    window->setFrame(third, true, false);
    EXPECT_EQ(window->displayedFrame(), third);
}

TEST_F(SimulatedOverlay, ViewsFollowTheWindowsFrame) {
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
}

TEST_F(SimulatedOverlay, DoubleClickOnTheIconIsPassedOnAndHiddenIconCannotBeReached) {
    EXPECT_FALSE(userClicksIcon(mac, *controller)) << "hidden";
    window->orderFront();
    EXPECT_TRUE(userClicksIcon(mac, *controller, 2));
    EXPECT_EQ(window->passedOnMouseDowns(), 1);
    // A mouse-down on the panel outside the icon does nothing.
    EXPECT_TRUE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 20}}, {{NSEventTypeLeftMouseDragged, 1, {610, 30}}}));
    EXPECT_EQ(mac.dragging().sessionsBegun(), 0);
    window->setBackgroundColor(Color::clearColor());
    EXPECT_FALSE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 400}}, {})) << "clear: goes through";
    window->setBackgroundColor({1, 1, 1, 0.5});
    EXPECT_TRUE(window->sendMouseDown({NSEventTypeLeftMouseDown, 1, {600, 400}}, {})) << "the window's own background";
}

TEST_F(SimulatedOverlay, DragStartsFromTheIconAndTravelsWithThePointer) {
    window->setFrame({{100, 160}, {668, 690}}, true, false);
    window->orderFront();
    ASSERT_TRUE(userStartsDraggingIcon(mac, *controller));
    const auto& session = mac.dragging().session();
    EXPECT_EQ(session->startLocation(), (Point{100 + 58, 160 + 55}));
    EXPECT_EQ(session->imageFrameOnScreen(), (Rect{{126, 183}, {64, 64}}));
    mac.dragging().moveTo({400, 500});
    EXPECT_EQ(session->imageFrameOnScreen().origin, (Point{126 + 242, 183 + 285}));
    mac.dragging().dropAt({400, 500});
    EXPECT_FALSE(controller->inDrag());
}

TEST_F(SimulatedOverlay, RendersPanelMessageArrowAndIcon) {
    controller->setMessage("Drag the Vantro Demo icon into the list above to grant it Full Disk Access.");
    window->setBackgroundColor(Color::clearColor());
    window->setFrame({{0, 0}, {668, 690}}, true, false);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 700, 720);
    cairo_t* cairo = cairo_create(surface);
    renderOverlay(cairo, *window, *controller, {16, 15});
    EXPECT_EQ(pixelAt(surface, 300, 700).a, 0) << "a hidden overlay draws nothing";
    window->orderFront();
    renderOverlay(cairo, *window, *controller, {16, 15});
    ASSERT_EQ(cairo_status(cairo), CAIRO_STATUS_SUCCESS);

    // Window point (x, y) lies at picture (16 + x, 15 + 690 − y).
    auto at = [&](double x, double y) { return pixelAt(surface, static_cast<int>(16 + x), static_cast<int>(15 + 690 - y)); };
    const auto arrowTail = at(440, 180);
    EXPECT_EQ(arrowTail.r + arrowTail.b, 0);
    EXPECT_NEAR(arrowTail.g, 160, 1) << "the arrow's green";
    EXPECT_GT(at(435.5, 180).r, 200) << "the white outline";
    EXPECT_NEAR(at(300, 12).r, 236, 1);
    EXPECT_EQ(at(300, 12).a, 255) << "the panel";
    EXPECT_EQ(at(5, 400).a, 0) << "clear background over the settings window";
    EXPECT_EQ(at(440, 300).a, 0) << "above the arrow's tip";
    EXPECT_GT(at(35, 70).b, 150);
    EXPECT_LT(at(35, 70).r, 150) << "the icon's blue tile";
    int dark = 0;  // some of the message is written in the field's first line
    for (int x = 110; x < 400; ++x) dark += at(x, 82).r < 100 && at(x, 82).a > 0;
    EXPECT_GT(dark, 10);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}

// The icon view shows the host's icon (128 points at its natural size)
// scaled proportionally down and centred: never stretched, never enlarged,
// never spilling out of a smaller view.
TEST(RenderOverlay, TheIconIsScaledProportionallyDownAndCentred) {
    SimulatedMac mac;
    struct Case { Size view; double side; } cases[] = {{{64, 40}, 40}, {{40, 64}, 40}, {{200, 160}, 128}, {{64, 64}, 64}};
    for (const auto& c : cases) {
        auto view = ZVMainBundleIconImageView::initWithFrame({{0, 0}, c.view}, "NSApplicationIcon:Vantro Demo");
        cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 300, 300);
        cairo_t* cairo = cairo_create(surface);
        const Rect rect{{50, 50}, c.view};
        drawIconView(cairo, rect, *view);
        auto tile = [&](int x, int y) {
            auto p = pixelAt(surface, x, y);
            return p.a > 200 && p.b > 150 && p.r < 150;
        };
        // The tile is the icon's square less a 6 % margin on each side.
        const double inset = c.side * 0.06;
        // The extent of the tile along the view's middle row and column (the
        // initial letter inside it is not the tile's colour).
        int left = 300, right = -1, top = 300, bottom = -1;
        for (int x = 0; x < 300; ++x)
            if (tile(x, static_cast<int>(rect.origin.y + c.view.height / 2))) left = std::min(left, x), right = x;
        for (int y = 0; y < 300; ++y)
            if (tile(static_cast<int>(rect.origin.x + c.view.width / 2), y)) top = std::min(top, y), bottom = y;
        const int across = right - left + 1, down = bottom - top + 1;
        const std::string name = std::to_string(c.view.width) + "x" + std::to_string(c.view.height);
        EXPECT_NEAR(across, c.side - 2 * inset, 2) << name;
        EXPECT_NEAR(down, c.side - 2 * inset, 2) << name;
        EXPECT_NEAR(left, rect.origin.x + (c.view.width - c.side) / 2 + inset, 1.5) << name;
        EXPECT_NEAR(top, rect.origin.y + (c.view.height - c.side) / 2 + inset, 1.5) << name;
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
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

    struct Case {
        const char* text;
        double width, height;
        int lines;
    } cases[] = {
        {"short", 200, 100, 1},
        {"one two three four five six seven eight nine ten eleven", 200, 100, 2},
        {"first\nsecond", 200, 100, 2},
        {"Datenschutzeinstellungen", 60, 100, 4},  // a word longer than the line is broken
        {"a b c d e f g h i j k l m n o p q r s t u v w x y z a b c d e f", 200, 20, 1},  // lines below the field are left out
        {"", 200, 100, 1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(drawWrappedText(cairo, {{0, 0}, {c.width, c.height}}, c.text, 13, false, {0, 0, 0, 1}), c.lines) << c.text;
    EXPECT_EQ(cairo_status(cairo), CAIRO_STATUS_SUCCESS);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}

}  // namespace
}  // namespace vantro::sim
