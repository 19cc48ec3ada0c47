#include "Overlay/VantroArrowView.h"

#include <cmath>
#include <mutex>

#include "Platform/HostProcess.h"

namespace vantro {

namespace {

struct ArrowColorState {
    std::once_flag colorOnce;
    std::shared_ptr<const Color> color;
};

}  // namespace

void VantroArrowView::arrowPoints(std::array<Point, 7>& points, double length, double tailWidth, double headWidth,
                                  double headLength) const {
    const double neck = length - headLength;
    points[0] = {0, tailWidth / 2};
    points[1] = {neck, tailWidth / 2};
    points[2] = {neck, headWidth / 2};
    points[3] = {length, 0};
    points[4] = {neck, -headWidth / 2};
    points[5] = {neck, -tailWidth / 2};
    points[6] = {0, -tailWidth / 2};
}

double VantroArrowView::arrowLength(Point from, Point to) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    // Single precision on purpose: the arrow has always been measured this way,
    // and the tip's landing point depends on it.
    return static_cast<double>(std::hypotf(static_cast<float>(dx), static_cast<float>(dy)));
}

AffineTransformStruct VantroArrowView::arrowTransform(Point from, Point to) {
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const double length = arrowLength(from, to);
    const double ux = dx / length;
    const double uy = dy / length;
    return {ux, uy, -uy, ux, from.x, from.y};
}

BezierPath VantroArrowView::arrowFromPoint(Point from, Point to, double tailWidth, double headWidth,
                                           double headLength) const {
    BezierPath path;
    const AffineTransformStruct transform = arrowTransform(from, to);
    std::array<Point, 7> points;
    arrowPoints(points, arrowLength(from, to), tailWidth, headWidth, headLength);
    path.moveToPoint(points[0]);
    // The first line returns to the point just moved to; the outline has
    // always carried this zero-length segment.
    for (const Point& p : points) path.lineToPoint(p);
    path.closePath();
    path.transformUsingAffineTransform(transform);
    return path;
}

void VantroArrowView::drawRect(Size frameSize, Canvas& canvas) const {
    const Point start{frameSize.width / 2.0, 1.0};
    const Point end{frameSize.width / 2.0, frameSize.height - 1.0};
    const BezierPath path = arrowFromPoint(start, end, tailWidth, headWidth, headLength);
    canvas.setColor(*vantroArrowColor());
    canvas.fillPath(path);
    canvas.setColor(Color::whiteColor());
    canvas.strokePath(path);
}

std::shared_ptr<const Color> vantroArrowColor() {
    auto& state = HostProcess::current().value<ArrowColorState>();
    // Made once per process, whichever thread draws first.
    std::call_once(state.colorOnce, [&] { state.color = std::make_shared<const Color>(Color{0.0, 0.6266, 0.0, 1.0}); });
    return state.color;
}

}  // namespace vantro
