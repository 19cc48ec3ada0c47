#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/Services.h"
#include "Simulator/SimPrivacy.h"

namespace vantro::sim {

class SimulatedMac;

// The system services of the simulated Mac, answering from its privacy
// database. What exists follows the release, and each piece can be changed
// by a test:
//
// - EventKit on every release. Requests raise the system's prompt while the
//   service is undecided; the answer arrives on a system queue. From macOS 14
//   the full-access requests are the ones that ask: the request of earlier
//   systems answers at once, without asking, not granted and with an error,
//   as it does for an application built with a current SDK (the host always
//   is here).
// - Contacts' CNContactStore from 10.11; CNAuthorization only when a test adds
//   it (it is not known which releases carry it). The address book on every
//   release: before the user has answered, asking for it raises the prompt and
//   yields nil (how the real one behaves then is unconfirmed).
// - Photos' PHPhotoLibrary from 10.13, once Photos.framework is loaded. On
//   10.14 its status reads "authorized" also when the user refused, the fault
//   that the private PLPrivacy object (10.14 only, once AssetsLibraryServices
//   is loaded) answers truthfully.
// - The newer categories' services: the capture devices' (AVCaptureDevice)
//   from 10.14; Screen Recording's, Input Monitoring's (IOHID) and
//   Bluetooth's from 10.15. On earlier releases nothing guards what they
//   guard, and they answer that access is there. Screen Recording's prompt
//   comes up the first time the host asks and never again; Input
//   Monitoring's request waits for the user's answer.
// - The photo library daemon's preference, from 10.14, with bookmark data of
//   the library; systemPhotoLibraryURL only when a test adds it.
// - For the App Store build none of the private pieces is there: no PLPrivacy,
//   no systemPhotoLibraryURL, no AssetsLibraryServices to load; asking for
//   them is still recorded.
//
// - The host's usage descriptions. From 10.14 a request for Calendars,
//   Reminders, Contacts, Photos, the camera or the microphone, and from
//   macOS 11 one for Bluetooth, whose Info.plist key the host lacks ends the
//   process, as the privacy service does ("Namespace TCC"): the simulated
//   Mac throws HostTerminated. From 14 EventKit's full-access requests
//   without their own key answer at once, not granted, without asking.
//
// Every message the framework sends is kept, in order, for tests ("PLPrivacy
// sharedInstance", "EKEventStore requestAccessToEntityType: 0", …).
// The host process ended by the system, as for a request without the usage
// description it needs. Nothing of the framework catches it: a test that
// meets it fails, as the host would have died.
class HostTerminated : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class SimServices : public Services {
public:
    explicit SimServices(SimulatedMac& mac);

    // Services
    bool classExists(std::string_view className) override;
    bool classRespondsToSelector(std::string_view className, std::string_view selector) override;
    bool classInstancesRespondToSelector(std::string_view className, std::string_view selector) override;
    long eventStoreAuthorizationStatus(long entityType) override;
    void requestEventStoreAccess(long entityType,
                                 std::function<void(bool granted, const PlatformError* error)> completion) override;
    void requestFullEventStoreAccess(long entityType,
                                     std::function<void(bool granted, const PlatformError* error)> completion) override;
    long contactsAuthorizationStatus(std::string_view className, long entityType) override;
    void requestContactsAccess(long entityType,
                               std::function<void(bool granted, const PlatformError* error)> completion) override;
    bool sharedAddressBookExists() override;
    bool isProcessTrustedWithOptions(bool prompt) override;
    bool loadBundleAtPath(std::string_view path) override;
    long photoLibraryAuthorizationStatus() override;
    void requestPhotoLibraryAuthorization(std::function<void(long status)> handler) override;
    std::optional<PlatformURL> systemPhotoLibraryURL() override;
    std::shared_ptr<PhotosPrivacyObject> photosPrivacySharedInstance() override;
    BookmarkResolution resolveBookmarkData(const Data& bookmark, unsigned long options) override;
    std::optional<bool> preflightScreenCaptureAccess() override;
    std::optional<bool> requestScreenCaptureAccess() override;
    std::optional<long> hidCheckAccess(long requestType) override;
    std::optional<bool> hidRequestAccess(long requestType) override;
    std::optional<long> captureDeviceAuthorizationStatus(std::string_view mediaType) override;
    bool requestCaptureDeviceAccess(std::string_view mediaType, std::function<void(bool granted)> completion) override;
    std::optional<long> bluetoothAuthorization() override;
    bool requestBluetoothAccess(std::function<void(long authorization)> completion) override;

