// Drawing on the real Mac.
//
// Implements: the canvas of the core's drawing (setColor: an NSColor made
// with colorWithCalibratedRed:green:blue:alpha: and set; fillPath and
// strokePath: an NSBezierPath of the core path's moves, lines and closes,
// filled or stroked with its default line width; fillRoundedRect:
// bezierPathWithRoundedRect:xRadius:yRadius: filled; windowBackgroundColor
// converted to calibrated RGB) and the colour crossings. Main thread, inside
// drawRect:.
// Known gaps: a path with a coordinate that is not a number is handed to
// AppKit as it is, which draws nothing of it.

#include "macOS/MacOverlay.h"

namespace vantro::mac {

NSBezierPath* toNSBezierPath(const BezierPath& path) {
    NSBezierPath* result = [NSBezierPath bezierPath];
    for (const BezierPath::Element& element : path.elements()) {
        switch (element.type) {
            case BezierPath::ElementType::MoveTo:
                [result moveToPoint:NSMakePoint(element.point.x, element.point.y)];
                break;
            case BezierPath::ElementType::LineTo:
                [result lineToPoint:NSMakePoint(element.point.x, element.point.y)];
                break;
            case BezierPath::ElementType::ClosePath:
                [result closePath];
                break;
        }
    }
    return result;
}

NSColor* toNSColor(const Color& color) {
    return [NSColor colorWithCalibratedRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

Color toColor(NSColor* color) {
    // Generic RGB is the space the calibrated-RGB colours live in.
    NSColor* rgb = [color colorUsingColorSpace:NSColorSpace.genericRGBColorSpace];
    CGFloat red = 0, green = 0, blue = 0, alpha = 0;
    [rgb getRed:&red green:&green blue:&blue alpha:&alpha];
    return {red, green, blue, alpha};
}

void MacCanvas::setColor(const Color& color) { [toNSColor(color) set]; }

void MacCanvas::fillPath(const BezierPath& path) { [toNSBezierPath(path) fill]; }

void MacCanvas::strokePath(const BezierPath& path) { [toNSBezierPath(path) stroke]; }

void MacCanvas::fillRoundedRect(const Rect& rect, double xRadius, double yRadius) {
    [[NSBezierPath bezierPathWithRoundedRect:toNSRect(rect) xRadius:xRadius yRadius:yRadius] fill];
}

Color MacCanvas::windowBackgroundColor() const { return toColor(NSColor.windowBackgroundColor); }

}  // namespace vantro::mac
