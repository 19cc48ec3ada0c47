#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Platform/HostProcess.h"
#include "Platform/Value.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

class Vantro;

// What the guide keeps once per process.
struct GuideProcessState {
    std::once_flag sharedOnce;
    std::shared_ptr<Vantro> shared;
    // The "Prompts" table, once it has been read.
    std::optional<Value> promptTable;
    // The six folder and volume identifiers that open the Privacy tab itself.
    std::optional<std::set<std::string, std::less<>>> folderAnchors;
    // Whether AEDeterminePermissionToAutomateTarget was found; a failed
    // look-up is not remembered.
    bool canDeterminePermissionToAutomate = false;
};

inline GuideProcessState& guideProcessState() { return HostProcess::current().value<GuideProcessState>(); }

// From macOS 13 the settings application is System Settings: a sidebar
// window whose privacy lists sit on the "Privacy & Security" page, each in a
// sub-pane of its own, with no lock, and whose window title names the page or
// sub-pane shown. Where System Preferences' steps would mislead there, the
// guide takes the steps that work on System Settings.
inline bool runsSystemSettings() { return flooredAppKitVersion() >= NSAppKitVersionNumber13_0; }

// The privacy pane's URL without its anchor. System Settings still accepts
// System Preferences' form, but reports of it landing on the wrong page or
// none (15, 26) make the form of System Settings' own privacy extension the
// one used there; that form is reported to open the sub-pane on 13 to 26,
// and on 27 it is assumed to (unconfirmed).
inline constexpr std::string_view SystemPreferencesPrivacyURLPrefix = "x-apple.systempreferences:com.apple.preference.security?";
inline constexpr std::string_view SystemSettingsPrivacyURLPrefix =
    "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?";

// The context of the guide's observation of its overlay window's "visible",
// which it announces again as "isOverlayShown".
inline constexpr char GuideOverlayVisibleContext[] = "windowController.window.visible";

}  // namespace vantro
