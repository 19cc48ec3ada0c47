#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Windows.h"

namespace vantro::sim {

class SimulatedMac;

// The window server of the simulated Mac: one main screen, the windows of the
// running applications front to back (the front application's first, the
// overlay above all at its level), descriptions with the real keys, and the
// global mouse monitors of the host, which see the user's events in other
// applications only.
class SimWindows : public Windows {
public:
    explicit SimWindows(SimulatedMac& mac) : mac_(mac) {}

    // The host's one window, in window-list coordinates (origin top left).
    static constexpr Rect hostWindowFrame{{120, 140}, {520, 420}};

    std::optional<std::vector<Value>> windowListDescriptions(std::uint32_t options) override;
    Rect mainScreenFrame() override { return screen_; }
    OverlayLayout loadWindowNib(std::string_view nibName, VantroWindowController& owner) override;
    std::shared_ptr<EventMonitor> addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                         std::function<void(const Event&)> handler) override;
    void removeMonitor(const std::shared_ptr<EventMonitor>& monitor) override;

    // A mouse event the user makes in the application with `ownerPID`;
    // monitors see it when that application is not the host.
    void deliverMouseEvent(const Event& event, int ownerPID);

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
    int windowListRequests() const { return requests_; }

private:
    struct Monitor : EventMonitor {
        std::uint64_t mask;
        std::function<void(const Event&)> handler;
    };
    Value describe(int number, int layer, const Rect& bounds, int pid, const std::string& owner,
                   const std::optional<std::string>& title, bool ownWindow) const;

    SimulatedMac& mac_;
    Rect screen_{{0, 0}, {1440, 900}};
    bool unavailable_ = false;
    bool screenRecording_ = false;
    bool refusesMonitors_ = false;
    std::function<void(std::vector<Value>&)> filter_;
    std::vector<std::shared_ptr<Monitor>> monitors_;
    // The overlay windows the host's layouts made; listed while visible.
    std::vector<std::weak_ptr<OverlayWindow>> overlays_;
    int requests_ = 0;
};

}  // namespace vantro::sim
