#include <cmath>
#include <vector>

#include "Guide/GuideProcessState.h"
#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"

namespace vantro {

namespace {

constexpr double minimumWindowHeight = 100.0;
constexpr double overlayExtraHeight = 110.0;
constexpr double retryDelay = 0.5;
// How far below its window's top a sheet may begin: under the title bar and
// a toolbar.
constexpr double maximumSheetTopOffset = 80.0;

// A bounds member read as the platform's single-precision number, widened.
double boundsMember(const Value& description, std::string_view member) {
    const Value* v = description.findKeyPath("kCGWindowBounds." + std::string(member));
    return v ? static_cast<double>(static_cast<float>(v->doubleValue())) : 0.0;
}

// Whether one of `inFront` is an alert sheet of `window`. An alert sheet hangs
// from the top of its window, centred on it, and is far smaller than it; the
// window list shows it as a window of the same application in front of the
// other, with or without a title (an open panel's sheet is nearly the
// window's size and is not taken for one). Only the geometry is read: without
// Screen Recording the list carries no titles.
bool sheetInFront(const Value& window, const std::vector<const Value*>& inFront) {
    const double x = boundsMember(window, "X"), y = boundsMember(window, "Y");
    const double width = boundsMember(window, "Width"), height = boundsMember(window, "Height");
    for (const Value* other : inFront) {
        const double sx = boundsMember(*other, "X"), sy = boundsMember(*other, "Y");
        const double sw = boundsMember(*other, "Width"), sh = boundsMember(*other, "Height");
        const bool centred = std::abs((sx + sw / 2) - (x + width / 2)) <= 2 && sw < width / 2;
        const bool hangsFromTop = sy >= y && sy <= y + maximumSheetTopOffset && sh < height / 2;
        if (centred && hangsFromTop) return true;
    }
    return false;
}

}  // namespace

std::optional<Value> Vantro::preferencesWindow(bool* sheetShown) {
    auto& platform = HostProcess::current().platform();
    long wantedPID = -1;
    auto front = platform.workspace().frontmostApplication();
    if (front && front->bundleIdentifier() == SystemPreferencesBundleIdentifier) wantedPID = front->processIdentifier();

    auto windows = platform.windows().windowListDescriptions(kCGWindowListOptionOnScreenOnly | kCGWindowListExcludeDesktopElements);
    if (!windows) return std::nullopt;
    // The list runs front to back; of several qualifying windows the one
    // furthest back is taken, on purpose.
    std::optional<Value> found;
    std::vector<const Value*> owned;  // the application's windows, front to back
    std::size_t foundAt = 0;
    for (const auto& description : *windows) {
        const Value* owner = description.find("kCGWindowOwnerPID");
        const Value* height = description.findKeyPath("kCGWindowBounds.Height");
        if (!owner || !owner->isNumber() || owner->integerValue() != wantedPID) continue;
        owned.push_back(&description);
        if (height && height->isNumber() && height->doubleValue() > minimumWindowHeight) {
            found = description;
            foundAt = owned.size() - 1;
        }
    }
    if (sheetShown) *sheetShown = found && sheetInFront(*found, std::vector<const Value*>(owned.begin(), owned.begin() + foundAt));
    return found;
}

void Vantro::updateOverlay() {
    auto& platform = HostProcess::current().platform();
    bool sheetShown = false;
    if (auto window = preferencesWindow(&sheetShown)) {
        reopenSheetShown_ = sheetShown;
        if (sheetShown && panelIdentifier_ && takesEffectOnlyAfterRelaunch(*panelIdentifier_)) needsRelaunch_.insert(*panelIdentifier_);
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
    // While the "Quit & Reopen" sheet shows, the overlay says what to choose:
    // for a permission that applies at once "Later" loses nothing.
    if (reopenSheetShown_)
        windowController_->setMessage(promptText(panelIdentifier_ && takesEffectOnlyAfterRelaunch(*panelIdentifier_) ? "ReopenNow" : "ReopenLater"));
    else
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
