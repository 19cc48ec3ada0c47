#include "Simulator/SimWindows.h"

#include <algorithm>
#include <cmath>

#include "Simulator/SimOverlay.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

constexpr std::string_view finderBundleIdentifier = "com.apple.finder";
// The host's main thread inside an animated frame change: it runs none of
// its own work until the animation ends.
constexpr std::string_view animatingMode = "SimAnimatingWindowFrame";
// NSWindowResizeTime's default: seconds per 150 points of change.
constexpr double resizeTimePer150Points = 0.2;
// How often an animation moves the window on (the real one follows the
// display's refresh; a coarser step keeps the timeline readable).
constexpr double animationStep = 0.05;

Rect interpolate(const Rect& from, const Rect& to, double t) {
    auto mix = [t](double a, double b) { return a + (b - a) * t; };
    return {{mix(from.origin.x, to.origin.x), mix(from.origin.y, to.origin.y)},
            {mix(from.size.width, to.size.width), mix(from.size.height, to.size.height)}};
}

}  // namespace

bool SimWindows::titlesVisible() const {
    const auto& v = mac_.release().systemVersion;
    return screenRecording_ || (v.majorVersion == 10 && v.minorVersion < 15);
}

Value SimWindows::describe(const SimWindow& w) const {
    Value::Dictionary d{
        {"kCGWindowNumber", Value(w.number)},
        {"kCGWindowLayer", Value(w.layer)},
        {"kCGWindowBounds", Value(Value::Dictionary{{"X", Value(w.bounds.origin.x)},
                                                    {"Y", Value(w.bounds.origin.y)},
                                                    {"Width", Value(w.bounds.size.width)},
                                                    {"Height", Value(w.bounds.size.height)}})},
        {"kCGWindowOwnerPID", Value(w.ownerPID)},
        {"kCGWindowAlpha", Value(1.0)},
        {"kCGWindowOwnerName", Value(w.ownerName)},
    };
    if (w.onScreen) d.emplace("kCGWindowIsOnscreen", Value(true));
    if (w.title && (w.ownedByHost || titlesVisible())) d.emplace("kCGWindowName", Value(*w.title));
    return Value(std::move(d));
}

std::uint64_t SimWindows::raisedAt(int number) const {
    auto it = raised_.find(number);
    return it == raised_.end() ? 0 : it->second;
}

std::vector<SimWindow> SimWindows::windows(bool includeOffScreen) const {
    std::vector<SimWindow> all;
    auto& workspace = mac_.workspace();
    auto host = workspace.host();
    const bool hostHidden = host->isHidden();
    int overlayNumber = 900;
    for (const auto& weak : overlays_) {
        const int number = overlayNumber++;
        auto overlay = weak.lock();
        if (!overlay) continue;
        // The overlay's frame is in screen coordinates; the list's origin is top left.
        const Rect f = overlay->frame();
        all.push_back({number, static_cast<int>(overlay->level()), {{f.origin.x, screen_.size.height - f.maxY()}, f.size},
                       host->processIdentifier(), host->localizedName(), std::nullopt, overlay->isVisible() && !hostHidden, true});
    }
    all.push_back({hostWindowNumber, 0, hostWindowFrame, host->processIdentifier(), host->localizedName(),
                   mac_.configuration().hostName, !hostHidden, true});
    // System Preferences shows its windows once it has started.
    if (auto app = workspace.application(SystemPreferencesBundleIdentifier); app && app->isFinishedLaunching()) {
        const auto& preferences = mac_.systemPreferences();
        all.push_back({preferencesWindowNumber, 0, preferences.windowFrame(), app->processIdentifier(), app->localizedName(),
                       preferences.windowTitle(), !app->isHidden(), false});
        int number = preferencesWindowNumber + 1;
        for (const auto& extra : preferences.extraWindows())
            all.push_back({number++, 0, extra.frame, app->processIdentifier(), app->localizedName(), extra.title,
                           !app->isHidden() && !extra.minimized, false});
    }
    const Rect desktop{{0, 0}, screen_.size};
    // The desktop stays when Finder is hidden.
    if (auto finder = workspace.application(finderBundleIdentifier))
        all.push_back({desktopIconsWindowNumber, kCGDesktopIconWindowLevel, desktop, finder->processIdentifier(),
                       finder->localizedName(), std::nullopt, true, false});
    all.push_back({desktopPictureWindowNumber, kCGDesktopWindowLevel, desktop, dockPID, "Dock", "Desktop Picture", true, false});

    std::stable_sort(all.begin(), all.end(), [this](const SimWindow& a, const SimWindow& b) {
        if (a.layer != b.layer) return a.layer > b.layer;
        const auto ra = raisedAt(a.number), rb = raisedAt(b.number);
        if (ra != rb) return ra > rb;
        return a.number < b.number;
    });
    // Off-screen windows follow the on-screen ones (their order among
    // themselves on a real system is unconfirmed).
    auto offScreen = std::stable_partition(all.begin(), all.end(), [](const SimWindow& w) { return w.onScreen; });
    if (!includeOffScreen) all.erase(offScreen, all.end());
    return all;
}

