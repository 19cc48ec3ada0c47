// The overlay's rounded background.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// Fills its whole bounds with the system's window background colour, in a
/// rectangle with corners of radius 5. Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface VantroView : NSView
@end

NS_ASSUME_NONNULL_END
