#include "StatusCenter/PrivacyCategoryCatalog.h"

#include <iterator>
#include <optional>

#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro {

namespace {

constexpr std::string_view PrivacyCategoryLabelsTable = "PrivacyCategoryLabels";

// Made on a nil test without a once-only guard: everything here runs on the
// main thread.
struct PrivacyCategoryCatalogProcessState {
    std::optional<std::set<std::string, std::less<>>> supportedPrivacyCategories;
};

}  // namespace

const std::set<std::string, std::less<>>& supportedPrivacyCategories() {
    auto& state = HostProcess::current().value<PrivacyCategoryCatalogProcessState>();
    if (!state.supportedPrivacyCategories) {
        // Strictly greater than 1671: folder protection exists (10.15 on).
        // Strictly greater than 1561: Full Disk Access and Photos protection
        // exist (10.14 on). 1561.x and 1671.x themselves fall below.
        // The first ten exist from 10.14 on, all fifteen from 10.15 on.
        constexpr PrivacyCategoryIdentifier listable[] = {
            VantroPrivacyFullDiskAccess,   VantroPrivacyAutomation,      VantroPrivacyAccessibility,
            VantroPrivacyAssistive,        VantroPrivacyLocationServices, VantroPrivacyContacts,
            VantroPrivacyDiagnostics,      VantroPrivacyCalendars,       VantroPrivacyReminders,
            VantroPrivacyPhotos,           VantroPrivacyDesktopFolder,   VantroPrivacyDocumentsFolder,
            VantroPrivacyDownloadsFolder,  VantroPrivacyNetworkVolume,   VantroPrivacyRemovableVolume};
        constexpr PrivacyCategoryIdentifier beforeMojave[] = {VantroPrivacyContacts, VantroPrivacyCalendars,
                                                              VantroPrivacyReminders};
        const double version = flooredAppKitVersion();
        std::set<std::string, std::less<>> members;
        if (version > 1561) {
            std::size_t count = version > 1671 ? std::size(listable) : 10;
            members.insert(std::begin(listable), std::begin(listable) + count);
        } else {
            members.insert(std::begin(beforeMojave), std::end(beforeMojave));
        }
        // A sandboxed host can never be given Full Disk Access by dragging it
        // into the list, so the list does not offer it.
        if (VantroRequestStatusCenter::isApplicationSandboxed()) members.erase(std::string(VantroPrivacyFullDiskAccess));
        state.supportedPrivacyCategories = std::move(members);
    }
    return *state.supportedPrivacyCategories;
}

bool isListablePrivacyCategory(std::string_view identifier) {
    // The newer categories join only once the host has turned them on, and
    // only where the running system has them.
    const bool newer = newerPrivacyCategoriesServed() && systemHasNewerPrivacyCategory(identifier);
    return newer || supportedPrivacyCategories().contains(identifier);
}

std::vector<std::string> listablePrivacyCategories() {
    std::vector<std::string> identifiers;
    for (auto identifier : VantroPrivacyAllIdentifiers)
        if (isListablePrivacyCategory(identifier)) identifiers.emplace_back(identifier);
    for (auto identifier : VantroPrivacyNewerIdentifiers)
        if (isListablePrivacyCategory(identifier)) identifiers.emplace_back(identifier);
    return identifiers;
}

std::string privacyCategoryLabel(std::string_view identifier) {
    auto bundle = HostProcess::current().platform().bundles().frameworkBundle();
    return bundle->localizedString(identifier, identifier, PrivacyCategoryLabelsTable);
}

}  // namespace vantro
