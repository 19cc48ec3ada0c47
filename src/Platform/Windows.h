#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/Event.h"
#include "Platform/Geometry.h"
#include "Platform/OverlayWindow.h"
#include "Platform/Value.h"

namespace vantro {

class VantroWindowController;

inline constexpr std::uint32_t kCGWindowListOptionOnScreenOnly = 1u << 0;
inline constexpr std::uint32_t kCGWindowListExcludeDesktopElements = 1u << 4;

// A global event monitor's token (addGlobalMonitorForEventsMatchingMask:).
class EventMonitor {
public:
    virtual ~EventMonitor() = default;
};

// Windows, screens, layouts and global event monitors. Main thread.
class Windows {
public:
    Windows() = default;
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
    virtual ~Windows() = default;

    // CGWindowListCreate with `options` and no reference window, then
    // CGWindowListCreateDescriptionFromArray: one dictionary per window, front
    // to back, with kCGWindowNumber, kCGWindowLayer, kCGWindowBounds (X, Y,
    // Width, Height; origin top left of the main display, y downwards),
    // kCGWindowOwnerPID, kCGWindowAlpha, and where available kCGWindowName and
    // kCGWindowOwnerName. nullopt when the list cannot be made.
    virtual std::optional<std::vector<Value>> windowListDescriptions(std::uint32_t options) = 0;
    // NSScreen mainScreen's frame (origin bottom left).
    virtual Rect mainScreenFrame() = 0;
    // Loads the layout `nibName` with `owner` as its owner. A layout that does
    // not load gives an empty OverlayLayout.
    virtual OverlayLayout loadWindowNib(std::string_view nibName, VantroWindowController& owner) = 0;
    // NSEvent addGlobalMonitorForEventsMatchingMask:handler:. The handler runs
    // on the main thread for each matching event sent to another application.
    // nullptr when the system refuses the monitor.
    virtual std::shared_ptr<EventMonitor> addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                                 std::function<void(const Event&)> handler) = 0;
    // NSEvent removeMonitor:, once per token: a token already removed is not
    // handed to the system again (what a second removal does is not said).
    // The platform hands out one token object per installed monitor.
    virtual void removeMonitor(const std::shared_ptr<EventMonitor>& monitor) = 0;
};

}  // namespace vantro
