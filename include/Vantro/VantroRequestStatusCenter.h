// The status center: what a privacy category's status is, how it is
// obtained, and asking for it.

#import <Foundation/Foundation.h>
#import <Vantro/VantroPrivacy.h>

NS_ASSUME_NONNULL_BEGIN

/// Tells, without bothering the user, whether the host holds a privacy
/// permission, and asks for it. Requests have no completion: ask for the
/// status again afterwards. Use on the main thread.
///
/// A subclass may redefine any per-service operation (the status and request
/// of one service); dispatch by identifier then runs the subclass's.
///
/// Usage descriptions. The system ends a host that asks for some categories
/// without the matching key in its Info.plist, so before each such request
/// the status center reads the key the running release needs; when it is
/// missing it asks nothing, writes "Privacy category usage description
/// missing from Info.plist: <key>" to the system log, and the status stays
/// as it was. The keys a host must add, per category:
///
/// - Calendars: NSCalendarsUsageDescription (10.14 to 13) and
///   NSCalendarsFullAccessUsageDescription (14 and later);
/// - Reminders: NSRemindersUsageDescription (10.14 to 13) and
///   NSRemindersFullAccessUsageDescription (14 and later);
/// - Contacts: NSContactsUsageDescription;
/// - Photos: NSPhotoLibraryUsageDescription;
/// - Camera: NSCameraUsageDescription;
/// - Microphone: NSMicrophoneUsageDescription;
/// - Bluetooth: NSBluetoothAlwaysUsageDescription (macOS 11 and later).
///
/// Before 10.14 the system asks without looking for them.
NS_SWIFT_UI_ACTOR
@interface VantroRequestStatusCenter : NSObject

/// The shared instance, made on first use and kept for the life of the process.
@property (class, readonly, strong) VantroRequestStatusCenter *sharedRequestStatusCenter NS_SWIFT_NAME(shared);

/// Whether the process has Full Disk Access: YES before 10.14 and for a
/// sandboxed host; else the verdict of listing the directories only Full Disk
/// Access opens, shared by every call within one pass of the run loop.
+ (BOOL)hasFullDiskAccess;
/// One uncached probe of those directories.
+ (BOOL)checkHasFullDiskAccess;
/// The status of the Desktop, Documents or Downloads folder from a listing of
/// it. Listing a folder the user has not decided on makes the system ask.
+ (PrivacyAuthorizationStatus)filesAndFoldersAuthorizationStatus:(nullable PrivacyCategoryIdentifier)identifier
    NS_SWIFT_NAME(filesAndFoldersAuthorizationStatus(_:));
/// The system photo library's path, or nil when it cannot be found.
+ (nullable NSString *)photosSystemLibraryPath;
/// Loads Photos.framework, at most once per process, unless it is loaded.
+ (void)loadPhotosFramework;
/// Loads the private AssetsLibraryServices.framework, at most once per process.
+ (void)loadAssetsLibraryServicesFramework;
/// The account's home directory from the user database, even for a
/// sandboxed host; nil when the database has no entry for the user.
+ (nullable NSString *)userHomeDirectory;
/// Whether the host's signature carries the App Sandbox entitlement.
+ (BOOL)isApplicationSandboxed;

- (instancetype)init NS_DESIGNATED_INITIALIZER;

/// The status of a category; 0 (with a line in the system log) for an
/// identifier the status center does not serve.
- (PrivacyAuthorizationStatus)privacyAuthorizationStatusForIdentifier:(nullable PrivacyCategoryIdentifier)identifier
    NS_SWIFT_NAME(privacyAuthorizationStatus(for:));
/// How a category is obtained, from the framework's RequestTypes resource.
- (PrivacyAuthorizationRequestType)authorizationRequestTypeForIdentifier:(nullable PrivacyCategoryIdentifier)identifier
    NS_SWIFT_NAME(authorizationRequestType(for:));
/// Asks for a category. With silent YES nothing of the framework's own is
/// shown (no refusal alert, guide or pane), except for Accessibility.
- (void)requestPrivacyAuthorizationForIdentifier:(nullable PrivacyCategoryIdentifier)identifier
                                          silent:(BOOL)silent
    NS_SWIFT_NAME(requestPrivacyAuthorization(for:silent:));

