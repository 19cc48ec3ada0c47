#pragma once

// What the overlay's Objective-C classes and the seam areas behind them
// share inside the shell: geometry, colour and event crossings, the canvas
// the views draw through, the icon views' dragging bookkeeping, and the way
// from an Objective-C twin to its core object. Main thread only.

#import <AppKit/AppKit.h>
#import <Vantro/VantroWindowController.h>
#import <Vantro/ZVMainBundleIconImageView.h>

#include <memory>

#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Platform/Controls.h"
#include "Platform/Dragging.h"
#include "Platform/Drawing.h"
#include "Platform/Event.h"
#include "Platform/Geometry.h"
#include "macOS/MacTwins.h"

// The Objective-C icon view under a name of its own: inside namespace vantro,
// "ZVMainBundleIconImageView" names the core class.
typedef ZVMainBundleIconImageView ZVIconImageViewTwin;

NS_ASSUME_NONNULL_BEGIN

namespace vantro::mac {

inline Point toPoint(NSPoint point) { return {point.x, point.y}; }
inline Rect toRect(NSRect rect) { return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}}; }
inline NSRect toNSRect(const Rect& rect) { return NSMakeRect(rect.origin.x, rect.origin.y, rect.size.width, rect.size.height); }

// An event as the core reads it: type, click count (0 for an event that is
// not a mouse event, which has none) and location in its window.
Event toEvent(NSEvent* event);

// A calibrated-RGB colour, and back: any colour converted to calibrated
// (generic) RGB; a colour that cannot be converted (a pattern) reads as clear.
NSColor* toNSColor(const Color& color);
Color toColor(NSColor* _Nullable color);

// A new NSBezierPath of the core path's moves, lines and closes, in order.
NSBezierPath* toNSBezierPath(const BezierPath& path);

// The canvas of the view being drawn: draws into the current graphics
// context, so it is made inside drawRect: and lives no longer.
class MacCanvas final : public Canvas {
public:
    void setColor(const Color& color) override;
    void fillPath(const BezierPath& path) override;
    void strokePath(const BezierPath& path) override;
    void fillRoundedRect(const Rect& rect, double xRadius, double yRadius) override;
    Color windowBackgroundColor() const override;
};

// The core twin of an icon view (nullptr for nil), and the mouse-down a drag
// from it begins with: the last one the view received, or the event given to
// its beginDraggingSessionWithEvent:.
std::shared_ptr<vantro::ZVMainBundleIconImageView> coreIconView(ZVIconImageViewTwin* _Nullable view);
NSEvent* _Nullable draggingEventOf(ZVIconImageViewTwin* view);

// Dragging (MacDragging.mm). An icon view registers its core twin as the
// source its drags are begun for, and unregisters it as it goes; the view is
// held weakly.
void registerDraggingSource(const DraggingSource* source, ZVIconImageViewTwin* view);
void unregisterDraggingSource(const DraggingSource* source);
// The core session of a running drag: the one beginDraggingSession returned,
// or a new one for a session the core did not begin. draggingSessionEnded
// lets the session go once the source has been told of the end.
std::shared_ptr<DraggingSession> draggingSessionFor(NSDraggingSession* _Nullable session);
void draggingSessionEnded(NSDraggingSession* _Nullable session);

// The core controller an Objective-C controller is the twin of, held weakly
// by the Objective-C one (VantroWindowController.mm).
std::shared_ptr<vantro::VantroWindowController> rememberedCoreController(VantroWindowControllerTwin* controller);
void rememberCoreController(VantroWindowControllerTwin* controller,
                            const std::shared_ptr<vantro::VantroWindowController>& core);

// The AppKit view behind a view of a layout the Mac loaded (the overlay's
// message field); nil for nullptr, for another kind of view, and once the
// view is gone.
NSView* _Nullable nsViewOf(const std::shared_ptr<View>& view);

}  // namespace vantro::mac

NS_ASSUME_NONNULL_END
