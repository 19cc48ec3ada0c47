#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/FileSystem.h"
#include "Platform/Value.h"

namespace vantro {

// EKEntityType and CNEntityType values.
inline constexpr long EKEntityTypeEvent = 0;
inline constexpr long EKEntityTypeReminder = 1;
inline constexpr long CNEntityTypeContacts = 0;

// EKAuthorizationStatus, CNAuthorizationStatus and PHAuthorizationStatus share
// these codes; later systems add codes above 3.
inline constexpr long ServiceAuthorizationStatusNotDetermined = 0;
inline constexpr long ServiceAuthorizationStatusRestricted = 1;
inline constexpr long ServiceAuthorizationStatusDenied = 2;
inline constexpr long ServiceAuthorizationStatusAuthorized = 3;
// EKAuthorizationStatusWriteOnly (macOS 14 on): events may be added, none read.
// From 14 EKAuthorizationStatusAuthorized is called FullAccess.
inline constexpr long EKAuthorizationStatusWriteOnly = 4;

// kCFURLBookmarkResolutionWithoutUIMask.
inline constexpr unsigned long kCFURLBookmarkResolutionWithoutUIMask = 256;

// The newer categories' codes. IOHIDRequestType's ListenEvent; IOHIDAccessType;
// AVMediaTypeVideo's and AVMediaTypeAudio's values. AVAuthorizationStatus and
// CBManagerAuthorization use the four service codes above (3 is Bluetooth's
// "allowed always").
inline constexpr long kIOHIDRequestTypeListenEvent = 1;
inline constexpr long kIOHIDAccessTypeGranted = 0;
inline constexpr long kIOHIDAccessTypeDenied = 1;
inline constexpr long kIOHIDAccessTypeUnknown = 2;
inline constexpr std::string_view AVMediaTypeVideo = "vide";
inline constexpr std::string_view AVMediaTypeAudio = "soun";

// A URL as the framework reads it: whether it is a file URL, and its path.
struct PlatformURL {
    bool isFileURL = false;
    std::string path;
};

// CFURLCreateByResolvingBookmarkData's answer: the URL, or the description of
// the CFError it filled in (CFErrorCopyDescription).
struct BookmarkResolution {
    std::optional<PlatformURL> url;
    std::string errorDescription;
};

// PLPrivacy's shared object, reached only by name. Every message must be
// preceded by asking whether the object responds to it; a message it does not
// respond to is a programming error of the caller and answers NO or 0.
class PhotosPrivacyObject {
public:
    PhotosPrivacyObject() = default;
    PhotosPrivacyObject(const PhotosPrivacyObject&) = delete;
    PhotosPrivacyObject& operator=(const PhotosPrivacyObject&) = delete;
    virtual ~PhotosPrivacyObject() = default;

    // respondsToSelector: with "isPhotosTCCAccessAllowed",
    // "isPhotosTCCAccessNotAllowed", "isPhotosTCCAccessRestricted" or
    // "photosTCCAccessStatus".
    virtual bool respondsToSelector(std::string_view selector) const = 0;
    virtual bool isPhotosTCCAccessAllowed() = 0;
    virtual bool isPhotosTCCAccessNotAllowed() = 0;
    virtual bool isPhotosTCCAccessRestricted() = 0;
    virtual std::int32_t photosTCCAccessStatus() = 0;
};

// The system services behind the privacy categories: EventKit, Contacts and
// AddressBook, Accessibility trust, Photos with its private privacy object,
// loading system frameworks that the framework does not link, and bookmark
// resolution. Optional classes are found by name; the framework asks whether a
// class exists and whether it responds to a message before sending it.
//
// Every operation is called on the main thread and returns at once unless
// said otherwise; classExists, classRespondsToSelector, systemPhotoLibraryURL
// and resolveBookmarkData may also be called from any thread (the Photos
// answer finds the library on the system's queue). Completions run on a queue of the system's choosing, never on
// the caller's stack and never on the main thread; they hold what they capture
// until they have run, and a completion whose answer never comes is never run
// (and never released before the process ends).
class Services {
public:
    Services() = default;
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
    virtual ~Services() = default;

    // NSClassFromString(className) != nil.
    virtual bool classExists(std::string_view className) = 0;
    // [NSClassFromString(className) respondsToSelector:selector] for a class
    // operation; false when the class does not exist.
    virtual bool classRespondsToSelector(std::string_view className, std::string_view selector) = 0;
    // [NSClassFromString(className) instancesRespondToSelector:selector] for an
    // instance operation; false when the class does not exist.
    virtual bool classInstancesRespondToSelector(std::string_view className, std::string_view selector) = 0;

    // +[EKEventStore authorizationStatusForEntityType:].
    virtual long eventStoreAuthorizationStatus(long entityType) = 0;
    // -[EKEventStore requestAccessToEntityType:completion:] on an event store
    // made for this request alone, kept until its answer has come and
    // released after it. May raise
    // the system's prompt. `completion` receives `granted` and the error (null
    // when there is none) on a system queue.
    virtual void requestEventStoreAccess(long entityType,
                                         std::function<void(bool granted, const PlatformError* error)> completion) = 0;
    // -[EKEventStore requestFullAccessToEventsWithCompletion:] for events,
    // requestFullAccessToRemindersWithCompletion: for reminders (macOS 14 on),
    // on an event store made for this request alone; only after
    // classInstancesRespondToSelector said yes. Like requestEventStoreAccess.
    virtual void requestFullEventStoreAccess(long entityType,
                                             std::function<void(bool granted, const PlatformError* error)> completion) = 0;

