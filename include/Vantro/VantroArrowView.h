// The overlay's arrow and its colour.

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

/// Draws one thick green arrow with a white outline from the bottom centre of
/// the view to its top centre, one point in from each end. It holds no state.
/// Use on the main thread.
NS_SWIFT_UI_ACTOR
@interface VantroArrowView : NSView

/// Fills `points`, an array of exactly seven, with the outline of an arrow
/// along the positive x axis, its tail at the origin and its tip at x =
/// length: tail top, neck top, head top, tip, head bottom, neck bottom, tail
/// bottom, the neck at length - headLength. No argument is checked.
- (void)arrowPoints:(NSPoint *)points
          forLength:(CGFloat)length
          tailWidth:(CGFloat)tailWidth
          headWidth:(CGFloat)headWidth
         headLength:(CGFloat)headLength;

/// A new closed path of that arrow laid from `startPoint` to `endPoint`. Equal
/// points give a path of points that are not numbers.
- (NSBezierPath *)arrowFromPoint:(NSPoint)startPoint
                         toPoint:(NSPoint)endPoint
                       tailWidth:(CGFloat)tailWidth
                       headWidth:(CGFloat)headWidth
                      headLength:(CGFloat)headLength
    NS_SWIFT_NAME(arrow(from:to:tailWidth:headWidth:headLength:));

@end

@interface NSColor (Vantro)
/// The arrow's green (calibrated RGB 0, 0.6266, 0, 1): made on the first call
/// and the same object on every call after it.
@property (class, readonly, strong) NSColor *vantroArrowColor;
@end

NS_ASSUME_NONNULL_END
