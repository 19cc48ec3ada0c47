#pragma once

#include <climits>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Windows.h"

namespace vantro::sim {

class SimulatedMac;

// The levels of the desktop's own windows (CGWindowLevel.h):
// kCGDesktopWindowLevel is kCGMinimumWindowLevel (the lowest level plus five
// reserved ones) plus 20, and the desktop icons sit 20 above it. Window lists
// of running systems report the desktop picture one lower on some releases
// (reported, not modelled).
inline constexpr int kCGDesktopWindowLevel = INT_MIN + 5 + 20;
inline constexpr int kCGDesktopIconWindowLevel = kCGDesktopWindowLevel + 20;

// Event types besides the left-mouse ones the framework watches, so tests can
// make the user do other things (NSEventType).
inline constexpr long NSEventTypeRightMouseUp = 4;
inline constexpr long NSEventTypeMouseMoved = 5;
inline constexpr long NSEventTypeKeyDown = 10;
inline constexpr long NSEventTypeScrollWheel = 22;

// One window as the window server keeps it.
struct SimWindow {
    int number = 0;
    int layer = 0;
    // Window-list coordinates: origin top left of the main display, y down.
    Rect bounds;
    int ownerPID = 0;
    std::string ownerName;
    std::optional<std::string> title;
    bool onScreen = true;
    // The host's own windows, whose titles it may always read.
    bool ownedByHost = false;
    // The desktop picture and the desktop icons.
    bool isDesktopElement() const { return layer <= kCGDesktopIconWindowLevel; }
};

// The window server of the simulated Mac: one main screen, and the windows of
// the running applications front to back — the overlay above all at its
// level, then the ordinary windows in the order the user and activations
// left them, then the desktop icons (Finder's) and the desktop picture (the
// Dock's). Hidden applications' windows and minimised windows are off screen.
// It answers window lists as CGWindowListCreate does for the options given,
// runs the global mouse monitors of the host, which see the user's events in
// other applications only, and animates window frames as AppKit does.
class SimWindows : public Windows {
public:
    explicit SimWindows(SimulatedMac& mac) : mac_(mac) {}

    // The host's one window, in window-list coordinates (origin top left).
    static constexpr Rect hostWindowFrame{{120, 140}, {520, 420}};
    static constexpr int hostWindowNumber = 200;
    static constexpr int preferencesWindowNumber = 310;
    static constexpr int desktopIconsWindowNumber = 60;
    static constexpr int desktopPictureWindowNumber = 50;
    // The Dock, which owns the desktop picture; not an application the
    // workspace lists.
    static constexpr int dockPID = 95;

    // kCGWindowListOptionOnScreenOnly leaves out off-screen windows (hidden
    // applications', minimised and ordered-out ones), which otherwise follow
    // the on-screen ones; kCGWindowListExcludeDesktopElements leaves out the
    // desktop picture and icons. Each on-screen window carries
    // kCGWindowIsOnscreen.
    std::optional<std::vector<Value>> windowListDescriptions(std::uint32_t options) override;
    Rect mainScreenFrame() override { return screen_; }
    OverlayLayout loadWindowNib(std::string_view nibName, VantroWindowController& owner) override;
    // Only events whose type is in `mask` reach the handler.
    std::shared_ptr<EventMonitor> addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                         std::function<void(const Event&)> handler) override;
    void removeMonitor(const std::shared_ptr<EventMonitor>& monitor) override;

    // Every window, front to back: the on-screen ones, then (when asked) the
    // off-screen ones.
    std::vector<SimWindow> windows(bool includeOffScreen = false) const;
    std::optional<SimWindow> window(int number) const;

    // An activation brings the application's windows forward: all of them,
    // keeping their order, or only its frontmost one.
    void bringForward(int pid, bool allWindows);
    void bringWindowForward(int number);

    // A mouse event the user makes in the application with `ownerPID`;
    // monitors see it when that application is not the host and the event's
    // type is in their mask.
    void deliverMouseEvent(const Event& event, int ownerPID);
    // The user clicks into a window: the window comes forward, its
    // application becomes active (with that one window only), and the
    // mouse-down and mouse-up go to it. False when no such window is on screen.
    bool userClicksWindow(int number);
    // The user clicks the desktop: Finder becomes active.
    void userClicksDesktop();

    // setFrame:display:animate: with animation, as AppKit runs it: the frame
    // changes step by step, on the virtual clock, over animationResizeTime —
    // 0.2 s for every 150 points of the largest change of an edge — and the
    // call returns when the final frame is reached; the host's main thread
    // does nothing else meanwhile. Without a visible window, or with nothing
    // to change, the frame is set at once.
    void animateFrame(OverlayWindow& window, const Rect& target, bool display);
    static double animationResizeTime(const Rect& from, const Rect& to);

    void setMainScreenFrame(const Rect& frame) { screen_ = frame; }
    // Makes the window list unavailable, as when the window server fails.
    void setWindowListUnavailable(bool unavailable) { unavailable_ = unavailable; }
    // Whether the host may read other applications' window titles (Screen
    // Recording); without it titles are missing from 10.15 on.
    void setScreenRecordingAllowed(bool allowed) { screenRecording_ = allowed; }
    bool titlesVisible() const;
    // Makes the monitor installation fail, as when the system refuses it.
    void setRefusesMonitors(bool refuses) { refusesMonitors_ = refuses; }
    // Replaces descriptions just before they are handed out (tests of odd windows).
    void setDescriptionFilter(std::function<void(std::vector<Value>&)> filter) { filter_ = std::move(filter); }
    std::size_t monitorCount() const { return monitors_.size(); }
    // How often the framework asked to remove a monitor, installed or not.
    int monitorRemovalRequests() const { return removalRequests_; }
    int windowListRequests() const { return requests_; }

private:
    struct Monitor : EventMonitor {
        std::uint64_t mask;
        std::function<void(const Event&)> handler;
    };
    Value describe(const SimWindow& window) const;
    // Where a window stands among the ordinary windows: raised later, further front.
    std::uint64_t raisedAt(int number) const;

    SimulatedMac& mac_;
    Rect screen_{{0, 0}, {1440, 900}};
    bool unavailable_ = false;
    bool screenRecording_ = false;
    bool refusesMonitors_ = false;
    std::function<void(std::vector<Value>&)> filter_;
    std::vector<std::shared_ptr<Monitor>> monitors_;
    // The overlay windows the host's layouts made; listed while visible.
    std::vector<std::weak_ptr<OverlayWindow>> overlays_;
    std::map<int, std::uint64_t> raised_;
    std::uint64_t nextRaise_ = 1;
    int requests_ = 0;
    int removalRequests_ = 0;
};

}  // namespace vantro::sim
