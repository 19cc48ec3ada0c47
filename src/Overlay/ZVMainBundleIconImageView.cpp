#include "Overlay/ZVMainBundleIconImageView.h"

#include <algorithm>

#include "Platform/HostProcess.h"

namespace vantro {

std::shared_ptr<ZVMainBundleIconImageView> ZVMainBundleIconImageView::initWithFrame(const Rect& frame,
                                                                                    std::string applicationIconImage) {
    auto view = std::make_shared<ZVMainBundleIconImageView>();
    view->setFrame(frame);
    view->setImageScaling(NSImageScaleProportionallyDown);
    view->setImage(std::move(applicationIconImage));
    return view;
}

void ZVMainBundleIconImageView::mouseDown(const Event& event, const NextEventMatchingMask& nextEventMatchingMask) {
    if (event.type != NSEventTypeLeftMouseDown || event.clickCount != 1) {
        if (nextResponder_) nextResponder_(event);
        return;
    }
    if (!nextEventMatchingMask) return;
    // The events taken here are consumed: the mouse-up of a plain click
    // reaches no other handler. There is no distance threshold.
    while (std::optional<Event> next = nextEventMatchingMask(dragStartMask)) {
        if (next->type == NSEventTypeLeftMouseUp) return;
        if (next->type == NSEventTypeLeftMouseDragged) {
            beginDraggingSessionWithEvent(event);
            return;
        }
    }
}

void ZVMainBundleIconImageView::beginDraggingSessionWithEvent(const Event& event) {
    Platform& platform = HostProcess::current().platform();
    DraggingItem item;
    if (auto bundle = platform.bundles().mainBundle()) item.pasteboardWriterURL = bundle->bundleURL();
    const Rect bounds = this->bounds();
    const double side = std::min(bounds.size.width, bounds.size.height);
    item.draggingFrame = {bounds.origin, {side, side}};
    item.contents = image_;

    auto session = platform.dragging().beginDraggingSession({item}, event, weak_from_this());
    // A drag that did not begin will never end: inDrag stays NO, or the
    // overlay would wait for its end for ever.
    if (!session) return;
    session->setAnimatesToStartingPositionsOnCancelOrFail(true);
    session->setDraggingFormation(NSDraggingFormationNone);
    setInDrag(true);
}

DragOperation ZVMainBundleIconImageView::sourceOperationMaskForDraggingContext(DraggingSession&, DraggingContext) {
    return NSDragOperationEvery;
}

void ZVMainBundleIconImageView::draggingSessionEndedAtPoint(DraggingSession&, Point, DragOperation) { setInDrag(false); }

bool ZVMainBundleIconImageView::acceptsFirstMouse(const Event*) const { return true; }

void ZVMainBundleIconImageView::setInDrag(bool inDrag) {
    inDrag_ = inDrag;
    didChangeValueForKey("inDrag");
}

}  // namespace vantro