std::optional<SimWindow> SimWindows::window(int number) const {
    for (const auto& w : windows(true))
        if (w.number == number) return w;
    return std::nullopt;
}

std::optional<std::vector<Value>> SimWindows::windowListDescriptions(std::uint32_t options) {
    ++requests_;
    if (unavailable_) return std::nullopt;
    std::vector<Value> list;
    for (const auto& w : windows(!(options & kCGWindowListOptionOnScreenOnly))) {
        if ((options & kCGWindowListExcludeDesktopElements) && w.isDesktopElement()) continue;
        list.push_back(describe(w));
    }
    if (filter_) filter_(list);
    return list;
}

void SimWindows::bringForward(int pid, bool allWindows) {
    std::vector<int> own;
    for (const auto& w : windows())
        if (w.ownerPID == pid && w.layer == 0) own.push_back(w.number);
    if (own.empty()) return;
    if (!allWindows) {
        raised_[own.front()] = nextRaise_++;
        return;
    }
    // Back to front, so the windows keep their order among themselves.
    for (auto it = own.rbegin(); it != own.rend(); ++it) raised_[*it] = nextRaise_++;
}

void SimWindows::bringWindowForward(int number) { raised_[number] = nextRaise_++; }

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
    if (monitor) ++removalRequests_;
    auto before = monitors_.size();
    std::erase_if(monitors_, [&](const std::shared_ptr<Monitor>& m) { return m == monitor; });
    if (monitors_.size() != before) mac_.record("framework", "removes its global mouse monitor");
}

void SimWindows::deliverMouseEvent(const Event& event, int ownerPID) {
    if (ownerPID == mac_.workspace().host()->processIdentifier()) return;
    auto snapshot = monitors_;
    for (const auto& monitor : snapshot) {
        bool stillInstalled = std::find(monitors_.begin(), monitors_.end(), monitor) != monitors_.end();
        if (stillInstalled && event.type >= 0 && event.type < 64 && (monitor->mask & (1ull << event.type))) monitor->handler(event);
    }
}

bool SimWindows::userClicksWindow(int number) {
    auto clicked = window(number);
    if (!clicked || !clicked->onScreen) return false;
    if (clicked->isDesktopElement()) {
        userClicksDesktop();
        return true;
    }
    mac_.record("user", "clicks into the window of " + clicked->ownerName);
    // The click activates the application with that window only; the
    // activation reaches the host later, through its main thread, while the
    // click itself goes to the window at once.
    for (const auto& app : {mac_.workspace().host(), mac_.workspace().application(SystemPreferencesBundleIdentifier)})
        if (app && app->processIdentifier() == clicked->ownerPID) mac_.workspace().activate(app, false);
    bringWindowForward(number);
    const Point inWindow{clicked->bounds.size.width / 2, clicked->bounds.size.height / 2};
    deliverMouseEvent({NSEventTypeLeftMouseDown, 1, inWindow}, clicked->ownerPID);
    deliverMouseEvent({NSEventTypeLeftMouseUp, 1, inWindow}, clicked->ownerPID);
    return true;
}

void SimWindows::userClicksDesktop() {
    auto finder = mac_.workspace().application(finderBundleIdentifier);
    if (!finder) return;
    mac_.record("user", "clicks the desktop");
    mac_.workspace().activate(finder, false);
    const Point where{screen_.size.width / 2, screen_.size.height / 2};
    deliverMouseEvent({NSEventTypeLeftMouseDown, 1, where}, finder->processIdentifier());
    deliverMouseEvent({NSEventTypeLeftMouseUp, 1, where}, finder->processIdentifier());
}

double SimWindows::animationResizeTime(const Rect& from, const Rect& to) {
    const double change = std::max({std::abs(to.origin.x - from.origin.x), std::abs(to.maxX() - from.maxX()),
                                    std::abs(to.origin.y - from.origin.y), std::abs(to.maxY() - from.maxY())});
    return resizeTimePer150Points * change / 150.0;
}

void SimWindows::animateFrame(OverlayWindow& window, const Rect& target, bool display) {
    const Rect from = window.frame();
    const double duration = animationResizeTime(from, target);
    if (!window.isVisible() || duration <= 0) {
        window.setFrame(target, display, false);
        return;
    }
    const int steps = std::max(1, static_cast<int>(std::ceil(duration / animationStep - 1e-9)));
    auto finished = std::make_shared<bool>(false);
    auto alive = std::make_shared<OverlayWindow*>(&window);
    for (int i = 1; i <= steps; ++i) {
        const bool last = i == steps;
        const Rect frame = last ? target : interpolate(from, target, static_cast<double>(i) / steps);
        mac_.runLoop().scheduleUserEvent(duration * i / steps, [alive, frame, display, last, finished] {
            if (*alive) (*alive)->setFrame(frame, display, false);
            if (last) *finished = true;
        });
    }
    mac_.runLoop().runModeUntil(animatingMode, [finished] { return *finished; }, duration + 1.0);
    // Should the clock have stopped short, the steps left must not reach a
    // window that may be gone.
    *alive = nullptr;
    if (!*finished) window.setFrame(target, display, false);
}

}  // namespace vantro::sim