- (PrivacyAuthorizationStatus)fullDiskAccessAuthorizationStatus;
- (void)requestFullDiskAccessAuthorization:(BOOL)silent NS_SWIFT_NAME(requestFullDiskAccessAuthorization(silent:));
- (PrivacyAuthorizationStatus)photosAuthorizationStatus;
- (void)requestPhotosAuthorization:(BOOL)silent NS_SWIFT_NAME(requestPhotosAuthorization(silent:));
- (PrivacyAuthorizationStatus)calendarsAuthorizationStatus;
- (void)requestCalendarsAuthorization:(BOOL)silent NS_SWIFT_NAME(requestCalendarsAuthorization(silent:));
- (PrivacyAuthorizationStatus)remindersAuthorizationStatus;
- (void)requestRemindersAuthorization:(BOOL)silent NS_SWIFT_NAME(requestRemindersAuthorization(silent:));
- (PrivacyAuthorizationStatus)contactsAuthorizationStatus;
- (void)requestContactsAuthorization:(BOOL)silent NS_SWIFT_NAME(requestContactsAuthorization(silent:));
- (PrivacyAuthorizationStatus)desktopFolderAuthorizationStatus;
- (PrivacyAuthorizationStatus)documentsFolderAuthorizationStatus;
- (PrivacyAuthorizationStatus)downloadsFolderAuthorizationStatus;
- (PrivacyAuthorizationStatus)foldersAndVolumesAuthorizationStatus;
- (void)requestDesktopFolderAuthorization:(BOOL)silent NS_SWIFT_NAME(requestDesktopFolderAuthorization(silent:));
- (void)requestDocumentsFolderAuthorization:(BOOL)silent NS_SWIFT_NAME(requestDocumentsFolderAuthorization(silent:));
- (void)requestDownloadsFolderAuthorization:(BOOL)silent NS_SWIFT_NAME(requestDownloadsFolderAuthorization(silent:));
- (void)requestAndFoldersAuthorization:(BOOL)silent NS_SWIFT_NAME(requestAndFoldersAuthorization(silent:));
- (PrivacyAuthorizationStatus)accessibilityAuthorizationStatus;
/// Shows the refusal alert to an untrusted process, silent or not.
- (void)requestAccessibilityAuthorizationStatus:(BOOL)silent
    NS_SWIFT_NAME(requestAccessibilityAuthorizationStatus(silent:));

/// The newer categories. Below the release that brought a category (10.14
/// for the camera and microphone, 10.15 for the rest) its status is
/// authorized and its request does nothing.
- (PrivacyAuthorizationStatus)screenRecordingAuthorizationStatus;
/// The system's own request the first time; later, the guide, unless silent.
- (void)requestScreenRecordingAuthorization:(BOOL)silent NS_SWIFT_NAME(requestScreenRecordingAuthorization(silent:));
- (PrivacyAuthorizationStatus)inputMonitoringAuthorizationStatus;
/// The system's own request while undecided, which waits for the user;
/// after a refusal, the guide, unless silent.
- (void)requestInputMonitoringAuthorization:(BOOL)silent NS_SWIFT_NAME(requestInputMonitoringAuthorization(silent:));
- (PrivacyAuthorizationStatus)cameraAuthorizationStatus;
- (void)requestCameraAuthorization:(BOOL)silent NS_SWIFT_NAME(requestCameraAuthorization(silent:));
- (PrivacyAuthorizationStatus)microphoneAuthorizationStatus;
- (void)requestMicrophoneAuthorization:(BOOL)silent NS_SWIFT_NAME(requestMicrophoneAuthorization(silent:));
- (PrivacyAuthorizationStatus)bluetoothAuthorizationStatus;
- (void)requestBluetoothAuthorization:(BOOL)silent NS_SWIFT_NAME(requestBluetoothAuthorization(silent:));

/// Whether the status center, the permission list and the guide serve Screen
/// Recording, Input Monitoring, Camera, Microphone and Bluetooth. NO until the
/// host sets it, on the main thread, for the life of the process; while NO,
/// their identifiers are answered as any identifier the framework does not
/// serve.
@property (class, nonatomic) BOOL servesNewerPrivacyCategories;

/// The modal "Permission Refused" alert, whose first button opens the privacy
/// settings at the category's anchor. Its texts come from the host's main
/// bundle.
- (void)alertOpenPrivacyPreferences:(PrivacyCategoryIdentifier)identifier NS_SWIFT_NAME(alertOpenPrivacyPreferences(_:));

/// When NO, the Contacts status before 10.11 and the folder statuses answer
/// 0 rather than run a check that may make the system ask.
@property (atomic) BOOL allowPotentiallyVerboseRechecks;
/// Whether the Photos status on 10.14 may come from the system's private
/// Photos privacy object; a completed Photos request sets it to NO.
@property (nonatomic) BOOL canRelyOnPLPrivacyValue;

@end

/// Posted on the main thread, with the shared status center as its object,
/// for each change of a watched category's status (see
/// watchedPrivacyCategoryIdentifiers). Its userInfo holds the category's
/// identifier and its old and new PrivacyAuthorizationStatus as NSNumbers.
FOUNDATION_EXPORT NSNotificationName const VantroPrivacyStatusDidChangeNotification
    NS_SWIFT_NAME(VantroRequestStatusCenter.privacyStatusDidChangeNotification);
/// The userInfo key of the changed category's identifier.
FOUNDATION_EXPORT NSString *const VantroPrivacyStatusIdentifierKey NS_SWIFT_NAME(VantroRequestStatusCenter.identifierKey);
/// The userInfo key of the status before the change.
FOUNDATION_EXPORT NSString *const VantroPrivacyStatusOldStatusKey NS_SWIFT_NAME(VantroRequestStatusCenter.oldStatusKey);
/// The userInfo key of the status now.
FOUNDATION_EXPORT NSString *const VantroPrivacyStatusNewStatusKey NS_SWIFT_NAME(VantroRequestStatusCenter.newStatusKey);

@interface VantroRequestStatusCenter (StatusChanges)

/// The categories whose status changes are posted as
/// VantroPrivacyStatusDidChangeNotification, one list per process, empty at
/// first. Their statuses are read again when the host becomes active, when a
/// guide session ends and each second while one runs; nothing is read while
/// the list is empty, and nothing that is read makes the system ask the user.
/// Main thread.
@property (nonatomic, copy) NSArray<PrivacyCategoryIdentifier> *watchedPrivacyCategoryIdentifiers;

@end

NS_ASSUME_NONNULL_END
