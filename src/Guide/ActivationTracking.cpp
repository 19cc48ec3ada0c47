#include <utility>

#include "Guide/GuideProcessState.h"
#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"

namespace vantro {

namespace {
constexpr double firstSightDelay = 0.5;
constexpr double secondRefreshDelay = 0.5;
}  // namespace

void Vantro::applicationChanged(RunningApplicationPtr activated) {
    auto& workspace = HostProcess::current().platform().workspace();
    if (!activated) activated = workspace.frontmostApplication();
    auto current = workspace.currentApplication();
    const bool isHost = activated && current && activated->isEqual(*current);
    const bool isSystemPreferences = activated && activated->bundleIdentifier() == SystemPreferencesBundleIdentifier;

    if (isSystemPreferences) {
        if (!didSeeSystemPreferences_) {
            didSeeSystemPreferences_ = true;
            // Now that System Preferences runs, the pane is opened once more at
            // the anchor, and the unlock prompt is asked for. The work holds
            // the guide until it has run, also past a stop.
            if (auto self = weak_from_this().lock()) {
                HostProcess::current().platform().runLoop().dispatchAfterMain(firstSightDelay, [self] {
                    self->callURL();
                    self->updateOverlay();
                    self->checkWindowName();
                    Vantro::authorizeIfPossible();
                });
            }
        }
        addMonitor();
        updateOverlay();
        checkWindowName();
    } else if (!(windowController_ && windowController_->inDrag())) {
        // While the user drags the icon out of the overlay, the overlay stays
        // and no session rule applies.
        orderOutOverlay();
        removeMonitor();
        if (didSeeSystemPreferences_) {
            bool systemPreferencesGone = workspace.runningApplicationsWithBundleIdentifier(SystemPreferencesBundleIdentifier).empty();
            if (stopOnDeactivateOfSystemPreferences_ || (stopOnQuitOfSystemPreferences_ && systemPreferencesGone) ||
                (stopOnActivateOfHostApplication_ && isHost))
                stop();
        } else if (didSeeOtherApplication_ && isHost) {
            // The user went elsewhere and came back without reaching System Preferences.
            stop();
        }
    }
    if (!didSeeOtherApplication_) didSeeOtherApplication_ = !isHost;
}

void Vantro::addMonitor() {
    if (monitor_) return;
    std::weak_ptr<Vantro> weakSelf = weak_from_this();
    auto refresh = [weakSelf] {
        auto self = weakSelf.lock();
        if (!self || !self->monitor_) return;
        auto current = HostProcess::current().platform().workspace().currentApplication();
        if (current && current->isHidden()) return;
        self->updateOverlay();
        self->checkWindowName();
    };
    // Each click or drag in System Preferences refreshes now and again a
    // moment later, when the window has settled where the user left it.
    auto handler = [refresh](const Event&) {
        refresh();
        HostProcess::current().platform().runLoop().dispatchAfterMain(secondRefreshDelay, refresh);
    };
    monitor_ = HostProcess::current().platform().windows().addGlobalMonitorForEventsMatchingMask(
        NSEventMaskLeftMouseDown | NSEventMaskLeftMouseUp | NSEventMaskLeftMouseDragged, handler);
}

void Vantro::removeMonitor() { setMonitor(nullptr); }

void Vantro::setMonitor(std::shared_ptr<EventMonitor> monitor) {
    if (monitor == monitor_) return;
    // The token is let go before the system is asked, so that nothing the
    // removal sets off finds it still here.
    auto replaced = std::exchange(monitor_, std::move(monitor));
    if (replaced) HostProcess::current().platform().windows().removeMonitor(replaced);
}

}  // namespace vantro
