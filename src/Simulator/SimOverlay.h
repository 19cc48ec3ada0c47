#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Overlay/VantroWindow.h"
#include "Platform/Controls.h"
#include "Platform/Dragging.h"
#include "Platform/OverlayWindow.h"
#include "Simulator/OverlayNib.h"

namespace vantro {
class VantroWindowController;
class ZVMainBundleIconImageView;
}  // namespace vantro

namespace vantro::sim {

class SimulatedMac;

// NSWindowStyleMask bits (borderless and non-activating panel: the core's).
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

// A text field of the overlay (NSTextField). Bound to the File's Owner's
// "message", it shows the owner's message; unbound, the text the layout gave
// it. The binding is read when the field is shown, so the owner is asked then.
class SimTextField : public View {
public:
    SimTextField(std::string id, std::string title, std::optional<std::string> valueBinding)
        : id_(std::move(id)), title_(std::move(title)), valueBinding_(std::move(valueBinding)) {}

    const std::string& id() const { return id_; }
    const std::optional<std::string>& valueBinding() const { return valueBinding_; }
    // What the field shows for `owner`.
    std::string stringValue(const VantroWindowController& owner) const;

private:
    std::string id_;
    std::string title_;
    std::optional<std::string> valueBinding_;
};

// The class a window layout must give the overlay's window.
inline constexpr std::string_view VantroWindowClass = "VantroWindow";

// The overlay window of the simulated Mac, made from a layout as the class
// the layout names. A VantroWindow:
// - is borderless whatever style its maker asks for;
// - is never opaque, so only what its views draw shows over a clear
//   background, and clicks where it draws nothing go to the window below;
// - never makes the host active: a click on it leaves the front application
//   as it was, because it answers YES to the private _preventsActivation
//   hook or, in the App Store build, which has no hook, because it is a
//   non-activating panel; a window with neither activates the host.
// Any other class is a plain NSWindow: it keeps the style mask it was given,
// is opaque (drawn over its whole frame, its background at full strength, and
// taking every click), and a click on it makes the host the active
// application. Either way the window:
// - starts at the level its layout gives, the normal level (0) when none;
// - announces "visible" each time it is shown or hidden, and writes showing,
//   hiding and moving to the timeline;
// - lays out its views from the layout, following each view's autoresizing
//   mask when its frame changes, and keeps the objects it made for them (the
//   icon views and the text fields) for its whole life;
// - delivers the user's mouse-downs to the view under the pointer.
class SimOverlayWindow : public OverlayWindow, public Observer, public std::enable_shared_from_this<SimOverlayWindow> {
public:
    // initWithContentRect:styleMask:backing:defer: of `windowClass`, with the
    // views of `layout`. Must be owned by a shared_ptr before its icon views
    // are clicked.
    SimOverlayWindow(SimulatedMac& mac, std::string windowClass, const Rect& contentRect, unsigned long styleMask,
                     OverlayNib layout = {});
    ~SimOverlayWindow() override;

    // Follows the owner's "message", which the text fields show through
    // their bindings, and writes what the window says to the timeline when it
    // is shown and whenever that changes while it shows.
    void followMessageOf(std::weak_ptr<VantroWindowController> owner);
    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

    void setBackgroundColor(const Color& color) override { background_ = color; }
    void setLevel(long level) override { level_ = level; }
    void setFrame(const Rect& frame, bool display, bool animate) override;
    void orderFront() override;
    void orderOut() override;
    bool isVisible() const override { return visible_; }
    Rect frame() const override { return frame_; }
    // The frame the window's contents were last drawn for. Ordering the
    // window in and setFrame:display:YES draw at once; a frame set with
    // display NO is drawn by the next display cycle, at the end of the main
    // run loop's pass, and until then the screen shows the old drawing.
    Rect displayedFrame() const { return displayedFrame_; }
    long level() const override { return level_; }
    Color backgroundColor() const override { return background_; }

    const std::string& windowClass() const { return windowClass_; }
    unsigned long styleMask() const { return isVantroWindow() ? vantroWindowStyleMask() : requestedStyleMask_; }
    // What the window's maker asked for.
    unsigned long requestedStyleMask() const { return requestedStyleMask_; }
    bool isOpaque() const { return !isVantroWindow(); }
    bool preventsActivation() const {
        return isVantroWindow() && (vantroWindowAnswersActivationHook() || (styleMask() & NSWindowStyleMaskNonactivatingPanel));
    }

    // The layout's views for the current frame, the content view first, in
    // drawing order.
    std::vector<OverlayView> views() const;
    std::optional<OverlayView> viewWithId(std::string_view id) const;
    std::optional<OverlayView> firstViewOfClass(std::string_view className) const;
    const OverlayNib& layout() const { return layout_; }

    // The icon view made for the layout's view `id`; nullptr when that view
    // is not a ZVMainBundleIconImageView.
    std::shared_ptr<ZVMainBundleIconImageView> iconViewWithId(std::string_view id) const;
    // The first icon view in drawing order, or nullptr.
    std::shared_ptr<ZVMainBundleIconImageView> iconView() const;
    // The text field made for the layout's view `id`; nullptr when that view
    // is not a text field.
    std::shared_ptr<SimTextField> textFieldWithId(std::string_view id) const;
    // What the text field laid out as `view` shows for `owner`; empty for a
    // view that is not a text field.
    std::string textShownBy(const OverlayView& view, const VantroWindowController& owner) const;
    // What every text field shows for `owner`, in drawing order.
    std::vector<std::string> textsShown(const VantroWindowController& owner) const;
    // The first icon view's frame in window coordinates; nullopt without one.
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
    bool isVantroWindow() const { return windowClass_ == VantroWindowClass; }
    void placeIconViews();
    void recordTextShown();

    SimulatedMac& mac_;
    std::string windowClass_;
    OverlayNib layout_;
    unsigned long requestedStyleMask_;
    Rect frame_;
    Rect displayedFrame_;
    bool displayPending_ = false;
    long level_ = 0;
    Color background_{0.925, 0.925, 0.925, 1};
    bool visible_ = false;
    // The objects made for the layout's views, by view id: the window's view
    // hierarchy owns them.
    std::map<std::string, std::shared_ptr<ZVMainBundleIconImageView>, std::less<>> iconViews_;
    std::map<std::string, std::shared_ptr<SimTextField>, std::less<>> textFields_;
    int passedOn_ = 0;
    std::weak_ptr<VantroWindowController> messageOwner_;
    std::optional<std::string> recordedText_;
};

// Loads the layout `nibName` from the framework's resources with `owner` as
// its File's Owner, which must be a VantroWindowController and may connect
// only the outlets such a controller has (window, iconView,
// unlockMessageField) and bind only its "message". Gives the window the
// window outlet names, made as the class the layout says, and the icon view
// and text field the other two outlets name when they are of those kinds.
// A missing or malformed document, another owner, an unknown outlet or key,
// or no window outlet gives an empty OverlayLayout; the timeline says why.
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
