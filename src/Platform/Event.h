#pragma once

#include <cstdint>

#include "Platform/Geometry.h"

namespace vantro {

// NSEventType values the framework looks at.
inline constexpr long NSEventTypeLeftMouseDown = 1;
inline constexpr long NSEventTypeLeftMouseUp = 2;
inline constexpr long NSEventTypeRightMouseDown = 3;
inline constexpr long NSEventTypeLeftMouseDragged = 6;

inline constexpr std::uint64_t NSEventMaskLeftMouseDown = 1ull << 1;
inline constexpr std::uint64_t NSEventMaskLeftMouseUp = 1ull << 2;
inline constexpr std::uint64_t NSEventMaskLeftMouseDragged = 1ull << 6;

// A mouse event (NSEvent), as far as the framework reads it.
struct Event {
    long type = NSEventTypeLeftMouseDown;
    long clickCount = 1;
    Point locationInWindow;
};

}  // namespace vantro
