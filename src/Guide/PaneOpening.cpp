#include <set>
#include <string>

#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"

namespace vantro {

namespace {

struct PaneOpeningProcessState {
    std::optional<std::set<std::string, std::less<>>> folderAnchors;
};

}  // namespace

bool Vantro::openPrivacyPreferencesWithAnchor(std::optional<std::string_view> anchor) {
    auto& process = HostProcess::current();
    auto& state = process.value<PaneOpeningProcessState>();
    std::string chosen = anchor ? std::string(*anchor) : std::string("Privacy");
    if (!state.folderAnchors) {
        state.folderAnchors = std::set<std::string, std::less<>>{
            std::string(VantroPrivacyFilesAndFolders),  std::string(VantroPrivacyDesktopFolder),
            std::string(VantroPrivacyDocumentsFolder),  std::string(VantroPrivacyDownloadsFolder),
            std::string(VantroPrivacyNetworkVolume),    std::string(VantroPrivacyRemovableVolume)};
    }
    // The folder and volume categories have no list of their own: they open
    // the Privacy tab at its start.
    if (state.folderAnchors->count(chosen)) chosen = "Privacy";
    if (flooredAppKitVersion() > 1265.0 && chosen == VantroPrivacyAssistive) chosen = std::string(VantroPrivacyAccessibility);

    std::string url = "x-apple.systempreferences:com.apple.preference.security?" + chosen;
    bool opened = process.platform().workspace().openURL(url);
    if (!opened) {
        process.platform().assertionHandler().handleFailureInMethod("openPrivacyPreferencesWithAnchor:", "Vantro", "Vantro",
                                                                    476, "Failed to open URL " + url);
    }
    return opened;
}

}  // namespace vantro
