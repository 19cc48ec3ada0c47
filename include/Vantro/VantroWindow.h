// The overlay's window: borderless, never opaque, and never the reason the
// host becomes the active application.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// A borderless window whatever style it is made with. It is never opaque, so
/// with a clear background only what its views draw shows; clicks on it do
/// not make the host application active. Use on the main thread.
@interface VantroWindow : NSWindow
@end

NS_ASSUME_NONNULL_END
