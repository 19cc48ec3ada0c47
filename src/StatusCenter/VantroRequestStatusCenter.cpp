#include "StatusCenter/VantroRequestStatusCenter.h"

#include <map>
#include <mutex>
#include <string>

#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro {

namespace {

using StatusMap = std::map<std::string, VantroRequestStatusCenter::StatusOperation, std::less<>>;
using RequestMap = std::map<std::string, VantroRequestStatusCenter::RequestOperation, std::less<>>;

// What the status center keeps once per process: the shared instance, the
// two dispatch maps (each built on its first use) and the request types
// (kept once they have been read).
struct StatusCenterProcessState {
    std::once_flag sharedOnce;
    std::shared_ptr<VantroRequestStatusCenter> shared;
    std::optional<StatusMap> statusOperations;
    std::optional<RequestMap> requestOperations;
    std::optional<Value::Dictionary> requestTypes;
};

StatusCenterProcessState& processState() { return HostProcess::current().value<StatusCenterProcessState>(); }

using S = VantroRequestStatusCenter;

StatusMap makeStatusMap() {
    return {
        {std::string(VantroPrivacyFullDiskAccess), &S::fullDiskAccessAuthorizationStatus},
        {std::string(VantroPrivacyPhotos), &S::photosAuthorizationStatus},
        {std::string(VantroPrivacyCalendars), &S::calendarsAuthorizationStatus},
        {std::string(VantroPrivacyContacts), &S::contactsAuthorizationStatus},
        {std::string(VantroPrivacyReminders), &S::remindersAuthorizationStatus},
        {std::string(VantroPrivacyFilesAndFolders), &S::foldersAndVolumesAuthorizationStatus},
        {std::string(VantroPrivacyDesktopFolder), &S::desktopFolderAuthorizationStatus},
        {std::string(VantroPrivacyDocumentsFolder), &S::documentsFolderAuthorizationStatus},
        {std::string(VantroPrivacyDownloadsFolder), &S::downloadsFolderAuthorizationStatus},
        {std::string(VantroPrivacyNetworkVolume), &S::foldersAndVolumesAuthorizationStatus},
        {std::string(VantroPrivacyRemovableVolume), &S::foldersAndVolumesAuthorizationStatus},
        {std::string(VantroPrivacyAssistive), &S::accessibilityAuthorizationStatus},
        {std::string(VantroPrivacyAccessibility), &S::accessibilityAuthorizationStatus},
        // Served only while the host has the newer categories on.
        {std::string(VantroPrivacyScreenRecording), &S::screenRecordingAuthorizationStatus},
        {std::string(VantroPrivacyInputMonitoring), &S::inputMonitoringAuthorizationStatus},
        {std::string(VantroPrivacyCamera), &S::cameraAuthorizationStatus},
        {std::string(VantroPrivacyMicrophone), &S::microphoneAuthorizationStatus},
        {std::string(VantroPrivacyBluetooth), &S::bluetoothAuthorizationStatus},
    };
}

RequestMap makeRequestMap() {
    return {
        {std::string(VantroPrivacyFullDiskAccess), &S::requestFullDiskAccessAuthorization},
        {std::string(VantroPrivacyPhotos), &S::requestPhotosAuthorization},
        {std::string(VantroPrivacyCalendars), &S::requestCalendarsAuthorization},
        {std::string(VantroPrivacyContacts), &S::requestContactsAuthorization},
        {std::string(VantroPrivacyReminders), &S::requestRemindersAuthorization},
        {std::string(VantroPrivacyFilesAndFolders), &S::requestAndFoldersAuthorization},
        {std::string(VantroPrivacyDesktopFolder), &S::requestDesktopFolderAuthorization},
        {std::string(VantroPrivacyDocumentsFolder), &S::requestDocumentsFolderAuthorization},
        {std::string(VantroPrivacyDownloadsFolder), &S::requestDownloadsFolderAuthorization},
        {std::string(VantroPrivacyNetworkVolume), &S::requestAndFoldersAuthorization},
        {std::string(VantroPrivacyRemovableVolume), &S::requestAndFoldersAuthorization},
        {std::string(VantroPrivacyAssistive), &S::requestAccessibilityAuthorizationStatus},
        {std::string(VantroPrivacyAccessibility), &S::requestAccessibilityAuthorizationStatus},
        // Served only while the host has the newer categories on.
        {std::string(VantroPrivacyScreenRecording), &S::requestScreenRecordingAuthorization},
        {std::string(VantroPrivacyInputMonitoring), &S::requestInputMonitoringAuthorization},
        {std::string(VantroPrivacyCamera), &S::requestCameraAuthorization},
        {std::string(VantroPrivacyMicrophone), &S::requestMicrophoneAuthorization},
        {std::string(VantroPrivacyBluetooth), &S::requestBluetoothAuthorization},
    };
}

void logUnsupported(std::optional<std::string_view> identifier) {
    std::string shown = identifier ? std::string(*identifier) : std::string("(null)");
    HostProcess::current().platform().log().log("Privacy category identifier not supported: " + shown);
}

// Finds an identifier's operation in a map, or nullptr for an unknown or
// missing identifier and for a newer category the host has not turned on.
template <class Map>
typename Map::mapped_type lookUp(const Map& map, std::optional<std::string_view> identifier) {
    if (!identifier || isPrivacyCategoryWithheld(*identifier)) return nullptr;
    auto it = map.find(*identifier);
    return it == map.end() ? nullptr : it->second;
}

}  // namespace

