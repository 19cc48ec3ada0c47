#include <map>
#include <mutex>

#include "Platform/HostProcess.h"
#include "StatusCenter/DirectoryProbe.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

namespace {

struct FilesAndFoldersProcessState {
    std::once_flag directoriesOnce;
    std::map<std::string, std::vector<std::string>, std::less<>> directoriesByIdentifier;
};

}  // namespace

PrivacyAuthorizationStatus VantroRequestStatusCenter::filesAndFoldersAuthorizationStatus(
    std::optional<std::string_view> identifier) {
    // The folders are protected from 10.15 (above AppKit 1671) on, one release
    // after Full Disk Access came.
    if (flooredAppKitVersion() <= 1671.0) return PrivacyAuthorizationStatusAuthorized;

    auto& state = HostProcess::current().value<FilesAndFoldersProcessState>();
    std::call_once(state.directoriesOnce, [&] {
        const std::pair<PrivacyCategoryIdentifier, std::string_view> folders[] = {
            {VantroPrivacyDesktopFolder, "~/Desktop/"},
            {VantroPrivacyDocumentsFolder, "~/Documents/"},
            {VantroPrivacyDownloadsFolder, "~/Downloads/"},
        };
        for (const auto& [category, path] : folders)
            state.directoriesByIdentifier.emplace(std::string(category), standardizedDirectories({path}));
    });

    std::vector<std::string> directories;
    if (identifier) {
        if (auto it = state.directoriesByIdentifier.find(*identifier); it != state.directoriesByIdentifier.end())
            directories = it->second;
    }
    switch (probeDirectories(directories)) {
    case DirectoryProbeVerdict::Refused: return PrivacyAuthorizationStatusDenied;
    case DirectoryProbeVerdict::Readable: return PrivacyAuthorizationStatusAuthorized;
    case DirectoryProbeVerdict::NoDirectory: break;
    }
    return PrivacyAuthorizationStatusNotDetermined;
}

}  // namespace vantro
