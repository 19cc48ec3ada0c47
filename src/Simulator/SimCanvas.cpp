#include "Simulator/SimCanvas.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <string>
#include <vector>

#include "Overlay/VantroArrowView.h"
#include "Overlay/VantroView.h"
#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimDragging.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimText.h"

namespace vantro::sim {

namespace {

constexpr double textInset = 2.0;
constexpr double lineSpacing = 1.25;

void setSource(cairo_t* cairo, const Color& c) { cairo_set_source_rgba(cairo, c.red, c.green, c.blue, c.alpha); }

bool finite(const BezierPath& path) {
    for (const auto& e : path.elements())
        if (e.type != BezierPath::ElementType::ClosePath && !(std::isfinite(e.point.x) && std::isfinite(e.point.y))) return false;
    return true;
}

void roundedRectangle(cairo_t* cairo, const Rect& r, double xRadius, double yRadius) {
    const double rx = std::clamp(xRadius, 0.0, r.size.width / 2);
    const double ry = std::clamp(yRadius, 0.0, r.size.height / 2);
    if (rx <= 0 || ry <= 0) {
        cairo_rectangle(cairo, r.origin.x, r.origin.y, r.size.width, r.size.height);
        return;
    }
    // Elliptical corners: draw unit arcs in a scaled space.
    auto corner = [&](double cx, double cy, double from, double to) {
        cairo_save(cairo);
        cairo_translate(cairo, cx, cy);
        cairo_scale(cairo, rx, ry);
        cairo_arc(cairo, 0, 0, 1, from, to);
        cairo_restore(cairo);
    };
    const double x0 = r.origin.x, y0 = r.origin.y, x1 = r.maxX(), y1 = r.maxY();
    cairo_new_sub_path(cairo);
    corner(x1 - rx, y0 + ry, -M_PI / 2, 0);
    corner(x1 - rx, y1 - ry, 0, M_PI / 2);
    corner(x0 + rx, y1 - ry, M_PI / 2, M_PI);
    corner(x0 + rx, y0 + ry, M_PI, 3 * M_PI / 2);
    cairo_close_path(cairo);
}

// The length in bytes of the UTF-8 sequence that starts with `lead`.
std::size_t sequenceLength(unsigned char lead) {
    if (lead >= 0xF0) return 4;
    if (lead >= 0xE0) return 3;
    if (lead >= 0xC0) return 2;
    return 1;
}

double advance(cairo_t* cairo, const std::string& text) { return textAdvance(cairo, text); }

// Splits one paragraph into lines no wider than `width`; a word wider than
// a line is broken between characters.
void wrapParagraph(cairo_t* cairo, const std::string& paragraph, double width, std::vector<std::string>& lines) {
    std::string line;
    std::size_t i = 0;
    bool any = false;
    while (i <= paragraph.size()) {
        std::size_t space = paragraph.find(' ', i);
        if (space == std::string::npos) space = paragraph.size();
        std::string word = paragraph.substr(i, space - i);
        i = space + 1;
        if (word.empty()) continue;
        any = true;
        std::string candidate = line.empty() ? word : line + " " + word;
        if (advance(cairo, candidate) <= width) {
            line = candidate;
            continue;
        }
        if (!line.empty()) lines.push_back(line);
        line.clear();
        // The word alone: break it where it overflows.
        std::string piece;
        for (std::size_t k = 0; k < word.size();) {
            const std::size_t n = std::min(sequenceLength(static_cast<unsigned char>(word[k])), word.size() - k);
            std::string next = piece + word.substr(k, n);
            if (!piece.empty() && advance(cairo, next) > width) {
                lines.push_back(piece);
                piece = word.substr(k, n);
            } else {
                piece = next;
            }
            k += n;
        }
        line = piece;
    }
    if (!line.empty() || !any) lines.push_back(line);
}

}  // namespace

SimCanvas::SimCanvas(cairo_t* cairo, Point topLeftInPicture, Size viewSize, Color windowBackground)
    : cairo_(cairo), topLeft_(topLeftInPicture), size_(viewSize), windowBackground_(windowBackground) {}

bool SimCanvas::begin(const BezierPath& path) {
    if (!finite(path)) return false;
    cairo_save(cairo_);
    // The view's origin is its bottom-left corner.
    cairo_translate(cairo_, topLeft_.x, topLeft_.y + size_.height);
    cairo_scale(cairo_, 1, -1);
    cairo_new_path(cairo_);
    for (const auto& e : path.elements()) {
        switch (e.type) {
            case BezierPath::ElementType::MoveTo: cairo_move_to(cairo_, e.point.x, e.point.y); break;
            case BezierPath::ElementType::LineTo: cairo_line_to(cairo_, e.point.x, e.point.y); break;
            case BezierPath::ElementType::ClosePath: cairo_close_path(cairo_); break;
        }
    }
    setSource(cairo_, color_);
    return true;
}

void SimCanvas::finish() {
    cairo_new_path(cairo_);
    cairo_restore(cairo_);
}

void SimCanvas::fillPath(const BezierPath& path) {
    if (!begin(path)) return;
    // NSBezierPath fills with the non-zero winding rule by default.
    cairo_set_fill_rule(cairo_, CAIRO_FILL_RULE_WINDING);
    cairo_fill(cairo_);
    finish();
}

void SimCanvas::strokePath(const BezierPath& path) {
    if (!begin(path)) return;
    cairo_set_line_width(cairo_, 1.0);
    cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_MITER);
    cairo_set_miter_limit(cairo_, 10.0);
    cairo_stroke(cairo_);
    finish();
}

