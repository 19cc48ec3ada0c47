#include "Simulator/SimOverlay.h"

#include <cstdio>
#include <iterator>

#include "Overlay/VantroWindowController.h"
#include "Overlay/ZVMainBundleIconImageView.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

constexpr std::string_view overlayOwnerClass = "VantroWindowController";
constexpr std::string_view iconViewClass = "ZVMainBundleIconImageView";
constexpr std::string_view textFieldClass = "NSTextField";

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

// The owner's keys a view may bind to; binding any other fails the load, as
// a binding to a key the owner lacks raises while the layout loads.
// The overlay window's observation of its owner's "message", by address.
constexpr char OverlayMessageContext[] = "SimOverlayWindow.message";

bool ownerHasBindableKey(const std::string& keyPath) { return keyPath == "message"; }

}  // namespace

std::string SimTextField::stringValue(const VantroWindowController& owner) const {
    if (valueBinding_ == "message") return owner.message().value_or("");
    return title_;
}

SimOverlayWindow::SimOverlayWindow(SimulatedMac& mac, std::string windowClass, const Rect& contentRect,
                                   unsigned long styleMask, OverlayNib layout)
    : mac_(mac),
      windowClass_(std::move(windowClass)),
      layout_(std::move(layout)),
      requestedStyleMask_(styleMask),
      frame_(contentRect),
      level_(layout_.level.value_or(0)) {
    for (const NibView& view : layout_.views) {
        if (view.className == iconViewClass) {
            iconViews_.emplace(view.id, ZVMainBundleIconImageView::initWithFrame(view.frame, applicationIconImageName(mac_)));
        } else if (view.className == textFieldClass) {
            std::optional<std::string> binding;
            if (auto it = view.ownerBindings.find("value"); it != view.ownerBindings.end()) binding = it->second;
            textFields_.emplace(view.id, std::make_shared<SimTextField>(view.id, view.title, std::move(binding)));
        }
    }
    placeIconViews();
}

void SimOverlayWindow::setFrame(const Rect& frame, bool display, bool animate) {
    // An animated change of a shown window moves it in steps, as AppKit's
    // animation does; the last step lands here without animation.
    if (animate && visible_ && frame != frame_) {
        mac_.windows().animateFrame(*this, frame, display);
        return;
    }
    if (frame == frame_) return;
    frame_ = frame;
    placeIconViews();
    if (!visible_) return;
    mac_.record("overlay", "moves to " + describe(frame_));
    if (display) {
        displayedFrame_ = frame_;
    } else if (!displayPending_) {
        displayPending_ = true;
        mac_.runLoop().dispatchAsyncMain([weak = weak_from_this()] {
            auto self = weak.lock();
            if (!self || !self->displayPending_) return;
            self->displayPending_ = false;
            if (self->visible_) self->displayedFrame_ = self->frame_;
        });
    }
}

void SimOverlayWindow::placeIconViews() {
    if (iconViews_.empty()) return;
    const auto all = views();
    for (std::size_t index = 0; index < all.size(); ++index) {
        auto icon = iconViewWithId(all[index].id);
        if (!icon) continue;
        // The icon view's frame is in its superview's coordinates.
        const NibView& design = layout_.views[index];
        const Rect inWindow = all[index].frame;
        Point superOrigin{};
        if (design.superview >= 0) superOrigin = all[static_cast<std::size_t>(design.superview)].frame.origin;
        icon->setFrame({{inWindow.origin.x - superOrigin.x, inWindow.origin.y - superOrigin.y}, inWindow.size});
    }
}

void SimOverlayWindow::orderFront() {
    if (visible_) return;
    visible_ = true;
    displayedFrame_ = frame_;
    displayPending_ = false;
    mac_.record("overlay", "shown at " + describe(frame_));
    recordTextShown();
    didChangeValueForKey("visible");
}

SimOverlayWindow::~SimOverlayWindow() {
    // An owner already gone took the registration with it.
    if (auto owner = messageOwner_.lock()) owner->removeObserver(*this, "message", OverlayMessageContext);
}

void SimOverlayWindow::followMessageOf(std::weak_ptr<VantroWindowController> owner) {
    if (auto old = messageOwner_.lock()) old->removeObserver(*this, "message", OverlayMessageContext);
    messageOwner_ = std::move(owner);
    if (auto now = messageOwner_.lock()) now->addObserver(*this, "message", ObservingOptionNone, OverlayMessageContext);
}

void SimOverlayWindow::observeValueForKeyPath(std::string_view, Observable&, ObservationContext context) {
    if (context == OverlayMessageContext) recordTextShown();
}

