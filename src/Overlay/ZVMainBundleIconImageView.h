#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Dragging.h"
#include "Platform/Event.h"
#include "Platform/Geometry.h"
#include "Platform/Observation.h"

namespace vantro {

// NSImageScaling values.
inline constexpr long NSImageScaleProportionallyDown = 0;

// The overlay's image of the host application's icon. Pressing on it and
// moving drags the host application itself (its main bundle's location) to
// wherever the user drops it. Observable for "inDrag", announced on every
// set; YES from the start of a drag until the platform ends it, by drop or
// by cancel. Made with initWithFrame and owned by a shared_ptr, since it is
// the source of its own dragging sessions. Main thread.
class ZVMainBundleIconImageView : public Observable,
                                  public DraggingSource,
                                  public std::enable_shared_from_this<ZVMainBundleIconImageView> {
public:
    // The window's nextEventMatchingMask: with a distant-future deadline: the
    // next event the user makes, waiting as long as needed. nullopt when no
    // event will ever come (the window went away).
    using NextEventMatchingMask = std::function<std::optional<Event>(std::uint64_t mask)>;
    // The next responder's mouseDown:.
    using ResponderMouseDown = std::function<void(const Event&)>;

    // A view at `frame` (in its superview) showing the running application's
    // icon (`applicationIconImage`), scaled down to fit and never enlarged.
    static std::shared_ptr<ZVMainBundleIconImageView> initWithFrame(const Rect& frame, std::string applicationIconImage);

    // The drag-start decision. A single left click runs a local event loop
    // over the events that `nextEventMatchingMask` hands out, for left
    // mouse-up and left mouse-dragged (mask 68): a mouse-up ends it with
    // nothing done; the first drag, however short, starts a dragging session
    // with `event` (the mouse-down, not the drag). Events of other types are
    // passed over. Every other mouse-down — another button, a double or
    // triple click — goes unchanged to the next responder.
    void mouseDown(const Event& event, const NextEventMatchingMask& nextEventMatchingMask);
    // Drags the main bundle's location, shown by the view's image in a square
    // frame at the bounds' origin whose side is the smaller of the bounds'
    // width and height. The session animates back when cancelled or refused,
    // in no formation; inDrag turns YES.
    void beginDraggingSessionWithEvent(const Event& event);

    // Every operation, inside the application or out.
    DragOperation sourceOperationMaskForDraggingContext(DraggingSession& session, DraggingContext context) override;
    // Whatever the outcome, inDrag turns NO.
    void draggingSessionEndedAtPoint(DraggingSession& session, Point screenPoint, DragOperation operation) override;
    // The click that brings the overlay forward reaches the view as well, so
    // a drag can start with it.
    bool acceptsFirstMouse(const Event* event) const;

    bool inDrag() const { return inDrag_; }
    void setInDrag(bool inDrag);

    static constexpr std::uint64_t dragStartMask = NSEventMaskLeftMouseUp | NSEventMaskLeftMouseDragged;

    // The view's place in its superview, and its own coordinates.
    Rect frame() const { return frame_; }
    void setFrame(const Rect& frame) { frame_ = frame; }
    Rect bounds() const { return {{0, 0}, frame_.size}; }
    const std::string& image() const { return image_; }
    void setImage(std::string image) { image_ = std::move(image); }
    long imageScaling() const { return imageScaling_; }
    void setImageScaling(long scaling) { imageScaling_ = scaling; }
    void setNextResponder(ResponderMouseDown nextResponder) { nextResponder_ = std::move(nextResponder); }

    std::string observableName() const override { return "ZVMainBundleIconImageView"; }

    ZVMainBundleIconImageView() = default;

private:
    bool inDrag_ = false;
    Rect frame_;
    std::string image_;
    long imageScaling_ = 0;
    ResponderMouseDown nextResponder_;
};

}  // namespace vantro