void SimCanvas::fillRoundedRect(const Rect& rect, double xRadius, double yRadius) {
    cairo_save(cairo_);
    cairo_translate(cairo_, topLeft_.x, topLeft_.y + size_.height);
    cairo_scale(cairo_, 1, -1);
    cairo_new_path(cairo_);
    roundedRectangle(cairo_, rect, xRadius, yRadius);
    setSource(cairo_, color_);
    cairo_fill(cairo_);
    cairo_restore(cairo_);
}

int drawWrappedText(cairo_t* cairo, const Rect& rect, std::string_view text, double fontSize, bool bold, const Color& color) {
    cairo_save(cairo);
    selectFont(cairo, text, fontSize, bold);
    const double width = rect.size.width - 2 * textInset;
    std::vector<std::string> lines;
    std::string all(text);
    for (std::size_t start = 0; start <= all.size();) {
        std::size_t end = all.find('\n', start);
        if (end == std::string::npos) end = all.size();
        wrapParagraph(cairo, all.substr(start, end - start), width, lines);
        start = end + 1;
    }
    cairo_font_extents_t font;
    cairo_font_extents(cairo, &font);
    const double lineHeight = fontSize * lineSpacing;
    setSource(cairo, color);
    int drawn = 0;
    double baseline = rect.origin.y + textInset + font.ascent;
    for (const auto& line : lines) {
        if (baseline + font.descent > rect.maxY() + 0.5) break;
        showText(cairo, {rect.origin.x + textInset, baseline}, line, fontSize, bold);
        baseline += lineHeight;
        ++drawn;
    }
    cairo_restore(cairo);
    return drawn;
}

void drawApplicationIcon(cairo_t* cairo, const Rect& rect, std::string_view imageName) {
    // Scaled down to fit, never up, and centred: a square of the smaller side.
    const double side = std::min(rect.size.width, rect.size.height);
    if (side <= 0) return;
    const double inset = side * 0.06;
    const Rect square{{rect.origin.x + (rect.size.width - side) / 2 + inset, rect.origin.y + (rect.size.height - side) / 2 + inset},
                      {side - 2 * inset, side - 2 * inset}};
    std::string name(imageName.substr(imageName.find(':') == std::string_view::npos ? 0 : imageName.find(':') + 1));
    std::string initial = name.empty() ? std::string("?") : name.substr(0, sequenceLength(static_cast<unsigned char>(name[0])));
    if (initial.size() == 1) initial[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(initial[0])));

    cairo_save(cairo);
    const double radius = square.size.width * 0.225;
    // A soft shadow under the tile.
    roundedRectangle(cairo, {{square.origin.x, square.origin.y + side * 0.02}, square.size}, radius, radius);
    cairo_set_source_rgba(cairo, 0, 0, 0, 0.18);
    cairo_fill(cairo);
    roundedRectangle(cairo, square, radius, radius);
    cairo_pattern_t* gradient = cairo_pattern_create_linear(0, square.origin.y, 0, square.maxY());
    cairo_pattern_add_color_stop_rgb(gradient, 0, 0.36, 0.67, 1.0);
    cairo_pattern_add_color_stop_rgb(gradient, 1, 0.10, 0.34, 0.86);
    cairo_set_source(cairo, gradient);
    cairo_fill_preserve(cairo);
    cairo_pattern_destroy(gradient);
    cairo_set_source_rgba(cairo, 1, 1, 1, 0.35);
    cairo_set_line_width(cairo, std::max(1.0, side / 64));
    cairo_stroke(cairo);

    selectFont(cairo, initial, square.size.height * 0.6, true);
    cairo_text_extents_t extents;
    cairo_text_extents(cairo, initial.c_str(), &extents);
    const double cx = square.origin.x + square.size.width / 2, cy = square.origin.y + square.size.height / 2;
    cairo_set_source_rgb(cairo, 1, 1, 1);
    showText(cairo, {cx - extents.width / 2 - extents.x_bearing, cy - extents.height / 2 - extents.y_bearing}, initial,
             square.size.height * 0.6, true);
    cairo_restore(cairo);
}

