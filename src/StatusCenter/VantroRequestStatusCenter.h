#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/SharedOwnership.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

// The framework's answer to three questions about a privacy category: its
// status, how it is obtained, and "ask for it now". One shared instance per
// process; the per-service operations are virtual so that a subclass's
// redefinition is the one that dispatch by identifier runs. Main thread.
class VantroRequestStatusCenter : public std::enable_shared_from_this<VantroRequestStatusCenter> {
public:
    using StatusOperation = PrivacyAuthorizationStatus (VantroRequestStatusCenter::*)();
    using RequestOperation = void (VantroRequestStatusCenter::*)(bool silent);

    // Made with makeShared<VantroRequestStatusCenter>() (or of a subclass):
    // a pending answer keeps its status center alive.
    explicit VantroRequestStatusCenter(const SharedOwnership&);
    VantroRequestStatusCenter(const VantroRequestStatusCenter&) = delete;
    VantroRequestStatusCenter& operator=(const VantroRequestStatusCenter&) = delete;
    virtual ~VantroRequestStatusCenter() = default;

    // The shared instance of the current process, made on first use.
    static std::shared_ptr<VantroRequestStatusCenter> sharedRequestStatusCenter();

    // Whether the process has Full Disk Access. True without looking before
    // 10.14 and for a sandboxed host; otherwise the verdict of the directory
    // probe, which every call within one pass of the calling thread's run loop
    // shares: the first call of a pass probes, the next pass probes afresh.
    static bool hasFullDiskAccess();
    // One probe of the directories that only Full Disk Access opens: false as
    // soon as one refuses with EPERM, else whether any of them was there.
    static bool checkHasFullDiskAccess();
    // The status of the Desktop, Documents or Downloads folder from a listing
    // of it: 2 before 10.15; else 1 when refused with EPERM, 2 when it lists
    // or fails otherwise, 0 when it is missing (or the identifier is another).
    // Listing a folder the user has not decided on makes the system ask, and
    // this waits for the answer. Nothing is cached.
    static PrivacyAuthorizationStatus filesAndFoldersAuthorizationStatus(std::optional<std::string_view> identifier);
    // The system photo library's path: PHPhotoLibrary's systemPhotoLibraryURL
    // when it has one, else the photo library daemon's bookmark of it while
    // the library exists. nullopt when neither gives a path. Does not load the
    // Photos framework.
    static std::optional<std::string> photosSystemLibraryPath();
    // Load Photos.framework and the private AssetsLibraryServices.framework,
    // unless their classes are already there; each at most once per process.
    static void loadPhotosFramework();
    static void loadAssetsLibraryServicesFramework();
    // The account's home directory from the user database, standardised, even
    // for a sandboxed host. nullopt when the database has no entry for the
    // process's user, as the platform's nil; computed once per process.
    static std::optional<std::string> userHomeDirectory();
    // Whether the host's signature carries the App Sandbox entitlement;
    // false when it cannot be told. Computed once per process.
    static bool isApplicationSandboxed();

    // The status of a category. An identifier no status operation serves
    // (nullopt included) writes "Privacy category identifier not supported: %@"
    // to the system log and answers 0.
    PrivacyAuthorizationStatus privacyAuthorizationStatusForIdentifier(std::optional<std::string_view> identifier);
    // Whether privacyAuthorizationStatusForIdentifier serves the identifier
    // (a newer category only while they are on); asks nothing, logs nothing.
    static bool servesPrivacyAuthorizationStatusForIdentifier(std::string_view identifier);
    // How a category is obtained, from the framework's "RequestTypes" resource:
    // 1 or 2 as listed, 0 for anything else.
    PrivacyAuthorizationRequestType authorizationRequestTypeForIdentifier(std::optional<std::string_view> identifier);
    // Asks for a category. There is no completion: ask for the status again.
    // An unsupported identifier writes the same log line and does nothing else.
    void requestPrivacyAuthorizationForIdentifier(std::optional<std::string_view> identifier, bool silent);

