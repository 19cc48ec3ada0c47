#include "Simulator/SimReopenSheet.h"

#include "Simulator/SimCanvas.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

bool drawReopenSheet(SimulatedMac& mac, cairo_t* cr, const Rect& bounds) {
    const auto& settings = mac.systemPreferences();
    if (settings.reopenSheetFrame() != bounds) return false;
    cairo_save(cr);
    cairo_set_source_rgba(cr, 0.97, 0.97, 0.97, 1);
    cairo_rectangle(cr, bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height);
    cairo_fill(cr);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.25);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, bounds.origin.x + 0.5, bounds.origin.y + 0.5, bounds.size.width - 1, bounds.size.height - 1);
    cairo_stroke(cr);
    drawWrappedText(cr, {{bounds.origin.x + 16, bounds.origin.y + 16}, {bounds.size.width - 32, 90}}, settings.reopenSheetText(),
                    13, true, {0.1, 0.1, 0.1, 1});
    // "Later" on the left, "Quit & Reopen" the default button on the right.
    const double y = bounds.maxY() - 40;
    const Rect later{{bounds.origin.x + 16, y}, {100, 26}};
    const Rect reopen{{bounds.maxX() - 126, y}, {110, 26}};
    cairo_set_source_rgba(cr, 1, 1, 1, 1);
    cairo_rectangle(cr, later.origin.x, later.origin.y, later.size.width, later.size.height);
    cairo_fill(cr);
    cairo_set_source_rgba(cr, 0.0, 0.48, 1.0, 1);
    cairo_rectangle(cr, reopen.origin.x, reopen.origin.y, reopen.size.width, reopen.size.height);
    cairo_fill(cr);
    drawWrappedText(cr, later, "Later", 12, false, {0.1, 0.1, 0.1, 1});
    drawWrappedText(cr, reopen, "Quit & Reopen", 12, false, {1, 1, 1, 1});
    cairo_restore(cr);
    return true;
}

}  // namespace vantro::sim
