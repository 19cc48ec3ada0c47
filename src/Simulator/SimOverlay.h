#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Dragging.h"
#include "Platform/OverlayWindow.h"
#include "Simulator/OverlayNib.h"

namespace vantro {
class VantroWindowController;
class ZVMainBundleIconImageView;
}  // namespace vantro

namespace vantro::sim {

class SimulatedMac;

// NSWindowStyleMask bits.
inline constexpr unsigned long NSWindowStyleMaskBorderless = 0;
inline constexpr unsigned long NSWindowStyleMaskTitled = 1ul << 0;
inline constexpr unsigned long NSWindowStyleMaskClosable = 1ul << 1;

// One view of the overlay, placed for the window's current frame.
struct OverlayView {
    std::string id;
    std::string className;
    // In window coordinates (origin bottom left).
    Rect frame;
    // The owner's key path whose value the view shows, when bound ("message").
    std::optional<std::string> valueBinding;
    std::string title;
    double fontSize = 13.0;
    bool boldFont = false;
};

// The overlay window of the simulated Mac (VantroWindow):
// - borderless whatever style its maker asks for;
// - never opaque, so only what its views draw shows over a clear background;
// - never makes the host active: a click on it leaves the front application
//   as it was (the real window answers YES to the private
//   _preventsActivation hook);
// - announces "visible" each time it is shown or hidden, and writes showing,
//   hiding and moving to the timeline;
// - lays out its views from the layout it was loaded from, following each
//   view's autoresizing mask when its frame changes;
// - delivers the user's mouse-downs to the view under the pointer.
class SimOverlayWindow : public OverlayWindow, public std::enable_shared_from_this<SimOverlayWindow> {
public:
    // initWithContentRect:styleMask:backing:defer: — `styleMask` is replaced
    // by NSWindowStyleMaskBorderless.
    SimOverlayWindow(SimulatedMac& mac, const Rect& contentRect, unsigned long styleMask, OverlayNib layout = {});

    void setBackgroundColor(const Color& color) override { background_ = color; }
    void setLevel(long level) override { level_ = level; }
    void setFrame(const Rect& frame, bool display, bool animate) override;
    void orderFront() override;
    void orderOut() override;
    bool isVisible() const override { return visible_; }
    Rect frame() const override { return frame_; }
    long level() const override { return level_; }
    Color backgroundColor() const override { return background_; }

    unsigned long styleMask() const { return styleMask_; }
    // What the window's maker asked for before it was made borderless.
    unsigned long requestedStyleMask() const { return requestedStyleMask_; }
    bool isOpaque() const { return false; }
    bool preventsActivation() const { return true; }

    // The layout's views for the current frame, the content view first, in
    // drawing order.
    std::vector<OverlayView> views() const;
    std::optional<OverlayView> viewWithId(std::string_view id) const;
    std::optional<OverlayView> firstViewOfClass(std::string_view className) const;
    const OverlayNib& layout() const { return layout_; }

    // Connects the icon view laid out as the view `id`; its frame follows the
    // window's from now on.
    void setIconView(const std::shared_ptr<ZVMainBundleIconImageView>& iconView, std::string id);
    std::shared_ptr<ZVMainBundleIconImageView> iconView() const { return iconView_.lock(); }
    // The icon view's frame in window coordinates; nullopt without one.
    std::optional<Rect> iconFrameInWindow() const;

    // The user presses the mouse at `locationInWindow`; `following` are the
    // events the user makes next, handed to a view that tracks the mouse
    // itself. False when the window is hidden or the point is clear, so the
    // click goes to the window below.
    bool sendMouseDown(const Event& event, std::deque<Event> following);
    // Mouse-downs that the icon view passed on to its next responder.
    int passedOnMouseDowns() const { return passedOn_; }
    void mouseDownPassedOn(const Event& event);

private:
    void placeIconView();

    SimulatedMac& mac_;
    OverlayNib layout_;
    unsigned long requestedStyleMask_;
    unsigned long styleMask_ = NSWindowStyleMaskBorderless;
    Rect frame_;
    long level_ = 0;
    Color background_{0.925, 0.925, 0.925, 1};
    bool visible_ = false;
    std::weak_ptr<ZVMainBundleIconImageView> iconView_;
    std::string iconViewId_;
    int passedOn_ = 0;
};

// Loads the layout `nibName` from the framework's resources with `owner` as
// its File's Owner. Only "VantroWindowController" is a window layout: it gives
// the overlay window and its icon view, showing the host's icon. Any other
// name, a missing or malformed document, or one without a window outlet
// gives an empty OverlayLayout.
OverlayLayout loadOverlayLayout(SimulatedMac& mac, std::string_view nibName, VantroWindowController& owner);

// The image name of the host application's icon (applicationIconImage).
std::string applicationIconImageName(const SimulatedMac& mac);

// The controller's window as the simulated Mac made it; nullptr when it has
// none or another platform made it.
SimOverlayWindow* simOverlayWindow(const VantroWindowController& controller);
// The centre of the overlay's icon on the screen (origin bottom left).
std::optional<Point> iconCenterOnScreen(const VantroWindowController& controller);

// What the scripted user does with the overlay's icon. Each answers false
// when the overlay is hidden or has no icon. The caller says on the timeline
// what the user does; the window and the drag record what follows.
//
// A click (or a double click): the mouse goes down and comes up unmoved.
bool userClicksIcon(SimulatedMac& mac, const VantroWindowController& controller, long clickCount = 1);
// Presses on the icon and moves a few points: a drag begins, held until the
// user drops it (mac.dragging().dropAt) or gives it up (mac.dragging().cancel).
bool userStartsDraggingIcon(SimulatedMac& mac, const VantroWindowController& controller);
enum class DragEnd { Drop, Cancel };
// The whole drag at once: presses on the icon, carries it to `screenPoint`
// (origin bottom left) and drops it there or gives it up. Answers whether a
// drag ran.
bool userDragsIcon(SimulatedMac& mac, const VantroWindowController& controller, Point screenPoint, DragEnd end = DragEnd::Drop);

}  // namespace vantro::sim
