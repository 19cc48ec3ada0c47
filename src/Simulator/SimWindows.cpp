#include "Simulator/SimWindows.h"

#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

bool SimWindows::titlesVisible() const {
    const auto& v = mac_.release().systemVersion;
    return screenRecording_ || (v.majorVersion == 10 && v.minorVersion < 15);
}

Value SimWindows::describe(int number, int layer, const Rect& bounds, int pid, const std::string& owner,
                           const std::optional<std::string>& title, bool ownWindow) const {
    Value::Dictionary d{
        {"kCGWindowNumber", Value(number)},
        {"kCGWindowLayer", Value(layer)},
        {"kCGWindowBounds", Value(Value::Dictionary{{"X", Value(bounds.origin.x)},
                                                    {"Y", Value(bounds.origin.y)},
                                                    {"Width", Value(bounds.size.width)},
                                                    {"Height", Value(bounds.size.height)}})},
        {"kCGWindowOwnerPID", Value(pid)},
        {"kCGWindowAlpha", Value(1.0)},
        {"kCGWindowOwnerName", Value(owner)},
    };
    if (title && (ownWindow || titlesVisible())) d.emplace("kCGWindowName", Value(*title));
    return Value(std::move(d));
}

std::optional<std::vector<Value>> SimWindows::windowListDescriptions(std::uint32_t) {
    ++requests_;
    if (unavailable_) return std::nullopt;
    std::vector<Value> list;
    auto host = mac_.workspace().host();
    int overlayNumber = 900;
    for (const auto& weak : overlays_) {
        auto overlay = weak.lock();
        if (!overlay || !overlay->isVisible()) continue;
        // The overlay's frame is in screen coordinates; the list's origin is top left.
        Rect f = overlay->frame();
        list.push_back(describe(overlayNumber++, static_cast<int>(overlay->level()),
                                {{f.origin.x, screen_.size.height - f.maxY()}, f.size}, host->processIdentifier(),
                                host->localizedName(), std::nullopt, true));
    }
    auto& preferences = mac_.systemPreferences();
    auto addPreferences = [&] {
        if (!preferences.isRunning()) return;
        auto app = mac_.workspace().application(SystemPreferencesBundleIdentifier);
        if (!app || app->isHidden()) return;
        list.push_back(describe(310, 0, preferences.windowFrame(), app->processIdentifier(), app->localizedName(),
                                preferences.windowTitle(), false));
        int number = 311;
        for (const auto& extra : preferences.extraWindows())
            list.push_back(describe(number++, 0, extra.frame, app->processIdentifier(), app->localizedName(), extra.title, false));
    };
    auto addHost = [&] {
        if (!host->isHidden()) list.push_back(describe(200, 0, hostWindowFrame, host->processIdentifier(), host->localizedName(),
                                                       mac_.configuration().hostName, true));
    };
    // The front application's windows come first.
    auto front = mac_.workspace().front();
    if (front && front->bundleIdentifier() == SystemPreferencesBundleIdentifier) {
        addPreferences();
        addHost();
    } else {
        addHost();
        addPreferences();
    }
    if (filter_) filter_(list);
    return list;
}

OverlayLayout SimWindows::loadWindowNib(std::string_view nibName, VantroWindowController& owner) {
    auto layout = loadOverlayLayout(mac_, nibName, owner);
    if (layout.window) overlays_.push_back(layout.window);
    return layout;
}

std::shared_ptr<EventMonitor> SimWindows::addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                             std::function<void(const Event&)> handler) {
    if (refusesMonitors_) return nullptr;
    auto monitor = std::make_shared<Monitor>();
    monitor->mask = mask;
    monitor->handler = std::move(handler);
    monitors_.push_back(monitor);
    mac_.record("framework", "installs a global mouse monitor");
    return monitor;
}

void SimWindows::removeMonitor(const std::shared_ptr<EventMonitor>& monitor) {
    auto before = monitors_.size();
    std::erase_if(monitors_, [&](const std::shared_ptr<Monitor>& m) { return m == monitor; });
    if (monitors_.size() != before) mac_.record("framework", "removes its global mouse monitor");
}

void SimWindows::deliverMouseEvent(const Event& event, int ownerPID) {
    if (ownerPID == mac_.workspace().host()->processIdentifier()) return;
    auto snapshot = monitors_;
    for (const auto& monitor : snapshot) {
        bool stillInstalled = std::find(monitors_.begin(), monitors_.end(), monitor) != monitors_.end();
        if (stillInstalled && (monitor->mask & (1ull << event.type))) monitor->handler(event);
    }
}

}  // namespace vantro::sim