    // The private Photos privacy object. Each answer is present or absent on
    // its own; a present answer comes from the privacy database unless fixed.
    struct PhotosPrivacy {
        bool classExists = false;  // on 10.14
        bool respondsToSharedInstance = true;
        bool sharedInstanceIsNil = false;
        bool respondsToAllowed = true;
        bool respondsToNotAllowed = true;
        bool respondsToRestricted = true;
        bool respondsToStatus = true;
        std::optional<bool> allowed;
        std::optional<bool> notAllowed;
        std::optional<bool> restricted;
        std::optional<std::int32_t> status;  // 0 allowed, 1 denied, 2 not determined, 3 restricted
    };
    enum class LibraryPreference { Absent, ValidBookmark, UnresolvableBookmark, NotData };

    struct Availability {
        bool eventStoreFullAccess = false;   // EventKit's full-access requests, 14 on
        bool contactStore = false;           // CNContactStore, 10.11 on
        bool contactsAuthorization = false;  // CNAuthorization
        bool contactsAuthorizationAnswersStatus = true;
        bool photoLibrary = false;  // PHPhotoLibrary, 10.13 on, after loading Photos.framework
        // The newer categories' calls: the capture devices' from 10.14, the
        // Screen Recording, Input Monitoring and Bluetooth ones from 10.15.
        bool captureDevice = false;
        bool screenCapture = false;
        bool hidAccess = false;
        bool bluetoothAuthorization = false;
        // Override the codes the services report (for codes no consent
        // gives, such as those of later systems).
        std::optional<long> eventStoreStatus;
        std::optional<long> contactsStatus;
        std::optional<long> photoLibraryStatus;
        // systemPhotoLibraryURL: absent, or this URL.
        std::optional<PlatformURL> systemPhotoLibraryURL;
        PhotosPrivacy photosPrivacy;
    };
    Availability& availability() { return availability_; }

    // Writes the photo library daemon's "WellKnownLibraryPathCache" preference.
    void setLibraryPreference(LibraryPreference preference);
    // The real path of the system photo library.
    std::string photoLibraryPath() const;
    // Bookmark data that resolves to `path` while something is there.
    static Data bookmarkDataForPath(std::string_view path);

    const std::vector<std::string>& messages() const { return messages_; }
    // How often a call that waits for the user was made on the main thread.
    int mainThreadBlockingCalls() const { return mainThreadBlockingCalls_; }
    std::size_t count(std::string_view message) const;
    // How often a bundle path was loaded.
    int loads(std::string_view path) const;

private:
    class PrivacyObject;
    void send(std::string message);
    // The public code of a consent: 0 not determined, 1 restricted, 2 denied, 3 authorized.
    static long codeFor(Consent consent);
    long photosStatus() const;
    // Ends the host when its Info.plist lacks `key` and the running release
    // (at least major.minor) requires it.
    void requireUsageDescription(std::string_view key, int major, int minor);
    bool hostHasUsageDescription(std::string_view key) const;
    // Asks the user while the service is undecided, then answers on a system queue.
    void requestService(PromptedService service, std::function<void(bool granted)> answer);
    // The capture device behind an AVMediaType, or nullopt for another type.
    static std::optional<PromptedService> captureDevice(std::string_view mediaType);

    SimulatedMac& mac_;
    Availability availability_;
    std::vector<std::string> messages_;
    std::map<std::string, int, std::less<>> loads_;
    bool photosLoaded_ = false;
    bool assetsLibraryServicesLoaded_ = false;
    bool addressBookPromptPending_ = false;
    bool screenCapturePromptShown_ = false;
    int mainThreadBlockingCalls_ = 0;
};

}  // namespace vantro::sim
