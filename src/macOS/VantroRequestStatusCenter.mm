// The status center's Objective-C twin. Each instance owns a core status
// center; the per-service operations of the core are overridden by a bridge
// that sends the Objective-C message, so an Objective-C subclass's
// redefinition is the one that dispatch by identifier runs. The default
// Objective-C methods run the core's own operation.
//
// The shared instance's twin wraps the core's shared instance, so the host,
// the permission list and the core's own callers share one status center.

#import <Vantro/VantroRequestStatusCenter.h>

#include <dispatch/dispatch.h>

#include <memory>
#include <string>

#include "StatusCenter/VantroRequestStatusCenter.h"
#include "macOS/MacFoundation.h"
#include "macOS/MacPlatform.h"

using CoreStatusCenter = vantro::VantroRequestStatusCenter;

@interface VantroRequestStatusCenter ()
- (instancetype)initWithCore:(std::shared_ptr<CoreStatusCenter>)core NS_DESIGNATED_INITIALIZER;
@end

// The Objective-C class under a name of its own: inside the core's subclass
// below, "VantroRequestStatusCenter" names the core class.
typedef VantroRequestStatusCenter VantroStatusCenterTwin;

namespace {

// Sends each per-service operation to the Objective-C twin while it exists,
// and runs the core's own once it is gone (an answer of the system may
// outlive the twin).
class BridgedStatusCenter final : public CoreStatusCenter {
public:
    using CoreStatusCenter::CoreStatusCenter;
    void attach(VantroStatusCenterTwin* twin) { twin_ = twin; }

#define VANTRO_BRIDGE_STATUS(name)                                                 \
    vantro::PrivacyAuthorizationStatus name() override {                           \
        VantroStatusCenterTwin* twin = twin_;                                   \
        return twin ? [twin name] : CoreStatusCenter::name();                      \
    }
#define VANTRO_BRIDGE_REQUEST(name, selector)                                      \
    void name(bool silent) override {                                              \
        VantroStatusCenterTwin* twin = twin_;                                   \
        if (twin)                                                                  \
            [twin selector:silent];                                                \
        else                                                                       \
            CoreStatusCenter::name(silent);                                        \
    }

    VANTRO_BRIDGE_STATUS(fullDiskAccessAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestFullDiskAccessAuthorization, requestFullDiskAccessAuthorization)
    VANTRO_BRIDGE_STATUS(photosAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestPhotosAuthorization, requestPhotosAuthorization)
    VANTRO_BRIDGE_STATUS(calendarsAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestCalendarsAuthorization, requestCalendarsAuthorization)
    VANTRO_BRIDGE_STATUS(remindersAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestRemindersAuthorization, requestRemindersAuthorization)
    VANTRO_BRIDGE_STATUS(contactsAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestContactsAuthorization, requestContactsAuthorization)
    VANTRO_BRIDGE_STATUS(desktopFolderAuthorizationStatus)
    VANTRO_BRIDGE_STATUS(documentsFolderAuthorizationStatus)
    VANTRO_BRIDGE_STATUS(downloadsFolderAuthorizationStatus)
    VANTRO_BRIDGE_STATUS(foldersAndVolumesAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestDesktopFolderAuthorization, requestDesktopFolderAuthorization)
    VANTRO_BRIDGE_REQUEST(requestDocumentsFolderAuthorization, requestDocumentsFolderAuthorization)
    VANTRO_BRIDGE_REQUEST(requestDownloadsFolderAuthorization, requestDownloadsFolderAuthorization)
    VANTRO_BRIDGE_REQUEST(requestAndFoldersAuthorization, requestAndFoldersAuthorization)
    VANTRO_BRIDGE_STATUS(accessibilityAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestAccessibilityAuthorizationStatus, requestAccessibilityAuthorizationStatus)
    VANTRO_BRIDGE_STATUS(screenRecordingAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestScreenRecordingAuthorization, requestScreenRecordingAuthorization)
    VANTRO_BRIDGE_STATUS(inputMonitoringAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestInputMonitoringAuthorization, requestInputMonitoringAuthorization)
    VANTRO_BRIDGE_STATUS(cameraAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestCameraAuthorization, requestCameraAuthorization)
    VANTRO_BRIDGE_STATUS(microphoneAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestMicrophoneAuthorization, requestMicrophoneAuthorization)
    VANTRO_BRIDGE_STATUS(bluetoothAuthorizationStatus)
    VANTRO_BRIDGE_REQUEST(requestBluetoothAuthorization, requestBluetoothAuthorization)

#undef VANTRO_BRIDGE_STATUS
#undef VANTRO_BRIDGE_REQUEST