void SimOverlayWindow::recordTextShown() {
    auto owner = messageOwner_.lock();
    if (!visible_ || !owner) return;
    std::string shown;
    for (const auto& text : textsShown(*owner)) shown += (shown.empty() ? "" : " / ") + text;
    if (shown == recordedText_) return;
    recordedText_ = shown;
    mac_.record("overlay", shown.empty() ? std::string("says nothing") : "says \"" + shown + "\"");
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

std::shared_ptr<ZVMainBundleIconImageView> SimOverlayWindow::iconViewWithId(std::string_view id) const {
    auto it = iconViews_.find(id);
    return it == iconViews_.end() ? nullptr : it->second;
}

std::shared_ptr<ZVMainBundleIconImageView> SimOverlayWindow::iconView() const {
    for (const NibView& view : layout_.views)
        if (auto icon = iconViewWithId(view.id)) return icon;
    return nullptr;
}

std::shared_ptr<SimTextField> SimOverlayWindow::textFieldWithId(std::string_view id) const {
    auto it = textFields_.find(id);
    return it == textFields_.end() ? nullptr : it->second;
}

std::string SimOverlayWindow::textShownBy(const OverlayView& view, const VantroWindowController& owner) const {
    auto field = textFieldWithId(view.id);
    return field ? field->stringValue(owner) : std::string();
}

std::vector<std::string> SimOverlayWindow::textsShown(const VantroWindowController& owner) const {
    std::vector<std::string> texts;
    for (const NibView& view : layout_.views)
        if (auto field = textFieldWithId(view.id)) texts.push_back(field->stringValue(owner));
    return texts;
}

std::optional<Rect> SimOverlayWindow::iconFrameInWindow() const {
    for (const auto& v : views())
        if (iconViewWithId(v.id)) return v.frame;
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
    // draws nothing: where a non-opaque window's background is clear, clicks
    // go through to the window below, as they do through a transparent
    // window. An opaque window takes them all.
    auto all = views();
    const OverlayView* hit = nullptr;
    for (auto it = all.rbegin(); it != all.rend() && !hit; ++it)
        if (it->frame.contains(event.locationInWindow) && (std::next(it) != all.rend() || background_.alpha > 0 || isOpaque()))
            hit = &*it;
    if (!hit) return false;
    auto host = mac_.workspace().host();
    const bool hostActive = mac_.workspace().front() == host;
    if (!hostActive && !preventsActivation()) {
        // A window without the hook activates its application when clicked.
        mac_.record("overlay", "a click on the " + windowClass_ + " makes " + host->localizedName() + " active");
        mac_.workspace().activate(host);
    }
    auto icon = iconViewWithId(hit->id);
    if (!icon) {
        mac_.record("overlay", "a mouse-down on the " + hit->className + " does nothing");
        return true;
    }
    // With the host in the background, the click reaches the view only
    // because it accepts the first mouse.
    if (!hostActive && !icon->acceptsFirstMouse(&event)) {
        mac_.record("overlay", "the first click only brings the overlay forward");
        return true;
    }
    // The icon's next responder is its superview, which does nothing with a
    // mouse-down but pass it further up, where nothing takes it.
    std::weak_ptr<SimOverlayWindow> weakWindow = weak_from_this();
    icon->setNextResponder([weakWindow](const Event& passed) {
        if (auto window = weakWindow.lock()) window->mouseDownPassedOn(passed);
    });
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
    const std::string name(nibName);
    auto bundle = mac.bundles().frameworkBundle();
    // AppKit's window controller only logs a layout it cannot find, and has
    // no window then.
    auto path = bundle ? bundle->pathForResource(nibName, "nib") : std::nullopt;
    if (!path) {
        mac.record("overlay", "the layout " + name + " is missing");
        return {};
    }
    auto document = readNibDocument(*path);
    auto nib = document ? overlayNibFrom(*document) : std::nullopt;
    if (!nib) {
        mac.record("overlay", "the layout " + name + " does not load");
        return {};
    }
    if (nib->ownerClass != overlayOwnerClass) {
        mac.record("overlay", "the layout " + name + " is made for a " + nib->ownerClass + ", not a VantroWindowController");
        return {};
    }
    if (nib->windowId.empty()) {
        mac.record("overlay", "the layout " + name + " has no window");
        return {};
    }
    for (const auto& [property, destination] : nib->outlets) {
        if (!ownerHasOutlet(property)) {
            mac.record("overlay", "the layout " + name + " connects an unknown outlet " + property);
            return {};
        }
    }
    for (const NibView& view : nib->views) {
        for (const auto& [binding, keyPath] : view.ownerBindings) {
            if (!ownerHasBindableKey(keyPath)) {
                mac.record("overlay", "the layout " + name + " binds the " + binding + " of a " + view.className +
                                          " to an unknown key " + keyPath);
                return {};
            }
        }
    }
    OverlayLayout layout;
    auto window = std::make_shared<SimOverlayWindow>(mac, nib->windowClass, nib->contentRect, nib->styleMask, *nib);
    // Outlets are connected only to objects of their kinds.
    auto outletDestination = [&](const char* property) {
        auto it = nib->outlets.find(property);
        return it == nib->outlets.end() ? std::string() : it->second;
    };
    if (auto id = outletDestination("iconView"); !id.empty()) {
        layout.iconView = window->iconViewWithId(id);
        if (!layout.iconView) mac.record("overlay", "the outlet iconView names no ZVMainBundleIconImageView; it stays unconnected");
    }
    if (auto id = outletDestination("unlockMessageField"); !id.empty()) {
        layout.unlockMessageField = window->textFieldWithId(id);
        if (!layout.unlockMessageField) mac.record("overlay", "the outlet unlockMessageField names no text field; it stays unconnected");
    }
    window->followMessageOf(owner.weak_from_this());
    mac.record("overlay", "loads the layout " + name + " (a " + nib->windowClass + ")");
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
