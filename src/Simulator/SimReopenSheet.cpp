#include "Simulator/SimReopenSheet.h"

#include "Simulator/SimCanvas.h"
#include "Simulator/SimScreenTexts.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

bool drawReopenSheet(SimulatedMac& mac, cairo_t* cr, const Rect& bounds) {
    const auto& settings = mac.systemPreferences();
    const std::string language = screenLanguage(mac);
    if (settings.reopenSheetFrame() != bounds) return false;
    cairo_save(cr);
    cairo_set_source_rgba(cr, 0.97, 0.97, 0.97, 1);
    cairo_rectangle(cr, bounds.origin.x, bounds.origin.y, bounds.size.width, bounds.size.height);
    cairo_fill(cr);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.25);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, bounds.origin.x + 0.5, bounds.origin.y + 0.5, bounds.size.width - 1, bounds.size.height - 1);
    cairo_stroke(cr);
    drawWrappedText(cr, {{bounds.origin.x + 16, bounds.origin.y + 16}, {bounds.size.width - 32, 90}}, settings.reopenSheetText(language),
                    13, true, {0.1, 0.1, 0.1, 1});
    // The buttons stacked across the sheet's width, as a narrow alert of
    // System Settings has them: "Quit & Reopen", the default, above "Later".
    const Rect reopen{{bounds.origin.x + 16, bounds.maxY() - 72}, {bounds.size.width - 32, 26}};
    const Rect later{{bounds.origin.x + 16, bounds.maxY() - 38}, {bounds.size.width - 32, 26}};
    cairo_set_source_rgba(cr, 0.0, 0.48, 1.0, 1);
    cairo_rectangle(cr, reopen.origin.x, reopen.origin.y, reopen.size.width, reopen.size.height);
    cairo_fill(cr);
    cairo_set_source_rgba(cr, 0.88, 0.88, 0.88, 1);
    cairo_rectangle(cr, later.origin.x, later.origin.y, later.size.width, later.size.height);
    cairo_fill(cr);
    drawWrappedText(cr, reopen, screenText("Quit & Reopen", language), 12, false, {1, 1, 1, 1});
    drawWrappedText(cr, later, screenText("Later", language), 12, false, {0.1, 0.1, 0.1, 1});
    cairo_restore(cr);
    return true;
}

}  // namespace vantro::sim
