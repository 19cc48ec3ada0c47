#include <utility>

#include "Guide/GuideProcessState.h"
#include "Guide/Vantro.h"
#include "Platform/AppleEvents.h"

namespace vantro {

namespace {

// Anchors that System Settings knows under another name. Every other anchor
// the framework sends is the same in both applications.
constexpr std::pair<std::string_view, std::string_view> systemSettingsAnchors[] = {
    {VantroPrivacyDiagnostics, "Privacy_Analytics"},
};

}  // namespace

bool Vantro::openPrivacyPreferencesWithAnchor(std::optional<std::string_view> anchor) {
    auto& process = HostProcess::current();
    auto& state = guideProcessState();
    std::string chosen = anchor ? std::string(*anchor) : std::string("Privacy");
    if (!state.folderAnchors) {
        state.folderAnchors = std::set<std::string, std::less<>>{
            std::string(VantroPrivacyFilesAndFolders), std::string(VantroPrivacyDesktopFolder),
            std::string(VantroPrivacyDocumentsFolder), std::string(VantroPrivacyDownloadsFolder),
            std::string(VantroPrivacyNetworkVolume),   std::string(VantroPrivacyRemovableVolume)};
    }
    const bool systemSettings = runsSystemSettings();
    // The folder and volume categories have no list of their own in System
    // Preferences: they open the Privacy tab at its start. System Settings
    // has a Files and Folders list, which is where they are switched on.
    if (state.folderAnchors->count(chosen)) chosen = systemSettings ? std::string(VantroPrivacyFilesAndFolders) : "Privacy";
    if (flooredAppKitVersion() > 1265.0 && chosen == VantroPrivacyAssistive) chosen = std::string(VantroPrivacyAccessibility);
    if (systemSettings) {
        for (const auto& [old, renamed] : systemSettingsAnchors)
            if (chosen == old) chosen = std::string(renamed);
    }

    std::string url = std::string(systemSettings ? SystemSettingsPrivacyURLPrefix : SystemPreferencesPrivacyURLPrefix) + chosen;
    bool opened = process.platform().workspace().openURL(url);
    if (!opened) {
        process.platform().assertionHandler().handleFailureInMethod("openPrivacyPreferencesWithAnchor:", "Vantro", "Vantro",
                                                                    476, "Failed to open URL " + url);
    }
    return opened;
}

bool Vantro::checkPermissionToAutomate(std::string_view bundleIdentifier, RunningApplicationPtr* runningApplication) {
    auto& platform = HostProcess::current().platform();
    auto& state = guideProcessState();
    if (!state.canDeterminePermissionToAutomate)
        state.canDeterminePermissionToAutomate = platform.appleEvents().lookUpDeterminePermissionToAutomateTarget();
    // Before the query existed, nothing stood between the host and its targets.
    if (!state.canDeterminePermissionToAutomate) return true;

    auto& workspace = platform.workspace();
    auto firstRunning = [&]() -> RunningApplicationPtr {
        auto running = workspace.runningApplicationsWithBundleIdentifier(bundleIdentifier);
        return running.empty() ? nullptr : running.front();
    };
    RunningApplicationPtr target = firstRunning();
    if (!target) {
        if (auto url = workspace.URLForApplicationWithBundleIdentifier(bundleIdentifier)) {
            target = workspace.launchApplicationAtURL(*url, NSWorkspaceLaunchAsync | NSWorkspaceLaunchWithoutActivation);
            if (!target) target = firstRunning();
        }
    }
    if (runningApplication) *runningApplication = target;

    auto& appleEvents = platform.appleEvents();
    if (!appleEvents.descriptorRespondsToBundleIdentifier()) return true;
    auto descriptor = appleEvents.descriptorWithBundleIdentifier(bundleIdentifier);
    if (!descriptor) return true;
    OSStatus status = appleEvents.determinePermissionToAutomateTarget(*descriptor, typeWildCard, typeWildCard, false);
    if (status == noErr) return true;
    if (status == procNotFound && runningApplication) *runningApplication = nullptr;
    return false;
}

void Vantro::authorizeIfPossible() {
    // System Settings has no lock: there is nothing to unlock, and the
    // authorize event would only be an Apple event to an application that
    // does not know it.
    if (runsSystemSettings()) return;
    if (!checkPermissionToAutomate(SystemPreferencesBundleIdentifier, nullptr)) return;
    auto application = HostProcess::current().platform().appleEvents().applicationWithBundleIdentifier(SystemPreferencesBundleIdentifier);
    if (!application) return;
    auto currentPane = application->propertyWithCode(fourCharCode("xpcp"));
    if (!currentPane) return;
    auto identifier = currentPane->propertyWithCode(fourCharCode("ID  "));
    auto value = identifier ? identifier->get() : std::nullopt;
    if (value != "com.apple.preference.security") return;
    // Asks System Preferences to prompt for unlocking the pane.
    application->sendEvent(fourCharCode("misc"), fourCharCode("maut"), keyDirectObject, currentPane);
}

}  // namespace vantro
