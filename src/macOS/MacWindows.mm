// Windows on the real Mac.
//
// Implements: the window list (CGWindowListCreate with the caller's options
// and no reference window, then CGWindowListCreateDescriptionFromArray, both
// released here as the platform requires), each description a dictionary
// with kCGWindowBounds as X, Y, Width and Height; the main screen's frame;
// global event monitors (addGlobalMonitorForEventsMatchingMask:handler: and
// removeMonitor:, one wrapper per token, removed once), each event handed on with its type, click count (0 for
// an event that is not a mouse event) and location, and the monitor's token
// for the guide's Objective-C twin; the overlay's layout, loaded by an
// Objective-C VantroWindowController (the layout's owner) from the
// framework's bundle and handed to the core as its window, icon view and
// message field, with the core controller's message mirrored into the
// Objective-C controller's, which the layout's field is bound to; the way
// between a core controller and its Objective-C twin, where a controller
// the host made itself gets a core twin that wraps the layout it already
// loaded. Main thread.
// Known gaps: "visible" is announced when the core shows or hides the
// overlay; AppKit hiding it by itself (the host hidden) is not announced.
// The window wrapper refers to the core controller that loaded it without
// owning it and ends its observation of the controller's message as it goes:
// it relies on that controller being its only owner, as it is while the
// controller hands out no ownership of its window.

#import <AppKit/AppKit.h>
#import <CoreGraphics/CoreGraphics.h>
#import <Vantro/VantroWindowController.h>

#include <map>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacOverlay.h"
#include "macOS/MacTwins.h"

namespace vantro::mac {

namespace {

// clickCount raises for anything but a mouse event: NSEventType 1 to 7 (the
// left and right buttons, moves and drags) and 25 to 27 (other buttons).
bool hasClickCount(long type) { return (type >= 1 && type <= 7) || (type >= 25 && type <= 27); }

// Compared by address: the window wrapper's registration on its owner.
constexpr char OwnerMessageContext[] = "MacOverlayWindow.owner.message";

// A monitor's token, handed to AppKit for removal once only: AppKit does not
// say what a second removal of the same monitor does. The wrapper keeps its
// token for its whole life, so that no other token takes its address while
// the table below still names it.
class MacEventMonitor final : public EventMonitor {
public:
    explicit MacEventMonitor(id token) : token_(token) {}
    id token() const { return token_; }
    void remove() {
        if (removed_) return;
        removed_ = true;
        [NSEvent removeMonitor:token_];
    }

private:
    id token_;
    bool removed_ = false;
};

// The one wrapper of each token, for as long as someone holds it: a token
// that comes back through the guide's Objective-C property finds the wrapper
// it had, so that it is removed once however often it is set. Main thread.
std::shared_ptr<MacEventMonitor> wrapperFor(id token) {
    static std::map<const void*, std::weak_ptr<MacEventMonitor>> wrappers;
    std::erase_if(wrappers, [](const auto& entry) { return entry.second.expired(); });
    auto& slot = wrappers[(__bridge const void*)token];
    if (auto existing = slot.lock()) return existing;
    auto made = std::make_shared<MacEventMonitor>(token);
    slot = made;
    return made;
}

// A view of the loaded layout, held weakly as an outlet holds it: the
// window's view hierarchy owns it.
class MacLayoutView final : public View {
public:
    explicit MacLayoutView(NSView* view) : view_(view) {}
    NSView* _Nullable view() const { return view_; }

private:
    __weak NSView* view_;
};

// The overlay's window as the core sees it. It keeps the Objective-C
// controller, and through it the window and its views, alive, and owns the
// core view of the message field, which the core controller holds weakly.
class MacOverlayWindow final : public OverlayWindow, public Observer {
public:
    MacOverlayWindow(VantroWindowControllerTwin* controller, NSWindow* window, VantroWindowController& owner)
        : controller_(controller), window_(window), owner_(owner) {
        if (NSTextField* field = controller.unlockMessageField) unlockMessageField_ = std::make_shared<MacLayoutView>(field);
        owner_.addObserver(*this, "message", ObservingOptionNone, OwnerMessageContext);
    }
    ~MacOverlayWindow() override { owner_.removeObserver(*this, "message", OwnerMessageContext); }

    void setBackgroundColor(const Color& color) override { window_.backgroundColor = toNSColor(color); }
    void setLevel(long level) override { window_.level = level; }
    void setFrame(const Rect& frame, bool display, bool animate) override {
        [window_ setFrame:toNSRect(frame) display:display animate:animate];
    }
    // NSWindow's "visible" is not reliably observable: the wrapper announces
    // each showing and hiding itself.
    void orderFront() override {
        [window_ orderFront:nil];
        didChangeValueForKey("visible");
    }
    void orderOut() override {
        [window_ orderOut:nil];
        didChangeValueForKey("visible");
    }
    bool isVisible() const override { return [window_ isVisible]; }
    Rect frame() const override { return toRect(window_.frame); }
    long level() const override { return window_.level; }
    Color backgroundColor() const override { return toColor(window_.backgroundColor); }

