// The overlay's window and its content view.
//
// Implements: VantroWindow (initWithContentRect:styleMask:backing:defer:
// with the core's style mask whatever the caller asks, so windows from a
// layout and from code alike; isOpaque NO; the private _preventsActivation
// hook answering YES, in the App Store build a non-activating panel instead,
// which does not hide when the host is not active) and VantroContentView (no
// behaviour of its own).
// Known gaps: _preventsActivation is private to AppKit; a release that stops
// asking it lets a click on the overlay make the host active. A style mask
// set after creation (setStyleMask:) is not undone.

#import <Vantro/VantroContentView.h>
#import <Vantro/VantroWindow.h>

#include "Overlay/VantroWindow.h"
#include "Vocabulary/BuildVariant.h"
#include "macOS/MacPlatform.h"

#if !VANTRO_APP_STORE
// The hook AppKit asks a window before a click on it activates its
// application. Private, so declared here only.
@interface VantroWindow ()
- (BOOL)_preventsActivation;
@end
#endif

@implementation VantroWindow

// The designated initialiser, which the layout's window and every other
// initialiser reach.
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag {
    (void)style;
    vantro::mac::installHostProcess();
    self = [super initWithContentRect:contentRect
                            styleMask:static_cast<NSWindowStyleMask>(vantro::vantroWindowStyleMask())
                              backing:backingStoreType
                                defer:flag];
#if VANTRO_APP_STORE
    // A panel hides whenever its application is not active, which is when
    // the overlay shows.
    self.hidesOnDeactivate = NO;
#endif
    return self;
}

- (BOOL)isOpaque {
    return NO;
}

#if !VANTRO_APP_STORE
- (BOOL)_preventsActivation {
    return vantro::vantroWindowAnswersActivationHook();
}
#endif

@end

@implementation VantroContentView
@end