    void alertOpenPrivacyPreferences(std::string_view identifier) override {
        VantroStatusCenterTwin* twin = twin_;
        if (twin)
            [twin alertOpenPrivacyPreferences:vantro::mac::toNSString(identifier)];
        else
            CoreStatusCenter::alertOpenPrivacyPreferences(identifier);
    }

private:
    __weak VantroStatusCenterTwin* twin_ = nil;
};

std::optional<std::string_view> identifierView(NSString* identifier, std::string& storage) {
    return vantro::mac::toOptionalView(identifier, storage);
}

}  // namespace

@implementation VantroRequestStatusCenter {
    std::shared_ptr<CoreStatusCenter> _core;
}

+ (VantroRequestStatusCenter*)sharedRequestStatusCenter {
    static VantroRequestStatusCenter* shared;
    static dispatch_once_t once;
    dispatch_once(&once, ^{
      vantro::mac::installHostProcess();
      shared = [[VantroRequestStatusCenter alloc] initWithCore:CoreStatusCenter::sharedRequestStatusCenter()];
    });
    return shared;
}

- (instancetype)init {
    vantro::mac::installHostProcess();
    if ((self = [super init])) {
        auto core = vantro::makeShared<BridgedStatusCenter>();
        core->attach(self);
        _core = std::move(core);
    }
    return self;
}

- (instancetype)initWithCore:(std::shared_ptr<CoreStatusCenter>)core {
    if ((self = [super init])) _core = std::move(core);
    return self;
}

+ (BOOL)hasFullDiskAccess {
    vantro::mac::installHostProcess();
    return CoreStatusCenter::hasFullDiskAccess();
}

+ (BOOL)checkHasFullDiskAccess {
    vantro::mac::installHostProcess();
    return CoreStatusCenter::checkHasFullDiskAccess();
}

+ (PrivacyAuthorizationStatus)filesAndFoldersAuthorizationStatus:(PrivacyCategoryIdentifier)identifier {
    vantro::mac::installHostProcess();
    std::string storage;
    return static_cast<PrivacyAuthorizationStatus>(
        CoreStatusCenter::filesAndFoldersAuthorizationStatus(identifierView(identifier, storage)));
}

+ (NSString*)photosSystemLibraryPath {
    vantro::mac::installHostProcess();
    auto path = CoreStatusCenter::photosSystemLibraryPath();
    return path ? vantro::mac::toNSString(*path) : nil;
}

+ (void)loadPhotosFramework {
    vantro::mac::installHostProcess();
    CoreStatusCenter::loadPhotosFramework();
}

+ (void)loadAssetsLibraryServicesFramework {
    vantro::mac::installHostProcess();
    CoreStatusCenter::loadAssetsLibraryServicesFramework();
}

+ (NSString*)userHomeDirectory {
    vantro::mac::installHostProcess();
    auto home = CoreStatusCenter::userHomeDirectory();
    return home ? vantro::mac::toNSString(*home) : nil;
}

+ (BOOL)isApplicationSandboxed {
    vantro::mac::installHostProcess();
    return CoreStatusCenter::isApplicationSandboxed();
}

+ (BOOL)servesNewerPrivacyCategories {
    vantro::mac::installHostProcess();
    return CoreStatusCenter::servesNewerPrivacyCategories();
}

+ (void)setServesNewerPrivacyCategories:(BOOL)serves {
    vantro::mac::installHostProcess();
    CoreStatusCenter::setServesNewerPrivacyCategories(serves);
}

- (PrivacyAuthorizationStatus)privacyAuthorizationStatusForIdentifier:(PrivacyCategoryIdentifier)identifier {
    std::string storage;
    return static_cast<PrivacyAuthorizationStatus>(
        _core->privacyAuthorizationStatusForIdentifier(identifierView(identifier, storage)));
}

