#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro {

namespace {

// The usage descriptions the system requires before it is asked for a
// category: a process that asks without one is ended by the privacy service
// ("Namespace TCC"), and from macOS 14 EventKit's full-access requests fail
// without a prompt when their own key is missing. Required from 10.14
// (Bluetooth's key from macOS 11, the release Apple gives for it); an
// earlier system asks without looking.
struct UsageDescription {
    PrivacyCategoryIdentifier identifier;
    std::string_view key;
    // The key of the full-access request, where the category has one.
    std::string_view fullAccessKey;
    // Required where the AppKit version's whole part is above this.
    double requiredAbove;
};

constexpr UsageDescription usageDescriptions[] = {
    {VantroPrivacyCalendars, "NSCalendarsUsageDescription", "NSCalendarsFullAccessUsageDescription", 1561},
    {VantroPrivacyReminders, "NSRemindersUsageDescription", "NSRemindersFullAccessUsageDescription", 1561},
    {VantroPrivacyContacts, "NSContactsUsageDescription", {}, 1561},
    {VantroPrivacyPhotos, "NSPhotoLibraryUsageDescription", {}, 1561},
    {VantroPrivacyCamera, "NSCameraUsageDescription", {}, 1561},
    {VantroPrivacyMicrophone, "NSMicrophoneUsageDescription", {}, 1561},
    {VantroPrivacyBluetooth, "NSBluetoothAlwaysUsageDescription", {}, 1894},
};

}  // namespace

std::optional<std::string_view> VantroRequestStatusCenter::usageDescriptionKey(std::string_view identifier, bool fullAccess) {
    for (const auto& description : usageDescriptions) {
        if (identifier != description.identifier) continue;
        if (flooredAppKitVersion() <= description.requiredAbove) return std::nullopt;
        return fullAccess && !description.fullAccessKey.empty() ? description.fullAccessKey : description.key;
    }
    return std::nullopt;
}

bool VantroRequestStatusCenter::hostDeclaresUsageDescription(std::string_view identifier, bool fullAccess) {
    auto key = usageDescriptionKey(identifier, fullAccess);
    if (!key) return true;
    auto& platform = HostProcess::current().platform();
    auto bundle = platform.bundles().mainBundle();
    auto value = bundle ? bundle->objectForInfoDictionaryKey(*key) : std::nullopt;
    if (value && value->isString()) return true;
    platform.log().log("Privacy category usage description missing from Info.plist: " + std::string(*key));
    return false;
}

}  // namespace vantro
