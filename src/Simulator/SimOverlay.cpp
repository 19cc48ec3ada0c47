#include "Simulator/SimOverlay.h"

#include <cstdio>
#include <iterator>

#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

constexpr std::string_view overlayNibName = "VantroWindowController";

std::string describe(const Rect& r) {
    char text[96];
    std::snprintf(text, sizeof text, "(%g, %g, %g × %g)", r.origin.x, r.origin.y, r.size.width, r.size.height);
    return text;
}

// The outlets a VantroWindowController can be given; connecting any other
// fails the load, as setting an unknown key on the owner would.
bool ownerHasOutlet(const std::string& property) {
    return property == "window" || property == "iconView" || property == "unlockMessageField";
}

}  // namespace

SimOverlayWindow::SimOverlayWindow(SimulatedMac& mac, const Rect& contentRect, unsigned long styleMask, OverlayNib layout)
    : mac_(mac), layout_(std::move(layout)), requestedStyleMask_(styleMask), frame_(contentRect) {}

void SimOverlayWindow::setFrame(const Rect& frame, bool, bool) {
    if (frame == frame_) return;
    frame_ = frame;
    placeIconView();
    if (visible_) mac_.record("overlay", "moves to " + describe(frame_));
}

void SimOverlayWindow::placeIconView() {
    auto icon = iconView_.lock();
    const int index = layout_.indexOf(iconViewId_);
    if (!icon || index < 0) return;
    // The icon view's frame is in its superview's coordinates.
    const auto all = views();
    const NibView& design = layout_.views[static_cast<std::size_t>(index)];
    const Rect inWindow = all[static_cast<std::size_t>(index)].frame;
    Point superOrigin{};
    if (design.superview >= 0) superOrigin = all[static_cast<std::size_t>(design.superview)].frame.origin;
    icon->setFrame({{inWindow.origin.x - superOrigin.x, inWindow.origin.y - superOrigin.y}, inWindow.size});
}

void SimOverlayWindow::orderFront() {
    if (visible_) return;
    visible_ = true;
    mac_.record("overlay", "shown at " + describe(frame_));
    didChangeValueForKey("visible");
}

void SimOverlayWindow::orderOut() {
    if (!visible_) return;
    visible_ = false;
    mac_.record("overlay", "hidden");
    didChangeValueForKey("visible");
}

std::vector<OverlayView> SimOverlayWindow::views() const {
    std::vector<OverlayView> out;
    out.reserve(layout_.views.size());
    // Frames relative to each superview, for the design size and for now.
    std::vector<Rect> placed(layout_.views.size());
    for (std::size_t i = 0; i < layout_.views.size(); ++i) {
        const NibView& view = layout_.views[i];
        Rect local;
        Point superOrigin{};
        if (view.superview < 0) {
            // The content view fills the borderless window.
            local = {{0, 0}, frame_.size};
        } else {
            const auto parent = static_cast<std::size_t>(view.superview);
            local = autoresizedFrame(view.frame, view.autoresizingMask, layout_.views[parent].frame.size, placed[parent].size);
            superOrigin = out[parent].frame.origin;
        }
        placed[i] = local;
        OverlayView o;
        o.id = view.id;
        o.className = view.className;
        o.frame = {{superOrigin.x + local.origin.x, superOrigin.y + local.origin.y}, local.size};
        if (auto it = view.ownerBindings.find("value"); it != view.ownerBindings.end()) o.valueBinding = it->second;
        o.title = view.title;
        o.fontSize = view.fontSize;
        o.boldFont = view.boldFont;
        out.push_back(std::move(o));
    }
    return out;
}

std::optional<OverlayView> SimOverlayWindow::viewWithId(std::string_view id) const {
    for (auto& v : views())
        if (v.id == id) return v;
    return std::nullopt;
}

std::optional<OverlayView> SimOverlayWindow::firstViewOfClass(std::string_view className) const {
    for (auto& v : views())
        if (v.className == className) return v;
    return std::nullopt;
}

void SimOverlayWindow::setIconView(const std::shared_ptr<ZVMainBundleIconImageView>& iconView, std::string id) {
    iconView_ = iconView;
    iconViewId_ = std::move(id);
    if (!iconView) return;
    placeIconView();
    // The icon's next responder is its superview, which does nothing with a
    // mouse-down but pass it further up, where nothing takes it.
    std::weak_ptr<SimOverlayWindow> weakWindow = weak_from_this();
    iconView->setNextResponder([weakWindow](const Event& event) {
        if (auto window = weakWindow.lock()) window->mouseDownPassedOn(event);
    });
}

std::optional<Rect> SimOverlayWindow::iconFrameInWindow() const {
    if (iconView_.expired()) return std::nullopt;
    if (auto v = viewWithId(iconViewId_)) return v->frame;
    return std::nullopt;
}

void SimOverlayWindow::mouseDownPassedOn(const Event& event) {
    ++passedOn_;
    mac_.record("overlay", "the icon passes on a mouse-down (type " + std::to_string(event.type) + ", " +
                               std::to_string(event.clickCount) + " clicks); nothing takes it");
}

