#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro {

namespace {

Platform& platform() { return HostProcess::current().platform(); }

// AVAuthorizationStatus and CBManagerAuthorization: authorized (Bluetooth's
// "allowed always") gives 2, denied 1, and not determined, restricted and
// any later code 0, as for the other services the system asks for itself.
PrivacyAuthorizationStatus statusForDeviceCode(long code) {
    switch (code) {
    case ServiceAuthorizationStatusAuthorized: return PrivacyAuthorizationStatusAuthorized;
    case ServiceAuthorizationStatusDenied: return PrivacyAuthorizationStatusDenied;
    default: return PrivacyAuthorizationStatusNotDetermined;
    }
}

// A system that lacks a category's call guards nothing with it: its status
// reads as authorized, and there is nothing to request.
constexpr PrivacyAuthorizationStatus StatusWithoutTheCall = PrivacyAuthorizationStatusAuthorized;

}  // namespace

bool VantroRequestStatusCenter::servesNewerPrivacyCategories() { return newerPrivacyCategoriesServed(); }

void VantroRequestStatusCenter::setServesNewerPrivacyCategories(bool serves) { setNewerPrivacyCategoriesServed(serves); }

PrivacyAuthorizationStatus VantroRequestStatusCenter::screenRecordingAuthorizationStatus() {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyScreenRecording)) return PrivacyAuthorizationStatusAuthorized;
    auto access = platform().services().preflightScreenCaptureAccess();
    if (!access) return StatusWithoutTheCall;
    if (*access) return PrivacyAuthorizationStatusAuthorized;
    // The system tells only whether access is there. Once the host has made
    // the system's request, access still missing is a refusal; before, the
    // user has not been asked.
    return platform().defaults().boolForKey(kScreenRecordingAccessRequested) ? PrivacyAuthorizationStatusDenied
                                                                             : PrivacyAuthorizationStatusNotDetermined;
}

void VantroRequestStatusCenter::requestScreenRecordingAuthorization(bool silent) {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyScreenRecording)) return;
    auto& services = platform().services();
    auto access = services.preflightScreenCaptureAccess();
    if (!access || *access) return;
    auto& defaults = platform().defaults();
    // The first request is the system's own: its prompt, shown once per
    // application, offers the settings and lists the host there. Later
    // requests would show nothing, so the guide leads the user there instead.
    if (!defaults.boolForKey(kScreenRecordingAccessRequested)) {
        services.requestScreenCaptureAccess();
        defaults.setBool(true, kScreenRecordingAccessRequested);
        return;
    }
    if (!silent) Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyScreenRecording);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::inputMonitoringAuthorizationStatus() {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyInputMonitoring)) return PrivacyAuthorizationStatusAuthorized;
    auto access = platform().services().hidCheckAccess(kIOHIDRequestTypeListenEvent);
    if (!access) return StatusWithoutTheCall;
    switch (*access) {
    case kIOHIDAccessTypeGranted: return PrivacyAuthorizationStatusAuthorized;
    case kIOHIDAccessTypeDenied: return PrivacyAuthorizationStatusDenied;
    default: return PrivacyAuthorizationStatusNotDetermined;
    }
}

void VantroRequestStatusCenter::requestInputMonitoringAuthorization(bool silent) {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyInputMonitoring)) return;
    auto& services = platform().services();
    auto access = services.hidCheckAccess(kIOHIDRequestTypeListenEvent);
    if (!access || *access == kIOHIDAccessTypeGranted) return;
    // Refused before: the system would not ask again, so the guide leads the
    // user to the switch. Undecided: the system's own prompt, which waits
    // for the user.
    if (*access == kIOHIDAccessTypeDenied) {
        if (!silent) Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyInputMonitoring);
        return;
    }
    // The system's request blocks its thread until the user answers, so it
    // is made on a background queue; its answer comes back to the main queue
    // as every system answer does. One request waits for the user at a time:
    // a second click meanwhile asks nothing more.
    if (inputMonitoringRequestPending_) return;
    inputMonitoringRequestPending_ = true;
    auto* runLoop = &platform().runLoop();
    runLoop->dispatchAsyncBackground([self = retainedSelf(), services = &services, runLoop] {
        services->hidRequestAccess(kIOHIDRequestTypeListenEvent);
        runLoop->dispatchAsyncMain([self] { self->inputMonitoringRequestPending_ = false; });
    });
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::captureDeviceStatus(PrivacyCategoryIdentifier identifier,
                                                                          std::string_view mediaType) {
    if (!systemHasNewerPrivacyCategory(identifier)) return PrivacyAuthorizationStatusAuthorized;
    auto code = platform().services().captureDeviceAuthorizationStatus(mediaType);
    return code ? statusForDeviceCode(*code) : StatusWithoutTheCall;
}

void VantroRequestStatusCenter::requestCaptureDevice(PrivacyCategoryIdentifier identifier, std::string_view mediaType,
                                                     bool silent) {
    if (!systemHasNewerPrivacyCategory(identifier)) return;
    if (!hostDeclaresUsageDescription(identifier)) return;
    auto* runLoop = &platform().runLoop();
    // As for Calendars: the answer touches nothing until it is back on the
    // main queue, and keeps the status center alive until then.
    platform().services().requestCaptureDeviceAccess(
        mediaType, [self = retainedSelf(), runLoop, identifier, silent](bool granted) {
            runLoop->dispatchAsyncMain([self, identifier, granted, silent] {
                if (!granted && !silent) self->alertOpenPrivacyPreferences(identifier);
            });
        });
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::cameraAuthorizationStatus() {
    return captureDeviceStatus(VantroPrivacyCamera, AVMediaTypeVideo);
}

void VantroRequestStatusCenter::requestCameraAuthorization(bool silent) {
    requestCaptureDevice(VantroPrivacyCamera, AVMediaTypeVideo, silent);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::microphoneAuthorizationStatus() {
    return captureDeviceStatus(VantroPrivacyMicrophone, AVMediaTypeAudio);
}

void VantroRequestStatusCenter::requestMicrophoneAuthorization(bool silent) {
    requestCaptureDevice(VantroPrivacyMicrophone, AVMediaTypeAudio, silent);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::bluetoothAuthorizationStatus() {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyBluetooth)) return PrivacyAuthorizationStatusAuthorized;
    auto code = platform().services().bluetoothAuthorization();
    return code ? statusForDeviceCode(*code) : StatusWithoutTheCall;
}

void VantroRequestStatusCenter::requestBluetoothAuthorization(bool silent) {
    if (!systemHasNewerPrivacyCategory(VantroPrivacyBluetooth)) return;
    if (!hostDeclaresUsageDescription(VantroPrivacyBluetooth)) return;
    auto* runLoop = &platform().runLoop();
    platform().services().requestBluetoothAccess([self = retainedSelf(), runLoop, silent](long authorization) {
        runLoop->dispatchAsyncMain([self, authorization, silent] {
            if (authorization != ServiceAuthorizationStatusAuthorized && !silent)
                self->alertOpenPrivacyPreferences(VantroPrivacyBluetooth);
        });
    });
}

}  // namespace vantro
