#pragma once

#include <array>
#include <memory>

#include "Platform/Drawing.h"
#include "Platform/Geometry.h"

namespace vantro {

// The overlay's arrow: one thick green arrow with a white outline, from the
// bottom centre of the view to its top centre. The view holds no state; its
// geometry is plain arithmetic and only the final fill and stroke reach the
// canvas. Main thread.
class VantroArrowView {
public:
    // The seven outline points of an arrow along the positive x axis, tail at
    // the origin, tip at x = length, symmetric about the x axis: tail top,
    // neck top, head top, tip, head bottom, neck bottom, tail bottom. No
    // argument is checked: a head longer than the arrow puts the neck at
    // negative x, a head narrower than the tail gives a notched outline.
    void arrowPoints(std::array<Point, 7>& points, double length, double tailWidth, double headWidth,
                     double headLength) const;

    // A new closed path of the arrow from `from` to `to`: a move to the tail
    // top, seven lines (the first of which returns to the tail top), a close,
    // then turned and moved onto the line from → to. Equal points give a
    // path of NaN points.
    BezierPath arrowFromPoint(Point from, Point to, double tailWidth, double headWidth, double headLength) const;

    // The rotation onto the direction from → to followed by the move to
    // `from`. The length is taken in single precision, so the direction is a
    // unit vector only to single-precision accuracy.
    static AffineTransformStruct arrowTransform(Point from, Point to);
    // The arrow's length as the path uses it: hypotf of the differences
    // rounded to single precision, widened back.
    static double arrowLength(Point from, Point to);

    // Draws the whole arrow for a view of `frameSize`, keeping one point of
    // margin at the bottom and the top: filled in the arrow colour, stroked
    // in white with the default line width.
    void drawRect(Size frameSize, Canvas& canvas) const;

    static constexpr double tailWidth = 8.0;
    static constexpr double headWidth = 20.0;
    static constexpr double headLength = 20.0;
};

// The arrow colour (calibrated RGB 0, 0.6266, 0, 1). Made on the first call
// in the process and kept for its life; every call returns the same object.
std::shared_ptr<const Color> vantroArrowColor();

}  // namespace vantro