- (PrivacyAuthorizationRequestType)authorizationRequestTypeForIdentifier:(PrivacyCategoryIdentifier)identifier {
    std::string storage;
    return static_cast<PrivacyAuthorizationRequestType>(
        _core->authorizationRequestTypeForIdentifier(identifierView(identifier, storage)));
}

- (void)requestPrivacyAuthorizationForIdentifier:(PrivacyCategoryIdentifier)identifier silent:(BOOL)silent {
    std::string storage;
    _core->requestPrivacyAuthorizationForIdentifier(identifierView(identifier, storage), silent);
}

// The core's own operation, never the bridge: the bridge is what sent us here.
#define VANTRO_CORE_STATUS(name)                                                   \
    -(PrivacyAuthorizationStatus)name {                                            \
        return static_cast<PrivacyAuthorizationStatus>(_core->CoreStatusCenter::name()); \
    }
#define VANTRO_CORE_REQUEST(name)                                                  \
    -(void)name : (BOOL)silent {                                                   \
        _core->CoreStatusCenter::name(silent);                                     \
    }

VANTRO_CORE_STATUS(fullDiskAccessAuthorizationStatus)
VANTRO_CORE_REQUEST(requestFullDiskAccessAuthorization)
VANTRO_CORE_STATUS(photosAuthorizationStatus)
VANTRO_CORE_REQUEST(requestPhotosAuthorization)
VANTRO_CORE_STATUS(calendarsAuthorizationStatus)
VANTRO_CORE_REQUEST(requestCalendarsAuthorization)
VANTRO_CORE_STATUS(remindersAuthorizationStatus)
VANTRO_CORE_REQUEST(requestRemindersAuthorization)
VANTRO_CORE_STATUS(contactsAuthorizationStatus)
VANTRO_CORE_REQUEST(requestContactsAuthorization)
VANTRO_CORE_STATUS(desktopFolderAuthorizationStatus)
VANTRO_CORE_STATUS(documentsFolderAuthorizationStatus)
VANTRO_CORE_STATUS(downloadsFolderAuthorizationStatus)
VANTRO_CORE_STATUS(foldersAndVolumesAuthorizationStatus)
VANTRO_CORE_REQUEST(requestDesktopFolderAuthorization)
VANTRO_CORE_REQUEST(requestDocumentsFolderAuthorization)
VANTRO_CORE_REQUEST(requestDownloadsFolderAuthorization)
VANTRO_CORE_REQUEST(requestAndFoldersAuthorization)
VANTRO_CORE_STATUS(accessibilityAuthorizationStatus)
VANTRO_CORE_REQUEST(requestAccessibilityAuthorizationStatus)
VANTRO_CORE_STATUS(screenRecordingAuthorizationStatus)
VANTRO_CORE_REQUEST(requestScreenRecordingAuthorization)
VANTRO_CORE_STATUS(inputMonitoringAuthorizationStatus)
VANTRO_CORE_REQUEST(requestInputMonitoringAuthorization)
VANTRO_CORE_STATUS(cameraAuthorizationStatus)
VANTRO_CORE_REQUEST(requestCameraAuthorization)
VANTRO_CORE_STATUS(microphoneAuthorizationStatus)
VANTRO_CORE_REQUEST(requestMicrophoneAuthorization)
VANTRO_CORE_STATUS(bluetoothAuthorizationStatus)
VANTRO_CORE_REQUEST(requestBluetoothAuthorization)

#undef VANTRO_CORE_STATUS
#undef VANTRO_CORE_REQUEST

- (void)alertOpenPrivacyPreferences:(PrivacyCategoryIdentifier)identifier {
    _core->CoreStatusCenter::alertOpenPrivacyPreferences(vantro::mac::toString(identifier));
}

- (BOOL)allowPotentiallyVerboseRechecks {
    return _core->allowPotentiallyVerboseRechecks();
}

- (void)setAllowPotentiallyVerboseRechecks:(BOOL)allow {
    _core->setAllowPotentiallyVerboseRechecks(allow);
}

- (BOOL)canRelyOnPLPrivacyValue {
    return _core->canRelyOnPLPrivacyValue();
}

- (void)setCanRelyOnPLPrivacyValue:(BOOL)canRely {
    _core->setCanRelyOnPLPrivacyValue(canRely);
}

@end