void renderOverlay(cairo_t* cairo, const SimOverlayWindow& window, const VantroWindowController& controller, Point topLeft) {
    if (!window.isVisible()) return;
    const Rect frame = window.frame();
    Color background = window.backgroundColor();
    // An opaque window covers its whole frame: the window server ignores the
    // background's transparency, and a clear background shows black.
    if (window.isOpaque()) background.alpha = 1;
    if (background.alpha > 0) {
        cairo_save(cairo);
        setSource(cairo, background);
        cairo_rectangle(cairo, topLeft.x, topLeft.y, frame.size.width, frame.size.height);
        cairo_fill(cairo);
        cairo_restore(cairo);
    }
    for (const OverlayView& view : window.views()) {
        // The view's top-left corner in the picture.
        const Point corner{topLeft.x + view.frame.origin.x, topLeft.y + frame.size.height - view.frame.maxY()};
        const Rect inPicture{corner, view.frame.size};
        SimCanvas canvas(cairo, corner, view.frame.size);
        if (view.className == "VantroView") {
            VantroView().drawRect({{0, 0}, view.frame.size}, canvas);
        } else if (view.className == "VantroArrowView") {
            VantroArrowView().drawRect(view.frame.size, canvas);
        } else if (window.textFieldWithId(view.id)) {
            drawWrappedText(cairo, inPicture, window.textShownBy(view, controller), view.fontSize, view.boldFont,
                            {0, 0, 0, 0.85});
        } else if (auto icon = window.iconViewWithId(view.id)) {
            drawIconView(cairo, inPicture, *icon);
        }
    }
}

void drawIconView(cairo_t* cairo, const Rect& rect, const ZVMainBundleIconImageView& view) {
    if (view.image().empty()) return;
    // An application's icon image is 128 points square at its natural size.
    constexpr double natural = 128;
    double width = natural, height = natural;
    switch (view.imageScaling()) {
    case NSImageScaleProportionallyDown: width = height = std::min({natural, rect.size.width, rect.size.height}); break;
    case 1: width = rect.size.width, height = rect.size.height; break;  // axes independently
    case 3: width = height = std::min(rect.size.width, rect.size.height); break;  // proportionally up or down
    default: break;  // none: the natural size
    }
    cairo_save(cairo);
    cairo_translate(cairo, rect.origin.x + (rect.size.width - width) / 2, rect.origin.y + (rect.size.height - height) / 2);
    cairo_scale(cairo, width / natural, height / natural);
    drawApplicationIcon(cairo, {{0, 0}, {natural, natural}}, view.image());
    cairo_restore(cairo);
}

void renderDraggedImage(cairo_t* cairo, const SimDragging& dragging, double screenHeight) {
    const auto& session = dragging.session();
    if (!session || session->items().empty()) return;
    const Rect onScreen = session->imageFrameOnScreen();
    const Rect inPicture{{onScreen.origin.x, screenHeight - onScreen.maxY()}, onScreen.size};
    cairo_push_group(cairo);
    drawApplicationIcon(cairo, inPicture, session->items().front().contents);
    cairo_pop_group_to_source(cairo);
    cairo_paint_with_alpha(cairo, 0.6);
}

}  // namespace vantro::sim