bool SimOverlayWindow::sendMouseDown(const Event& event, std::deque<Event> following) {
    if (!visible_) return false;
    // The topmost view under the pointer takes the event. The content view
    // draws nothing: where the window's background is clear, clicks go
    // through to the window below, as they do through a transparent window.
    auto all = views();
    const OverlayView* hit = nullptr;
    for (auto it = all.rbegin(); it != all.rend() && !hit; ++it)
        if (it->frame.contains(event.locationInWindow) && (std::next(it) != all.rend() || background_.alpha > 0)) hit = &*it;
    if (!hit) return false;
    auto icon = iconView_.lock();
    if (!icon || hit->id != iconViewId_) {
        mac_.record("overlay", "a mouse-down on the " + hit->className + " does nothing");
        return true;
    }
    // The host stays in the background (the window prevents activation), so
    // the click reaches the view only because it accepts the first mouse.
    const bool hostActive = mac_.workspace().front() == mac_.workspace().host();
    if (!hostActive && !icon->acceptsFirstMouse(&event)) {
        mac_.record("overlay", "the first click only brings the overlay forward");
        return true;
    }
    mac_.dragging().setEventTarget(frame_.origin, {frame_.origin.x + hit->frame.origin.x, frame_.origin.y + hit->frame.origin.y});
    auto next = [&following](std::uint64_t mask) -> std::optional<Event> {
        // Events outside the mask stay out of the view's hands; the user makes
        // no more events than the script says.
        while (!following.empty()) {
            Event e = following.front();
            following.pop_front();
            if (e.type >= 0 && e.type < 64 && (mask & (1ull << e.type))) return e;
        }
        return std::nullopt;
    };
    icon->mouseDown(event, next);
    return true;
}

OverlayLayout loadOverlayLayout(SimulatedMac& mac, std::string_view nibName, VantroWindowController& owner) {
    (void)owner;  // bindings to the owner are read when the window is drawn
    if (nibName != overlayNibName) {
        mac.record("overlay", "no window layout named " + std::string(nibName));
        return {};
    }
    auto bundle = mac.bundles().frameworkBundle();
    auto path = bundle ? bundle->pathForResource(nibName, "xib") : std::nullopt;
    if (!path) {
        mac.record("overlay", "the layout " + std::string(nibName) + " is missing");
        return {};
    }
    auto nib = readOverlayNib(*path);
    if (!nib || nib->windowId.empty()) {
        mac.record("overlay", "the layout " + std::string(nibName) + " does not load");
        return {};
    }
    for (const auto& [property, destination] : nib->outlets) {
        if (!ownerHasOutlet(property)) {
            mac.record("overlay", "the layout " + std::string(nibName) + " connects an unknown outlet " + property);
            return {};
        }
    }
    OverlayLayout layout;
    auto window = std::make_shared<SimOverlayWindow>(mac, nib->contentRect, nib->styleMask, *nib);
    if (const NibView* icon = nib->outletView("iconView"); icon && icon->className == "ZVMainBundleIconImageView") {
        layout.iconView = ZVMainBundleIconImageView::initWithFrame(icon->frame, applicationIconImageName(mac));
        window->setIconView(layout.iconView, icon->id);
    }
    mac.record("overlay", "loads the layout " + std::string(nibName));
    if (nib->visibleAtLaunch) window->orderFront();
    layout.window = std::move(window);
    return layout;
}

std::string applicationIconImageName(const SimulatedMac& mac) { return "NSApplicationIcon:" + mac.configuration().hostName; }

SimOverlayWindow* simOverlayWindow(const VantroWindowController& controller) {
    return dynamic_cast<SimOverlayWindow*>(controller.window());
}

std::optional<Point> iconCenterOnScreen(const VantroWindowController& controller) {
    auto* window = simOverlayWindow(controller);
    auto frame = window ? window->iconFrameInWindow() : std::nullopt;
    if (!frame) return std::nullopt;
    const Rect w = window->frame();
    return Point{w.origin.x + frame->origin.x + frame->size.width / 2, w.origin.y + frame->origin.y + frame->size.height / 2};
}

namespace {

// The icon's centre in window coordinates, when the user can reach it.
std::optional<Point> reachableIconCenter(const VantroWindowController& controller) {
    auto* window = simOverlayWindow(controller);
    if (!window || !window->isVisible()) return std::nullopt;
    auto frame = window->iconFrameInWindow();
    if (!frame) return std::nullopt;
    return Point{frame->origin.x + frame->size.width / 2, frame->origin.y + frame->size.height / 2};
}

}  // namespace

bool userClicksIcon(SimulatedMac& mac, const VantroWindowController& controller, long clickCount) {
    (void)mac;
    auto center = reachableIconCenter(controller);
    if (!center) return false;
    Event down{NSEventTypeLeftMouseDown, clickCount, *center};
    Event up{NSEventTypeLeftMouseUp, clickCount, *center};
    return simOverlayWindow(controller)->sendMouseDown(down, {up});
}

bool userStartsDraggingIcon(SimulatedMac& mac, const VantroWindowController& controller) {
    auto center = reachableIconCenter(controller);
    if (!center) return false;
    const int before = mac.dragging().sessionsBegun();
    Event down{NSEventTypeLeftMouseDown, 1, *center};
    Event dragged{NSEventTypeLeftMouseDragged, 1, {center->x + 3, center->y + 2}};
    simOverlayWindow(controller)->sendMouseDown(down, {dragged});
    return mac.dragging().sessionsBegun() > before;
}

bool userDragsIcon(SimulatedMac& mac, const VantroWindowController& controller, Point screenPoint, DragEnd end) {
    if (!userStartsDraggingIcon(mac, controller)) return false;
    mac.dragging().moveTo(screenPoint);
    if (end == DragEnd::Drop)
        mac.dragging().dropAt(screenPoint);
    else
        mac.dragging().cancel();
    return true;
}

}  // namespace vantro::sim