    // +[className authorizationStatusForEntityType:], for "CNAuthorization" or
    // "CNContactStore"; only after classRespondsToSelector said yes.
    virtual long contactsAuthorizationStatus(std::string_view className, long entityType) = 0;
    // -[[CNContactStore new] requestAccessForEntityType:completionHandler:];
    // only after classExists("CNContactStore"). Like requestEventStoreAccess.
    virtual void requestContactsAccess(long entityType,
                                       std::function<void(bool granted, const PlatformError* error)> completion) = 0;
    // [ABAddressBook sharedAddressBook] != nil. May raise the system's prompt;
    // returns without waiting for the user.
    virtual bool sharedAddressBookExists() = 0;

    // AXIsProcessTrustedWithOptions with one option, kAXTrustedCheckOptionPrompt
    // set to `prompt`.
    virtual bool isProcessTrustedWithOptions(bool prompt) = 0;

    // [[NSBundle bundleWithPath:path] load]: whether the bundle was found and
    // loaded. Its classes are found by name afterwards. May block on the disk.
    virtual bool loadBundleAtPath(std::string_view path) = 0;

    // +[PHPhotoLibrary authorizationStatus]; only after classExists.
    virtual long photoLibraryAuthorizationStatus() = 0;
    // +[PHPhotoLibrary requestAuthorization:]; only after classExists. May raise
    // the system's prompt. `handler` receives the new status on a system queue.
    virtual void requestPhotoLibraryAuthorization(std::function<void(long status)> handler) = 0;
    // +[PHPhotoLibrary systemPhotoLibraryURL]; only after
    // classRespondsToSelector said yes. nullopt for nil.
    virtual std::optional<PlatformURL> systemPhotoLibraryURL() = 0;
    // +[PLPrivacy sharedInstance]; only after classRespondsToSelector said yes.
    // nullptr when it yields nil. The object lives as long as the caller holds it.
    virtual std::shared_ptr<PhotosPrivacyObject> photosPrivacySharedInstance() = 0;

    // CFURLCreateByResolvingBookmarkData with the default allocator, no relative
    // URL, no resource properties and no staleness out-parameter. Never shows a
    // user interface when `options` holds kCFURLBookmarkResolutionWithoutUIMask.
    // May block on the disk.
    virtual BookmarkResolution resolveBookmarkData(const Data& bookmark, unsigned long options) = 0;

    // The newer categories. The framework calls them only on a release that
    // has the category: Screen Recording, Input Monitoring and Bluetooth from
    // 10.15, the capture devices from 10.14. Where the system lacks a call
    // all the same, a status answers nullopt and a request false, with no
    // answer to come; what that means is the framework's to decide.

    // CGPreflightScreenCaptureAccess(): whether the process may record the
    // screen. Never prompts.
    virtual std::optional<bool> preflightScreenCaptureAccess() = 0;
    // CGRequestScreenCaptureAccess(): the system's prompt, the first time an
    // application asks, which offers the privacy settings and lists the
    // application there switched off. Returns at once, before the user
    // answers, with whether access is there now.
    virtual std::optional<bool> requestScreenCaptureAccess() = 0;
    // IOHIDCheckAccess(requestType): an IOHIDAccessType. Never prompts.
    virtual std::optional<long> hidCheckAccess(long requestType) = 0;
    // IOHIDRequestAccess(requestType): the system's prompt while undecided,
    // which offers the privacy settings; blocks the calling thread until the
    // user answers. Whether access was granted. Called on a background
    // thread, never on the main thread, which it would hang.
    virtual std::optional<bool> hidRequestAccess(long requestType) = 0;
    // +[AVCaptureDevice authorizationStatusForMediaType:] for AVMediaTypeVideo
    // or AVMediaTypeAudio: an AVAuthorizationStatus.
    virtual std::optional<long> captureDeviceAuthorizationStatus(std::string_view mediaType) = 0;
    // +[AVCaptureDevice requestAccessForMediaType:completionHandler:]. May
    // raise the system's prompt. `completion` receives `granted` on a system
    // queue, as for requestEventStoreAccess. False when nothing was asked.
    virtual bool requestCaptureDeviceAccess(std::string_view mediaType, std::function<void(bool granted)> completion) = 0;
    // CBManager's class property authorization: a CBManagerAuthorization.
    virtual std::optional<long> bluetoothAuthorization() = 0;
    // Starts Core Bluetooth (a central manager made for this request), which
    // raises the system's prompt while undecided. `completion` receives the
    // CBManagerAuthorization once the user has decided, on a system queue.
    // False when nothing was asked.
    virtual bool requestBluetoothAccess(std::function<void(long authorization)> completion) = 0;
};

}  // namespace vantro
