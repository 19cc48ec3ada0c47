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

// The per-user privacy database's folder: the first directory above. When
// readable it always holds the database itself, so it is never empty.
constexpr std::size_t privacyDatabaseFolder = 0;

// How the protected directories are read on releases that answer
// differently from the ones Full Disk Access was made on.
//
// Up to 15 the probe is the plain one: an EPERM anywhere means refused, any
// existing directory without one means held.
//
// From 26 an empty listing proves nothing: a refused listing has been
// reported to come back empty instead of failing (15.7.9), which the plain
// probe takes for access. There only a listing with something in it counts
// as access; an empty listing of the privacy database's folder, never empty
// when readable, counts as refused; other empty listings decide nothing.
//
// From 27 the privacy database's folder is refused even with Full Disk
// Access (reported; one report has it gone): its answer, refused or missing,
// decides nothing, so it is not listed at all. The other locations decide;
// without access some of them answer ENOENT rather than EPERM, which decides
// nothing, while Safari's, Mail's and Messages' still refuse with EPERM.
struct ProbeRules {
    bool emptyListingProvesNothing;
    bool privacyDatabaseFolderDecides;
};

ProbeRules probeRules() {
    const double appKit = flooredAppKitVersion();
    return {appKit >= NSAppKitVersionNumber26_0, appKit < NSAppKitVersionNumber27_0};
}

// The probe of 26 and later; see ProbeRules.
bool probeDistrustingEmptyListings(const std::vector<std::string>& directories, const ProbeRules& rules) {
    auto& fileSystem = HostProcess::current().platform().fileSystem();
    bool sawContents = false;
    for (std::size_t i = 0; i < directories.size(); ++i) {
        const bool neverEmpty = i == privacyDatabaseFolder;
        if (neverEmpty && !rules.privacyDatabaseFolderDecides) continue;
        bool isDirectory = false;
        if (!fileSystem.fileExistsAtPath(directories[i], &isDirectory) || !isDirectory) continue;
        PlatformError error;
        auto listing = fileSystem.contentsOfDirectoryAtPath(directories[i], &error);
        if (!listing) {
            if (isPrivacyRefusal(error)) return false;
            continue;
        }
        if (!listing->empty()) sawContents = true;
        else if (neverEmpty) return false;
    }
    return sawContents;
}

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
    const ProbeRules rules = probeRules();
    if (rules.emptyListingProvesNothing) return probeDistrustingEmptyListings(state.directoriesToCheck, rules);
    // An account where none of the directories exists proves nothing: false.
    return probeDirectories(state.directoriesToCheck) == DirectoryProbeVerdict::Readable;
}

}  // namespace vantro
