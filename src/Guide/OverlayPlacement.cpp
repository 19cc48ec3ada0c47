#include "Guide/GuideProcessState.h"
#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"

namespace vantro {

namespace {

constexpr double minimumWindowHeight = 100.0;
constexpr double overlayExtraHeight = 110.0;
constexpr double retryDelay = 0.5;

// A bounds member read as the platform's single-precision number, widened.
double boundsMember(const Value& description, std::string_view member) {
    const Value* v = description.findKeyPath("kCGWindowBounds." + std::string(member));
    return v ? static_cast<double>(static_cast<float>(v->doubleValue())) : 0.0;
}

}  // namespace

std::optional<Value> Vantro::preferencesWindow() {
    auto& platform = HostProcess::current().platform();
    long wantedPID = -1;
    auto front = platform.workspace().frontmostApplication();
    if (front && front->bundleIdentifier() == SystemPreferencesBundleIdentifier) wantedPID = front->processIdentifier();

    auto windows = platform.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements);
    if (!windows) return std::nullopt;
    // The list runs front to back; of several qualifying windows the one
    // furthest back is taken, on purpose.
    std::optional<Value> found;
    for (const auto& description : *windows) {
        const Value* owner = description.find("kCGWindowOwnerPID");
        const Value* height = description.findKeyPath("kCGWindowBounds.Height");
        if (owner && owner->isNumber() && owner->integerValue() == wantedPID && height && height->isNumber() &&
            height->doubleValue() > minimumWindowHeight)
            found = description;
    }
    return found;
}

void Vantro::updateOverlay() {
    auto& platform = HostProcess::current().platform();
    if (auto window = preferencesWindow()) {
        if (!isOverlayShown()) {
            if (auto d = delegate(); d && d->respondsToVantroDidOpenPanel()) d->vantroDidOpenPanel(panelIdentifier_.value_or(""));
        }
        placeWindowForItem(*window);
        if (auto front = platform.workspace().frontmostApplication())
            front->activateWithOptions(NSApplicationActivateAllWindows | NSApplicationActivateIgnoringOtherApps);
        return;
    }
    orderOutOverlay();
    // Nothing cancels a retry: each call that finds no window schedules one
    // more, also after stop, until System Preferences shows its window.
    if (auto self = weak_from_this().lock())
        platform.runLoop().performAfterDelay(this, "updateOverlay", retryDelay, [self] { self->updateOverlay(); });
}

void Vantro::placeWindowForItem(const Value& windowDescription) {
    auto& platform = HostProcess::current().platform();
    const double x = boundsMember(windowDescription, "X");
    const double y = boundsMember(windowDescription, "Y");
    const double width = boundsMember(windowDescription, "Width");
    const double height = boundsMember(windowDescription, "Height");
    // From the window list's top-left origin to the screen's bottom-left one;
    // only the main screen's height matters. The overlay covers the window and
    // a strip of 110 points below it.
    const double screenHeight = platform.windows().mainScreenFrame().size.height;
    Rect frame{{x, screenHeight - (y + height + overlayExtraHeight)}, {width, height + overlayExtraHeight}};

    if (!windowController_) setWindowController(VantroWindowController::initWithWindowNibName("VantroWindowController"));
    if (!windowController_) return;
    windowController_->setMessage(message_);
    if (auto* window = windowController_->window()) {
        window->setBackgroundColor(Color::clearColor());
        window->setLevel(NSPopUpMenuWindowLevel);
        window->setFrame(frame, true, false);
        window->orderFront();
    }
}

void Vantro::checkWindowName() {
    if (!privacyPanelName_) return;
    // System Settings' window is titled with the page or sub-pane shown
    // ("Full Disk Access"), a name the guide has no source for (the pane
    // bundle names only the "Privacy & Security" page), and without Screen
    // Recording, which a host asking for a permission seldom has, the title
    // is missing from the window list altogether. A missing title tells
    // nothing, and comparing with the page's name would hide the overlay just
    // as the user follows it from the page into the sub-pane. So the check is
    // off there: the overlay stays over the window while System Settings is
    // in front, and the session still ends when the user comes back.
    if (runsSystemSettings()) return;
    auto window = preferencesWindow();
    std::optional<std::string> title;
    if (const Value* name = window ? window->find("kCGWindowName") : nullptr) title = name->string();
    if (title == privacyPanelName_) {
        if (!isOverlayShown()) updateOverlay();
        didSeePrivacyPanel_ = true;
    } else if (didSeePrivacyPanel_ && isOverlayShown()) {
        // The user left the Security & Privacy pane: the overlay makes no sense there.
        orderOutOverlay();
    }
}

}  // namespace vantro
