#pragma once

#include <string>
#include <vector>

#include "Platform/Drawing.h"

namespace vantro::test {

// A canvas that writes down what a view asks of it, in order.
class RecordingCanvas : public Canvas {
public:
    struct Call {
        std::string what;  // "color", "fill", "stroke", "roundedRect"
        Color color;
        BezierPath path;
        Rect rect;
        double xRadius = 0, yRadius = 0;
    };

    explicit RecordingCanvas(Color windowBackground = {0.2, 0.3, 0.4, 0.5}) : background_(windowBackground) {}

    void setColor(const Color& color) override { calls.push_back({"color", color, {}, {}}); }
    void fillPath(const BezierPath& path) override { calls.push_back({"fill", {}, path, {}}); }
    void strokePath(const BezierPath& path) override { calls.push_back({"stroke", {}, path, {}}); }
    void fillRoundedRect(const Rect& rect, double xRadius, double yRadius) override {
        calls.push_back({"roundedRect", {}, {}, rect, xRadius, yRadius});
    }
    Color windowBackgroundColor() const override { return background_; }

    std::vector<std::string> sequence() const {
        std::vector<std::string> out;
        for (const auto& c : calls) out.push_back(c.what);
        return out;
    }

    std::vector<Call> calls;

private:
    Color background_;
};

}  // namespace vantro::test
