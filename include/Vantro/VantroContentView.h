// The overlay window's content view.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// The content view of the overlay's layout: a plain view under a name of its
/// own, so the layout can name it. Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface VantroContentView : NSView
@end

NS_ASSUME_NONNULL_END
