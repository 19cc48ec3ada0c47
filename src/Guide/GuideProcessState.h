#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "Platform/HostProcess.h"
#include "Platform/Value.h"

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

// The context of the guide's observation of its overlay window's "visible",
// which it announces again as "isOverlayShown".
inline constexpr char GuideOverlayVisibleContext[] = "windowController.window.visible";

}  // namespace vantro
