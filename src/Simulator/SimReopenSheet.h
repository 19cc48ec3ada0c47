#pragma once

#include <cairo.h>

#include "Platform/Geometry.h"

namespace vantro::sim {

class SimulatedMac;

// Draws System Settings' "Quit & Reopen" sheet when the window at `bounds`
// (window-list coordinates, which are the picture's) is that sheet: its text
// and the buttons "Later" and "Quit & Reopen". Answers whether it drew.
bool drawReopenSheet(SimulatedMac& mac, cairo_t* cr, const Rect& bounds);

}  // namespace vantro::sim
