// The overlay's window: borderless, never opaque, and never the reason the
// host becomes the active application.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// A borderless window whatever style it is made with. It is never opaque, so
/// with a clear background only what its views draw shows; clicks on it do
/// not make the host application active. Use on the main thread.
///
/// In the framework built for the Mac App Store (VANTRO_APP_STORE=1) the
/// window is a non-activating panel, an NSPanel; a host sees it as the
/// NSWindow it also is.
NS_SWIFT_UI_ACTOR
#if defined(VANTRO_APP_STORE) && VANTRO_APP_STORE
@interface VantroWindow : NSPanel
#else
@interface VantroWindow : NSWindow
#endif
@end

NS_ASSUME_NONNULL_END