VantroRequestStatusCenter::VantroRequestStatusCenter(const SharedOwnership&) {}

std::shared_ptr<VantroRequestStatusCenter> VantroRequestStatusCenter::sharedRequestStatusCenter() {
    auto& state = processState();
    std::call_once(state.sharedOnce, [&] { state.shared = makeShared<VantroRequestStatusCenter>(); });
    return state.shared;
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::privacyAuthorizationStatusForIdentifier(
    std::optional<std::string_view> identifier) {
    auto& state = processState();
    if (!state.statusOperations) state.statusOperations = makeStatusMap();
    if (auto operation = lookUp(*state.statusOperations, identifier)) return (this->*operation)();
    logUnsupported(identifier);
    return PrivacyAuthorizationStatusNotDetermined;
}

bool VantroRequestStatusCenter::servesPrivacyAuthorizationStatusForIdentifier(std::string_view identifier) {
    auto& state = processState();
    if (!state.statusOperations) state.statusOperations = makeStatusMap();
    return lookUp(*state.statusOperations, identifier) != nullptr;
}

void VantroRequestStatusCenter::requestPrivacyAuthorizationForIdentifier(std::optional<std::string_view> identifier,
                                                                         bool silent) {
    auto& state = processState();
    if (!state.requestOperations) state.requestOperations = makeRequestMap();
    if (auto operation = lookUp(*state.requestOperations, identifier)) {
        (this->*operation)(silent);
        return;
    }
    logUnsupported(identifier);
}

PrivacyAuthorizationRequestType VantroRequestStatusCenter::authorizationRequestTypeForIdentifier(
    std::optional<std::string_view> identifier) {
    auto& state = processState();
    if (!state.requestTypes) {
        // A missing or unreadable resource is not remembered: the next call
        // looks for it again.
        auto& bundles = HostProcess::current().platform().bundles();
        if (auto path = bundles.frameworkBundle()->pathForResource("RequestTypes", "plist")) {
            if (auto plist = bundles.propertyListWithContentsOfFile(*path); plist && plist->dictionary())
                state.requestTypes = *plist->dictionary();
        }
    }
    // A newer category the host has not turned on reads as unlisted.
    if (!state.requestTypes || !identifier || isPrivacyCategoryWithheld(*identifier))
        return PrivacyAuthorizationRequestTypeRequest;
    auto it = state.requestTypes->find(*identifier);
    if (it == state.requestTypes->end()) return PrivacyAuthorizationRequestTypeRequest;
    auto type = it->second.integerValue();
    if (type == PrivacyAuthorizationRequestTypeGrant || type == PrivacyAuthorizationRequestTypeCheck) return type;
    return PrivacyAuthorizationRequestTypeRequest;
}

void VantroRequestStatusCenter::alertOpenPrivacyPreferences(std::string_view identifier) {
    auto& platform = HostProcess::current().platform();
    auto mainBundle = platform.bundles().mainBundle();
    auto text = [&](std::string_view key) { return mainBundle->localizedString(key, "", std::nullopt); };
    AlertSpec alert;
    alert.style = AlertStyle::Warning;
    alert.messageText = text("Permission Refused");
    alert.informativeText = text("Visit System Privacy Preferences to grant permission.");
    alert.buttons = {text("Open Privacy Preferences"), text("Cancel")};
    // The caller's string need not outlive the modal run: keep a copy.
    std::string anchor(identifier);
    if (platform.alerts().runModal(alert) == NSAlertFirstButtonReturn) Vantro::openPrivacyPreferencesWithAnchor(anchor);
}

}  // namespace vantro
