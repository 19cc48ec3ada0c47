// The overlay's draggable icon: the Objective-C twin of the core's icon view.
//
// Implements: initWithCoder: and initWithFrame: (the core twin made with the
// view's frame and the name of the application's icon; the scaling the core
// chose and applicationIconImage set on the view); mouseDown: (the core's
// drag-start decision, given the window's nextEventMatchingMask:untilDate:
// with the distant future in the event-tracking mode, dequeuing, and the next
// responder's mouseDown: with the very event received); the core's drag
// start through beginDraggingSessionWithEvent:; both NSDraggingSource
// methods and acceptsFirstMouse: forwarded to the core; inDrag as a
// key-value-observable mirror of the core's "inDrag" announcements, with the
// right old and new values.
// Known gaps: the core sees the view's frame as it is when a mouse-down or a
// drag starts, which is the only time it reads it; a view whose bounds differ
// from its frame's size (scaled or flipped) drags a frame in the wrong
// coordinates.

#import <Vantro/ZVMainBundleIconImageView.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "Overlay/ZVMainBundleIconImageView.h"
#include "macOS/MacOverlay.h"
#include "macOS/MacPlatform.h"

using CoreIconView = vantro::ZVMainBundleIconImageView;

namespace {

// Compared by address: the twin's registration on its core view.
constexpr char IconViewInDragContext[] = "ZVIconImageViewTwin.inDrag";

// AppKit's name for the application's icon (NSImageNameApplicationIcon): what
// the core records as the view's image.
constexpr std::string_view applicationIconImageName = "NSApplicationIcon";

}  // namespace

NS_ASSUME_NONNULL_BEGIN

@interface ZVMainBundleIconImageView ()
- (void)vantroMakeCore;
- (void)vantroUpdateCoreFrame;
- (void)vantroCoreInDragChanged;
- (std::shared_ptr<vantro::ZVMainBundleIconImageView>)vantroCore;
- (nullable NSEvent*)vantroDraggingEvent;
@end

NS_ASSUME_NONNULL_END

namespace {

// Re-announces the core view's "inDrag" on its twin.
class InDragRelay final : public vantro::Observer {
public:
    explicit InDragRelay(ZVIconImageViewTwin* view) : view_(view) {}
    void observeValueForKeyPath(std::string_view keyPath, vantro::Observable&, vantro::ObservationContext context) override {
        if (context != IconViewInDragContext || keyPath != "inDrag") return;
        [view_ vantroCoreInDragChanged];
    }

private:
    __weak ZVIconImageViewTwin* view_;
};

}  // namespace

@implementation ZVMainBundleIconImageView {
    std::shared_ptr<CoreIconView> _core;
    std::unique_ptr<InDragRelay> _inDragRelay;
    BOOL _inDrag;
    NSEvent* _draggingEvent;
}

+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key {
    // inDrag is announced when the core announces it, and only then.
    if ([key isEqualToString:@"inDrag"]) return NO;
    return [super automaticallyNotifiesObserversForKey:key];
}

- (instancetype)initWithFrame:(NSRect)frameRect {
    if ((self = [super initWithFrame:frameRect])) [self vantroMakeCore];
    return self;
}

- (nullable instancetype)initWithCoder:(NSCoder*)coder {
    if ((self = [super initWithCoder:coder])) [self vantroMakeCore];
    return self;
}

- (void)vantroMakeCore {
    vantro::mac::installHostProcess();
    _core = CoreIconView::initWithFrame(vantro::mac::toRect(self.frame), std::string(applicationIconImageName));
    _inDrag = _core->inDrag();
    _inDragRelay = std::make_unique<InDragRelay>(self);
    _core->addObserver(*_inDragRelay, "inDrag", vantro::ObservingOptionNone, IconViewInDragContext);
    vantro::mac::registerDraggingSource(_core.get(), self);
    self.imageScaling = static_cast<NSImageScaling>(_core->imageScaling());
    self.image = NSApplication.sharedApplication.applicationIconImage;
}

- (void)dealloc {
    if (_core) {
        vantro::mac::unregisterDraggingSource(_core.get());
        _core->removeObserver(*_inDragRelay, "inDrag", IconViewInDragContext);
    }
}

- (std::shared_ptr<CoreIconView>)vantroCore {
    return _core;
}

- (NSEvent*)vantroDraggingEvent {
    return _draggingEvent;
}

// The core reads the view's bounds when it starts a drag.
- (void)vantroUpdateCoreFrame {
    _core->setFrame(vantro::mac::toRect(self.frame));
}

- (void)mouseDown:(NSEvent*)event {
    _draggingEvent = event;
    [self vantroUpdateCoreFrame];
    __weak ZVIconImageViewTwin* weakSelf = self;
    _core->setNextResponder([weakSelf, event](const vantro::Event&) { [weakSelf.nextResponder mouseDown:event]; });
    auto nextEventMatchingMask = [weakSelf](std::uint64_t mask) -> std::optional<vantro::Event> {
        NSEvent* next = [weakSelf.window nextEventMatchingMask:static_cast<NSEventMask>(mask)
                                                     untilDate:NSDate.distantFuture
                                                        inMode:NSEventTrackingRunLoopMode
                                                       dequeue:YES];
        if (!next) return std::nullopt;
        return vantro::mac::toEvent(next);
    };
    _core->mouseDown(vantro::mac::toEvent(event), nextEventMatchingMask);
    // The next responder is this event's only: a later one brings its own.
    _core->setNextResponder({});
}

- (void)beginDraggingSessionWithEvent:(NSEvent*)event {
    _draggingEvent = event;
    [self vantroUpdateCoreFrame];
    _core->beginDraggingSessionWithEvent(vantro::mac::toEvent(event));
}

- (NSDragOperation)draggingSession:(NSDraggingSession*)session
    sourceOperationMaskForDraggingContext:(NSDraggingContext)context {
    std::shared_ptr<vantro::DraggingSession> twin = vantro::mac::draggingSessionFor(session);
    return static_cast<NSDragOperation>(
        _core->sourceOperationMaskForDraggingContext(*twin, static_cast<vantro::DraggingContext>(context)));
}

- (void)draggingSession:(NSDraggingSession*)session endedAtPoint:(NSPoint)screenPoint operation:(NSDragOperation)operation {
    std::shared_ptr<vantro::DraggingSession> twin = vantro::mac::draggingSessionFor(session);
    vantro::mac::draggingSessionEnded(session);
    _core->draggingSessionEndedAtPoint(*twin, vantro::mac::toPoint(screenPoint), operation);
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    if (!event) return _core->acceptsFirstMouse(nullptr);
    const vantro::Event seen = vantro::mac::toEvent(event);
    return _core->acceptsFirstMouse(&seen);
}

- (BOOL)inDrag {
    return _inDrag;
}

- (void)setInDrag:(BOOL)inDrag {
    _core->setInDrag(inDrag);
}

- (void)vantroCoreInDragChanged {
    [self willChangeValueForKey:@"inDrag"];
    _inDrag = _core->inDrag();
    [self didChangeValueForKey:@"inDrag"];
}

@end

namespace vantro::mac {

std::shared_ptr<vantro::ZVMainBundleIconImageView> coreIconView(ZVIconImageViewTwin* view) {
    return view ? [view vantroCore] : nullptr;
}

NSEvent* draggingEventOf(ZVIconImageViewTwin* view) { return [view vantroDraggingEvent]; }

}  // namespace vantro::mac
