#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Overlay/VantroArrowView.h"
#include "Overlay/VantroView.h"
#include "RecordingCanvas.h"
#include "Simulator/SimulatedMac.h"

namespace vantro {
namespace {

using Element = BezierPath::ElementType;

// The seven outline points as the path carries them (its lines 1 to 7).
std::vector<Point> outline(const BezierPath& path) {
    std::vector<Point> out;
    for (const auto& e : path.elements())
        if (e.type == Element::LineTo) out.push_back(e.point);
    return out;
}

TEST(VantroArrowView, WorkedExampleOfAFortyByHundredView) {
    sim::SimulatedMac mac;
    test::RecordingCanvas canvas;
    VantroArrowView().drawRect({40, 100}, canvas);
    ASSERT_EQ(canvas.sequence(), (std::vector<std::string>{"color", "fill", "color", "stroke"}));
    const std::vector<Point> expected = {{16, 1}, {16, 79}, {10, 79}, {20, 99}, {30, 79}, {24, 79}, {24, 1}};
    EXPECT_EQ(outline(canvas.calls[1].path), expected);
    EXPECT_EQ(outline(canvas.calls[3].path), expected) << "the stroke follows the filled outline";
    EXPECT_EQ(canvas.calls[0].color, *vantroArrowColor());
    EXPECT_EQ(canvas.calls[2].color, Color::whiteColor());
}

TEST(VantroArrowView, OutlineOfArrowsOfEveryShape) {
    struct Case {
        const char* name;
        double length, tail, headWidth, headLength;
        std::array<Point, 7> points;
    } cases[] = {
        {"ordinary", 98, 8, 20, 20, {{{0, 4}, {78, 4}, {78, 10}, {98, 0}, {78, -10}, {78, -4}, {0, -4}}}},
        {"head as long as the arrow", 20, 8, 20, 20, {{{0, 4}, {0, 4}, {0, 10}, {20, 0}, {0, -10}, {0, -4}, {0, -4}}}},
        {"head longer than the arrow: neck behind the tail", 10, 8, 20, 20,
         {{{0, 4}, {-10, 4}, {-10, 10}, {10, 0}, {-10, -10}, {-10, -4}, {0, -4}}}},
        {"head narrower than the tail: a notch", 50, 30, 10, 5,
         {{{0, 15}, {45, 15}, {45, 5}, {50, 0}, {45, -5}, {45, -15}, {0, -15}}}},
        {"zero length", 0, 8, 20, 20, {{{0, 4}, {-20, 4}, {-20, 10}, {0, 0}, {-20, -10}, {-20, -4}, {0, -4}}}},
    };
    for (const auto& c : cases) {
        std::array<Point, 7> points;
        points.fill({-1, -1});
        VantroArrowView().arrowPoints(points, c.length, c.tail, c.headWidth, c.headLength);
        EXPECT_EQ(points, c.points) << c.name;
    }
}

TEST(VantroArrowView, PathIsOneMoveSevenLinesAndAClose) {
    const BezierPath path = VantroArrowView().arrowFromPoint({3, 4}, {50, 70}, 8, 20, 20);
    std::vector<Element> types;
    for (const auto& e : path.elements()) types.push_back(e.type);
    EXPECT_EQ(types, (std::vector<Element>{Element::MoveTo, Element::LineTo, Element::LineTo, Element::LineTo, Element::LineTo,
                                           Element::LineTo, Element::LineTo, Element::LineTo, Element::ClosePath}));
    // The first line goes nowhere: it returns to where the move went.
    EXPECT_EQ(path.elements()[0].point, path.elements()[1].point);
}

TEST(VantroArrowView, LengthIsMeasuredInSinglePrecision) {
    for (auto [from, to] : {std::pair<Point, Point>{{0, 0}, {1, 1}}, {{10.1, 20.3}, {387.77, 12.9}}, {{0.1, 0.2}, {0.3, 0.7}}}) {
        const double single = std::hypotf(static_cast<float>(to.x - from.x), static_cast<float>(to.y - from.y));
        EXPECT_EQ(VantroArrowView::arrowLength(from, to), single);
    }
    // A double-precision length would make this a unit vector; the single one
    // does not.
    EXPECT_NE(VantroArrowView::arrowTransform({0, 0}, {1, 1}).m11, 1.0 / std::sqrt(2.0));
}

TEST(VantroArrowView, TipLandsOnTheEndPointUpToSinglePrecision) {
    struct Case {
        Point from, to;
    } cases[] = {{{0, 0}, {100, 100}}, {{12.5, 3.25}, {-80.75, 440.5}}, {{500, 500}, {499, 12}}, {{1, 1}, {1e5, 3}}};
    for (const auto& c : cases) {
        const auto points = outline(VantroArrowView().arrowFromPoint(c.from, c.to, 8, 20, 20));
        const double length = std::hypot(c.to.x - c.from.x, c.to.y - c.from.y);
        const double tolerance = length * std::numeric_limits<float>::epsilon();
        EXPECT_NEAR(points[3].x, c.to.x, tolerance);
        EXPECT_NEAR(points[3].y, c.to.y, tolerance);
        // The tail sits across the start point.
        EXPECT_NEAR((points[0].x + points[6].x) / 2, c.from.x, 1e-9);
        EXPECT_NEAR((points[0].y + points[6].y) / 2, c.from.y, 1e-9);
    }
}

TEST(VantroArrowView, ShortViewsDrawNothingUsefulButNeverFail) {
    sim::SimulatedMac mac;
    {
        // Two points high: start and end meet, every point is not a number.
        test::RecordingCanvas canvas;
        VantroArrowView().drawRect({40, 2}, canvas);
        ASSERT_EQ(canvas.sequence(), (std::vector<std::string>{"color", "fill", "color", "stroke"}));
        for (const auto& e : canvas.calls[1].path.elements()) {
            if (e.type == Element::ClosePath) continue;
            EXPECT_TRUE(std::isnan(e.point.x) && std::isnan(e.point.y));
        }
    }
    {
        // Lower than two points: the end is below the start, the arrow points down.
        test::RecordingCanvas canvas;
        VantroArrowView().drawRect({40, 1.5}, canvas);
        const auto points = outline(canvas.calls[1].path);
        EXPECT_DOUBLE_EQ(points[3].x, 20);
        EXPECT_DOUBLE_EQ(points[3].y, 0.5);
        EXPECT_LT(points[3].y, points[0].y);
    }
}

TEST(VantroArrowView, ArrowColourIsOneObjectPerProcess) {
    std::shared_ptr<const Color> first;
    {
        sim::SimulatedMac mac;
        first = vantroArrowColor();
        EXPECT_EQ(vantroArrowColor().get(), first.get());
        EXPECT_EQ(*first, (Color{0.0, 0.6266, 0.0, 1.0}));
    }
    sim::SimulatedMac mac;
    auto second = vantroArrowColor();
    EXPECT_NE(second.get(), first.get()) << "a new process makes its own";
    EXPECT_EQ(*second, *first);
    EXPECT_EQ(vantroArrowColor().get(), second.get());
}

TEST(VantroView, FillsItsBoundsInTheWindowBackgroundColourWithRoundedCorners) {
    const Color platformBackground{0.11, 0.22, 0.33, 0.9};
    test::RecordingCanvas canvas(platformBackground);
    const Rect bounds{{0, 0}, {648, 94}};
    VantroView().drawRect(bounds, canvas);
    ASSERT_EQ(canvas.sequence(), (std::vector<std::string>{"color", "roundedRect"})) << "no stroke";
    EXPECT_EQ(canvas.calls[0].color, platformBackground);
    EXPECT_EQ(canvas.calls[1].rect, bounds);
    EXPECT_EQ(canvas.calls[1].xRadius, 5.0);
    EXPECT_EQ(canvas.calls[1].yRadius, 5.0);
}

}  // namespace
}  // namespace vantro
