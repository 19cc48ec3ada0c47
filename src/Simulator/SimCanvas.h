#pragma once

#include <cairo.h>

#include <string_view>

#include "Platform/Drawing.h"
#include "Platform/Geometry.h"

namespace vantro {
class VantroWindowController;
class ZVMainBundleIconImageView;
}

namespace vantro::sim {

class SimDragging;
class SimOverlayWindow;

// The windowBackgroundColor of the simulated Mac's light appearance.
inline constexpr Color simWindowBackgroundColor{0.925, 0.925, 0.925, 1.0};

// A canvas on a cairo surface for one view. The view draws in its own
// coordinates, origin bottom left and y upwards; the canvas maps them into
// the picture, where the view's top-left corner is at `topLeftInPicture` and
// y runs downwards. The caller's cairo state is left as it was. Paths with a
// point that is not a number draw nothing, as on the real Mac.
class SimCanvas : public Canvas {
public:
    SimCanvas(cairo_t* cairo, Point topLeftInPicture, Size viewSize, Color windowBackground = simWindowBackgroundColor);

    void setColor(const Color& color) override { color_ = color; }
    void fillPath(const BezierPath& path) override;
    void strokePath(const BezierPath& path) override;
    void fillRoundedRect(const Rect& rect, double xRadius, double yRadius) override;
    Color windowBackgroundColor() const override { return windowBackground_; }

private:
    // Sets up the view's coordinates and the current colour; false when the
    // path cannot be drawn.
    bool begin(const BezierPath& path);
    void finish();

    cairo_t* cairo_;
    Point topLeft_;
    Size size_;
    Color windowBackground_;
    Color color_;
};

// Draws the overlay window as the user sees it, when it is visible: its
// background colour (clear, as the guide sets it; at full strength when the
// window is opaque), then its views in order — the rounded background
// (VantroView), the text fields showing what their bindings give (the
// controller's message), the arrow (VantroArrowView) and the host's icon
// (ZVMainBundleIconImageView). Views of other classes draw nothing. The
// window's top-left corner goes to `topLeftInPicture`.
void renderOverlay(cairo_t* cairo, const SimOverlayWindow& window, const VantroWindowController& controller, Point topLeftInPicture);

// Draws the image of a running drag, half transparent, where the pointer has
// carried it; nothing without a drag. The picture shows the screen 1:1 with
// y downwards: a screen point (x, y) lies at (x, screenHeight − y).
void renderDraggedImage(cairo_t* cairo, const SimDragging& dragging, double screenHeight);

// Draws an application icon: a rounded square with the application's
// initial, fitted into `rect` of the picture (y downwards) and centred, as an
// image view that scales down proportionally shows it. `imageName` is what
// applicationIconImageName gives.
void drawApplicationIcon(cairo_t* cairo, const Rect& rectInPicture, std::string_view imageName);

// Draws an icon view's image into `rect` of the picture (y downwards) as its
// image scaling says, centred: proportionally down fits it without enlarging
// it past its natural size, axes independently fills the rectangle, none
// keeps the natural size, proportionally up or down fits it.
void drawIconView(cairo_t* cairo, const Rect& rectInPicture, const ZVMainBundleIconImageView& view);

// Writes `text` in the picture's rectangle `rect` (y downwards), wrapped at
// word boundaries to the rectangle's width, from its top; lines that do not
// fit are left out. Answers how many lines were drawn.
int drawWrappedText(cairo_t* cairo, const Rect& rectInPicture, std::string_view text, double fontSize, bool bold,
                    const Color& color);

}  // namespace vantro::sim
