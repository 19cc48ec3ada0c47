// The privacy vocabulary: the categories, their statuses and request types,
// the keys of a category record and of the user defaults the status center
// writes, and the permission list's observation context.

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// A privacy category: the anchor name of its place in the Security & Privacy
/// preferences, such as "Privacy_Photos". Compared by content.
typedef NSString *PrivacyCategoryIdentifier NS_TYPED_EXTENSIBLE_ENUM;

FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyFullDiskAccess
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.fullDiskAccess);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyAutomation
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.automation);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyAssistive
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.assistive);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyLocationServices
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.locationServices);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyContacts
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.contacts);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyDiagnostics
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.diagnostics);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyCalendars
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.calendars);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyReminders
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.reminders);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyPhotos
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.photos);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyAccessibility
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.accessibility);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyFilesAndFolders
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.filesAndFolders);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyDesktopFolder
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.desktopFolder);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyDocumentsFolder
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.documentsFolder);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyDownloadsFolder
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.downloadsFolder);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyNetworkVolume
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.networkVolume);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyRemovableVolume
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.removableVolume);

/// The categories today's applications ask for. The framework serves them
/// only once the host has set VantroRequestStatusCenter's class property
/// servesNewerPrivacyCategories; until then they are answered as any
/// identifier it does not serve.
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyScreenRecording
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.screenRecording);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyInputMonitoring
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.inputMonitoring);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyCamera
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.camera);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyMicrophone
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.microphone);
FOUNDATION_EXPORT PrivacyCategoryIdentifier const VantroPrivacyBluetooth
    NS_SWIFT_NAME(PrivacyCategoryIdentifier.bluetooth);

/// Whether a category is granted. Only these three values are produced;
/// anything but authorized means not granted.
typedef NS_CLOSED_ENUM(NSInteger, PrivacyAuthorizationStatus) {
    /// Not granted: the user has not been asked, or the framework cannot tell.
    PrivacyAuthorizationStatusNotDetermined = 0,
    /// The user refused, or the permission is known to be missing.
    PrivacyAuthorizationStatusDenied = 1,
    /// Granted, or the category does not exist on this system.
    PrivacyAuthorizationStatusAuthorized = 2,
};

/// How a category is obtained; chooses the permission list's button title.
typedef NS_ENUM(NSInteger, PrivacyAuthorizationRequestType) {
    /// The system asks the user itself: "Request Permission".
    PrivacyAuthorizationRequestTypeRequest = 0,
    /// The user grants it by hand in the settings: "Grant Permission".
    PrivacyAuthorizationRequestTypeGrant = 1,
    /// It can only be checked: "Check Permission".
    PrivacyAuthorizationRequestTypeCheck = 2,
};

/// Keys of the permission list's category record.
FOUNDATION_EXPORT NSString *const PrivacyCategoryIdentifierKey;
FOUNDATION_EXPORT NSString *const PrivacyCategoryLabelKey;
FOUNDATION_EXPORT NSString *const PrivacyCategoryReasonKey;
FOUNDATION_EXPORT NSString *const PrivacyCategoryStatusKey;

/// Keys of the host's standard user defaults under which the status center
/// remembers that it has asked once. Written true, never cleared.
FOUNDATION_EXPORT NSString *const kContactsAccessRequested;
FOUNDATION_EXPORT NSString *const kDesktopFolderAccessRequested;
FOUNDATION_EXPORT NSString *const kDocumentsFolderAccessRequested;
FOUNDATION_EXPORT NSString *const kDownloadsFolderAccessRequested;
/// Set once the status center has made the system's Screen Recording request.
FOUNDATION_EXPORT NSString *const kScreenRecordingAccessRequested;

/// The context of the permission list's observation of the guide's
/// isOverlayShown: this very object, recognised by identity.
FOUNDATION_EXPORT NSString *const IsOverlayShownContext;

NS_ASSUME_NONNULL_END
