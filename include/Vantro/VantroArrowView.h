// The overlay's arrow and its colour.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// Draws one thick green arrow with a white outline from the bottom centre of
/// the view to its top centre, one point in from each end. It holds no state.
/// Use on the main thread.
@interface VantroArrowView : NSView
@end

@interface NSColor (Vantro)
/// The arrow's green (calibrated RGB 0, 0.6266, 0, 1): made on the first call
/// and the same object on every call after it.
@property (class, readonly, strong) NSColor *vantroArrowColor;
@end

NS_ASSUME_NONNULL_END
