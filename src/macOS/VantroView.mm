// The overlay's drawn views: the rounded background and the arrow, with the
// arrow's colour.
//
// Implements: VantroView and VantroArrowView, each drawing through the
// core's drawing of its twin onto a canvas of the current graphics context,
// and the arrow's geometry, the core's outline and path handed back in
// AppKit's types;
// NSColor (Vantro) vantroArrowColor, the core's arrow colour as one NSColor
// made once per process.
// Known gaps: colours reach AppKit as calibrated RGB, so the background is
// the system's window background colour converted for the view's appearance
// at the time it draws, not the dynamic colour itself.

#import <Vantro/VantroArrowView.h>
#import <Vantro/VantroView.h>

#include <dispatch/dispatch.h>

#include <array>
#include <cstddef>

#include "Overlay/VantroArrowView.h"
#include "Overlay/VantroView.h"
#include "macOS/MacOverlay.h"
#include "macOS/MacPlatform.h"

@implementation VantroView {
    vantro::VantroView _core;
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    vantro::mac::MacCanvas canvas;
    _core.drawRect(vantro::mac::toRect(self.bounds), canvas);
}

@end

@implementation VantroArrowView {
    vantro::VantroArrowView _core;
}

- (void)drawRect:(NSRect)dirtyRect {
    (void)dirtyRect;
    // The arrow colour is kept by the process the framework runs in.
    vantro::mac::installHostProcess();
    vantro::mac::MacCanvas canvas;
    const NSSize size = self.frame.size;
    _core.drawRect({size.width, size.height}, canvas);
}

- (void)arrowPoints:(NSPoint*)points
          forLength:(CGFloat)length
          tailWidth:(CGFloat)tailWidth
          headWidth:(CGFloat)headWidth
         headLength:(CGFloat)headLength {
    std::array<vantro::Point, 7> outline{};
    _core.arrowPoints(outline, length, tailWidth, headWidth, headLength);
    for (std::size_t i = 0; i < outline.size(); ++i) points[i] = NSMakePoint(outline[i].x, outline[i].y);
}

- (NSBezierPath*)arrowFromPoint:(NSPoint)startPoint
                        toPoint:(NSPoint)endPoint
                      tailWidth:(CGFloat)tailWidth
                      headWidth:(CGFloat)headWidth
                     headLength:(CGFloat)headLength {
    return vantro::mac::toNSBezierPath(_core.arrowFromPoint(vantro::mac::toPoint(startPoint), vantro::mac::toPoint(endPoint),
                                                            tailWidth, headWidth, headLength));
}

@end

@implementation NSColor (Vantro)

+ (NSColor*)vantroArrowColor {
    static NSColor* color;
    static dispatch_once_t once;
    dispatch_once(&once, ^{
      vantro::mac::installHostProcess();
      color = vantro::mac::toNSColor(*vantro::vantroArrowColor());
    });
    return color;
}

@end