    void observeValueForKeyPath(std::string_view keyPath, Observable&, ObservationContext context) override {
        if (context != OwnerMessageContext || keyPath != "message") return;
        const std::optional<std::string>& message = owner_.message();
        controller_.message = message ? toNSString(*message) : nil;
    }

    VantroWindowControllerTwin* controller() const { return controller_; }
    const std::shared_ptr<View>& unlockMessageField() const { return unlockMessageField_; }

private:
    VantroWindowControllerTwin* controller_;
    NSWindow* window_;
    VantroWindowController& owner_;
    std::shared_ptr<View> unlockMessageField_;
};

// A controller the host made itself that the next layout load wraps rather
// than loading the layout again (see coreWindowController).
VantroWindowControllerTwin* __strong& adoptedController() {
    static VantroWindowControllerTwin* __strong controller = nil;
    return controller;
}

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

    Rect mainScreenFrame() override { return toRect(NSScreen.mainScreen.frame); }

    OverlayLayout loadWindowNib(std::string_view nibName, VantroWindowController& owner) override {
        VantroWindowControllerTwin* controller = adoptedController();
        if (!controller) controller = [[VantroWindowControllerTwin alloc] initWithWindowNibName:toNSString(nibName)];
        // Asking for the window loads the layout; a layout that does not load
        // leaves the controller without one.
        NSWindow* window = controller.window;
        if (!window) return {};
        auto overlayWindow = std::make_shared<MacOverlayWindow>(controller, window, owner);
        OverlayLayout layout;
        layout.iconView = coreIconView(controller.iconView);
        layout.unlockMessageField = overlayWindow->unlockMessageField();
        layout.window = std::move(overlayWindow);
        return layout;
    }

    std::shared_ptr<EventMonitor> addGlobalMonitorForEventsMatchingMask(std::uint64_t mask,
                                                                         std::function<void(const Event&)> handler) override {
        id token = [NSEvent addGlobalMonitorForEventsMatchingMask:static_cast<NSEventMask>(mask)
                                                          handler:^(NSEvent* event) {
                                                            handler(toEvent(event));
                                                          }];
        if (!token) return nullptr;
        return wrapperFor(token);
    }

    void removeMonitor(const std::shared_ptr<EventMonitor>& monitor) override {
        auto* macMonitor = dynamic_cast<MacEventMonitor*>(monitor.get());
        if (macMonitor) macMonitor->remove();
    }
};

}  // namespace

std::unique_ptr<Windows> makeWindows() { return std::make_unique<MacWindows>(); }

Event toEvent(NSEvent* event) {
    Event seen;
    seen.type = static_cast<long>(event.type);
    seen.clickCount = hasClickCount(seen.type) ? event.clickCount : 0;
    seen.locationInWindow = toPoint(event.locationInWindow);
    return seen;
}

NSView* nsViewOf(const std::shared_ptr<View>& view) {
    auto* layoutView = dynamic_cast<MacLayoutView*>(view.get());
    return layoutView ? layoutView->view() : nil;
}

VantroWindowControllerTwin* windowControllerFor(const std::shared_ptr<vantro::VantroWindowController>& controller) {
    auto* window = dynamic_cast<MacOverlayWindow*>(controller ? controller->window() : nullptr);
    if (!window) return nil;
    // Remembered, so that the Objective-C controller leads back to this one.
    rememberCoreController(window->controller(), controller);
    return window->controller();
}

std::shared_ptr<vantro::VantroWindowController> coreWindowController(VantroWindowControllerTwin* controller) {
    if (!controller) return nullptr;
    if (auto core = rememberedCoreController(controller)) return core;
    // A controller the host made itself: its core twin takes over the layout
    // it loaded. The core loads its layout through loadWindowNib, which wraps
    // this controller instead of making another.
    adoptedController() = controller;
    auto core = vantro::VantroWindowController::initWithWindowNibName(toString(controller.windowNibName));
    adoptedController() = nil;
    rememberCoreController(controller, core);
    return core;
}

id monitorToken(const std::shared_ptr<EventMonitor>& monitor) {
    auto* macMonitor = dynamic_cast<MacEventMonitor*>(monitor.get());
    return macMonitor ? macMonitor->token() : nil;
}

std::shared_ptr<EventMonitor> eventMonitorFor(id token) {
    if (!token) return nullptr;
    return wrapperFor(token);
}

}  // namespace vantro::mac
