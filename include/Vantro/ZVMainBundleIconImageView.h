// The overlay's image of the host application's icon, which the user drags
// into the settings list.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// Shows the running application's icon, scaled down to fit and never
/// enlarged, whether a layout or initWithFrame: made it. A single left click
/// followed by any movement drags the host application itself (its main
/// bundle's location); every other mouse-down goes to the next responder. The
/// view is the source of its own dragging sessions. Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface ZVMainBundleIconImageView : NSImageView <NSDraggingSource>

/// YES from the start of a drag until it ends, by drop or by cancel; NO at
/// first. Observable with key-value observing.
@property (nonatomic) BOOL inDrag;

/// Starts dragging the host application with `event`, the mouse-down the drag
/// began with, in a square frame at the bounds' origin whose side is the
/// smaller of the bounds' width and height. inDrag turns YES.
- (void)beginDraggingSessionWithEvent:(NSEvent *)event NS_SWIFT_NAME(beginDraggingSession(with:));

@end

NS_ASSUME_NONNULL_END
