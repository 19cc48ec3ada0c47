#pragma once

#include "Platform/Drawing.h"
#include "Platform/Geometry.h"

namespace vantro {

// The overlay's rounded background: the system's window background colour
// in a rectangle with corners of radius 5. No state. Main thread.
class VantroView {
public:
    // Fills the whole of `bounds`, whatever part needs redrawing; no stroke.
    void drawRect(const Rect& bounds, Canvas& canvas) const;

    static constexpr double cornerRadius = 5.0;
};

}  // namespace vantro
