#include <memory>
#include <mutex>

#include "Platform/HostProcess.h"
#include "StatusCenter/DirectoryProbe.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

namespace {

// The verdict shared by the calls of one run-loop pass. It lives apart from
// the process state so that the timer's block can hold it weakly.
struct FullDiskAccessCache {
    bool needsCheck = true;
    bool hasFullDiskAccess = false;
    std::shared_ptr<Timer> timer;
};

struct FullDiskAccessProcessState {
    std::once_flag directoriesOnce;
    std::vector<std::string> directoriesToCheck;
    std::shared_ptr<FullDiskAccessCache> cache = std::make_shared<FullDiskAccessCache>();
};

// The directories that the system's privacy protection opens only to an
// application with Full Disk Access. The order decides only which refusal is
// met first, never the verdict.
const std::vector<std::string_view> protectedDirectories = {
    "~/Library/Application Support/com.apple.TCC/",
    "~/Library/Containers/com.apple.mail/",
    "~/Library/Containers/com.apple.Safari/",
    "~/Library/Cookies/",
    "~/Library/Mail/",
    "~/Library/Messages/",
    "~/Library/Metadata/CoreSpotlight/",
    "~/Library/Safari/",
};

}  // namespace

bool VantroRequestStatusCenter::hasFullDiskAccess() {
    // Full Disk Access exists from 10.14 (AppKit 1671) on.
    if (flooredAppKitVersion() <= 1561.0) return true;
    // A sandboxed host could not list the directories anyway, and is not to be
    // guided to Full Disk Access: it counts as holding it.
    if (isApplicationSandboxed()) return true;

    auto& process = HostProcess::current();
    auto cache = process.value<FullDiskAccessProcessState>().cache;
    // A zero-interval timer in the default mode fires on the next pass of the
    // run loop, so every call of this pass shares one probe. It is set before
    // the probe runs; while a modal alert runs the loop in its own mode it
    // does not fire and the verdict stands.
    if (!cache->timer) {
        std::weak_ptr<FullDiskAccessCache> weakCache = cache;
        cache->timer = process.platform().runLoop().scheduledTimer(0, false, [weakCache](Timer&) {
            if (auto strong = weakCache.lock()) {
                strong->needsCheck = true;
                strong->timer.reset();
            }
        });
    }
    if (cache->needsCheck) {
        cache->hasFullDiskAccess = checkHasFullDiskAccess();
        cache->needsCheck = false;
    }
    return cache->hasFullDiskAccess;
}

bool VantroRequestStatusCenter::checkHasFullDiskAccess() {
    auto& state = HostProcess::current().value<FullDiskAccessProcessState>();
    std::call_once(state.directoriesOnce, [&] { state.directoriesToCheck = standardizedDirectories(protectedDirectories); });
    // An account where none of the directories exists proves nothing: false.
    return probeDirectories(state.directoriesToCheck) == DirectoryProbeVerdict::Readable;
}

}  // namespace vantro