    virtual PrivacyAuthorizationStatus fullDiskAccessAuthorizationStatus();
    virtual void requestFullDiskAccessAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus photosAuthorizationStatus();
    virtual void requestPhotosAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus calendarsAuthorizationStatus();
    virtual void requestCalendarsAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus remindersAuthorizationStatus();
    virtual void requestRemindersAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus contactsAuthorizationStatus();
    virtual void requestContactsAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus desktopFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus documentsFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus downloadsFolderAuthorizationStatus();
    virtual PrivacyAuthorizationStatus foldersAndVolumesAuthorizationStatus();
    virtual void requestDesktopFolderAuthorization(bool silent);
    virtual void requestDocumentsFolderAuthorization(bool silent);
    virtual void requestDownloadsFolderAuthorization(bool silent);
    virtual void requestAndFoldersAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus accessibilityAuthorizationStatus();
    virtual void requestAccessibilityAuthorizationStatus(bool silent);

    // The newer categories, served once the host has turned them on
    // (setServesNewerPrivacyCategories). Below the release that brought a
    // category its status is 2 and its request does nothing.
    virtual PrivacyAuthorizationStatus screenRecordingAuthorizationStatus();
    virtual void requestScreenRecordingAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus inputMonitoringAuthorizationStatus();
    virtual void requestInputMonitoringAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus cameraAuthorizationStatus();
    virtual void requestCameraAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus microphoneAuthorizationStatus();
    virtual void requestMicrophoneAuthorization(bool silent);
    virtual PrivacyAuthorizationStatus bluetoothAuthorizationStatus();
    virtual void requestBluetoothAuthorization(bool silent);

    // Whether the status center, the permission list and the guide serve the
    // newer categories (Screen Recording, Input Monitoring, Camera,
    // Microphone, Bluetooth) in this process. Off until the host turns it on;
    // while off, their identifiers are answered as any identifier the
    // framework does not serve. Main thread.
    static bool servesNewerPrivacyCategories();
    static void setServesNewerPrivacyCategories(bool serves);

    // The Info.plist key the host must carry before the system may be asked
    // for `identifier` on the running release: the system ends a process that
    // asks without it. `fullAccess` names EventKit's full-access request of
    // macOS 14 on, which has keys of its own. nullopt where no key is needed.
    static std::optional<std::string_view> usageDescriptionKey(std::string_view identifier, bool fullAccess = false);
    // Whether the host's main bundle carries the key the request for
    // `identifier` needs (or none is needed). A missing key writes
    // "Privacy category usage description missing from Info.plist: %@" with
    // the key to the system log; the caller then asks nothing.
    static bool hostDeclaresUsageDescription(std::string_view identifier, bool fullAccess = false);

    // The refusal alert: "Permission Refused" with a button that opens the
    // privacy settings at `identifier`'s anchor. Modal; blocks until answered.
    virtual void alertOpenPrivacyPreferences(std::string_view identifier);

    bool allowPotentiallyVerboseRechecks() const { return allowPotentiallyVerboseRechecks_.load(); }
    void setAllowPotentiallyVerboseRechecks(bool allow) { allowPotentiallyVerboseRechecks_.store(allow); }
    bool canRelyOnPLPrivacyValue() const { return canRelyOnPLPrivacyValue_; }
    void setCanRelyOnPLPrivacyValue(bool canRely) { canRelyOnPLPrivacyValue_ = canRely; }

private:
    // What an asynchronous answer holds to keep the status center alive until
    // it has run. An instance not held by a std::shared_ptr is its owner's to
    // keep alive; the Photos answer, which holds it only weakly on the main
    // queue, finds such an instance gone.
    std::shared_ptr<VantroRequestStatusCenter> retainedSelf();
    PrivacyAuthorizationStatus folderStatus(PrivacyCategoryIdentifier identifier, std::string_view flag);
    void requestFolder(PrivacyCategoryIdentifier identifier, std::string_view flag, bool silent);
    void requestEventStoreAccess(long entityType, PrivacyCategoryIdentifier identifier, bool silent);
    PrivacyAuthorizationStatus captureDeviceStatus(PrivacyCategoryIdentifier identifier, std::string_view mediaType);
    void requestCaptureDevice(PrivacyCategoryIdentifier identifier, std::string_view mediaType, bool silent);

    // Whether the system's Input Monitoring request waits for the user on a
    // background thread. Main thread only.
    bool inputMonitoringRequestPending_ = false;
    std::atomic<bool> allowPotentiallyVerboseRechecks_{true};
    bool canRelyOnPLPrivacyValue_ = true;
};

}  // namespace vantro
