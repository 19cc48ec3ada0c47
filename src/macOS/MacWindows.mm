// Windows on the real Mac.
//
// Implements: the window list (CGWindowListCreate with the caller's options
// and no reference window, then CGWindowListCreateDescriptionFromArray, both
// released here as the platform requires), each description a dictionary
// with kCGWindowBounds as X, Y, Width and Height; the main screen's frame;
// global event monitors (addGlobalMonitorForEventsMatchingMask:handler: and
// removeMonitor:), each event handed on with its type, click count (0 for
// an event that is not a mouse event) and location. Main thread.
// Known gaps: the overlay's layout is not loaded yet (loadWindowNib gives an
// empty layout, so a guide session opens the pane and follows the user
// without laying an overlay).

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

// clickCount raises for anything but a mouse event: NSEventType 1 to 7 (the
// left and right buttons, moves and drags) and 25 to 27 (other buttons).
bool hasClickCount(long type) { return (type >= 1 && type <= 7) || (type >= 25 && type <= 27); }

class MacEventMonitor final : public EventMonitor {
public:
    explicit MacEventMonitor(id token) : token_(token) {}
    id token() const { return token_; }

private:
    id token_;
};

class MacWindows final : public Windows {
public:
    std::optional<std::vector<Value>> windowListDescriptions(std::uint32_t options) override {
        CFArrayRef windows = CGWindowListCreate(static_cast<CGWindowListOption>(options), kCGNullWindowID);
        if (!windows) return std::nullopt;
        CFArrayRef descriptions = CGWindowListCreateDescriptionFromArray(windows);
        CFRelease(windows);
        if (!descriptions) return std::nullopt;
        NSArray* list = CFBridgingRelease(descriptions);
        std::vector<Value> result;
        result.reserve(list.count);
        for (id description in list) result.push_back(toValue(description));
        return result;
    }

    Rect mainScreenFrame() override {
        NSRect frame = NSScreen.mainScreen.frame;
        return Rect{{frame.origin.x, frame.origin.y}, {frame.size.width, frame.size.height}};
    }

    OverlayLayout loadWindowNib(std::string_view nibName, VantroWindowController& owner) override {
        (void)nibName;
        (void)owner;
        return {};
    }

    std::shared_ptr<EventMonitor> addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                         std::function<void(const Event&)> handler) override {
        id token = [NSEvent addGlobalMonitorForEventsMatchingMask:static_cast<NSEventMask>(mask)
                                                          handler:^(NSEvent* event) {
                                                            Event seen;
                                                            seen.type = static_cast<long>(event.type);
                                                            seen.clickCount = hasClickCount(seen.type) ? event.clickCount : 0;
                                                            seen.locationInWindow = {event.locationInWindow.x,
                                                                                     event.locationInWindow.y};
                                                            handler(seen);
                                                          }];
        if (!token) return nullptr;
        return std::make_shared<MacEventMonitor>(token);
    }

    void removeMonitor(const std::shared_ptr<EventMonitor>& monitor) override {
        auto* macMonitor = dynamic_cast<MacEventMonitor*>(monitor.get());
        if (macMonitor) [NSEvent removeMonitor:macMonitor->token()];
    }
};

}  // namespace

std::unique_ptr<Windows> makeWindows() { return std::make_unique<MacWindows>(); }

}  // namespace vantro::mac
