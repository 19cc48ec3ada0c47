// The overlay's window and its content view.
//
// Implements: VantroWindow (initWithContentRect:styleMask:backing:defer:
// with the borderless mask whatever the caller asks, so windows from a
// layout and from code alike; isOpaque NO; the private _preventsActivation
// hook answering YES) and VantroContentView (no behaviour of its own).
// Known gaps: _preventsActivation is private to AppKit; a release that stops
// asking it lets a click on the overlay make the host active. A style mask
// set after creation (setStyleMask:) is not undone.

#import <Vantro/VantroContentView.h>
#import <Vantro/VantroWindow.h>

// The hook AppKit asks a window before a click on it activates its
// application. Private, so declared here only.
@interface VantroWindow ()
- (BOOL)_preventsActivation;
@end

@implementation VantroWindow

// The designated initialiser, which the layout's window and every other
// initialiser reach.
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag {
    (void)style;
    return [super initWithContentRect:contentRect styleMask:NSWindowStyleMaskBorderless backing:backingStoreType defer:flag];
}

- (BOOL)isOpaque {
    return NO;
}

- (BOOL)_preventsActivation {
    return YES;
}

@end

@implementation VantroContentView
@end
