#pragma once

#include <vector>

#include "Platform/Geometry.h"

namespace vantro {

// A colour in calibrated RGB, components from 0 to 1.
struct Color {
    double red = 0, green = 0, blue = 0, alpha = 1;
    bool operator==(const Color&) const = default;
    static Color clearColor() { return {0, 0, 0, 0}; }
    static Color whiteColor() { return {1, 1, 1, 1}; }
};

// The six coefficients of an affine transform, as NSAffineTransformStruct:
// (x, y) maps to (m11·x + m21·y + tX, m12·x + m22·y + tY).
struct AffineTransformStruct {
    double m11 = 1, m12 = 0, m21 = 0, m22 = 1, tX = 0, tY = 0;
    Point transformPoint(Point p) const { return {m11 * p.x + m21 * p.y + tX, m12 * p.x + m22 * p.y + tY}; }
};

// A path of straight segments (NSBezierPath as the overlay uses it).
class BezierPath {
public:
    enum class ElementType { MoveTo, LineTo, ClosePath };
    struct Element {
        ElementType type;
        Point point;  // unused for ClosePath
    };

    void moveToPoint(Point p) { elements_.push_back({ElementType::MoveTo, p}); }
    void lineToPoint(Point p) { elements_.push_back({ElementType::LineTo, p}); }
    void closePath() { elements_.push_back({ElementType::ClosePath, {}}); }
    void transformUsingAffineTransform(const AffineTransformStruct& t) {
        for (auto& e : elements_)
            if (e.type != ElementType::ClosePath) e.point = t.transformPoint(e.point);
    }
    const std::vector<Element>& elements() const { return elements_; }

private:
    std::vector<Element> elements_;
};

// Where a view draws: fills and strokes in the current colour, in the view's
// own coordinates (origin at the bottom left, y growing upwards). Main thread.
class Canvas {
public:
    Canvas() = default;
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    virtual ~Canvas() = default;

    // NSColor set.
    virtual void setColor(const Color& color) = 0;
    // NSBezierPath fill / stroke (line width 1 unless set otherwise).
    virtual void fillPath(const BezierPath& path) = 0;
    virtual void strokePath(const BezierPath& path) = 0;
    // bezierPathWithRoundedRect:xRadius:yRadius: filled.
    virtual void fillRoundedRect(const Rect& rect, double xRadius, double yRadius) = 0;
    // NSColor windowBackgroundColor of the running system.
    virtual Color windowBackgroundColor() const = 0;
};

}  // namespace vantro
