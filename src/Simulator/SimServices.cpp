#include "Simulator/SimServices.h"

#include <algorithm>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

constexpr std::string_view photosFrameworkPath = "/System/Library/Frameworks/Photos.framework";
constexpr std::string_view assetsLibraryServicesPath = "/System/Library/PrivateFrameworks/AssetsLibraryServices.framework";
constexpr std::string_view bookmarkMagic = "sim-bookmark:";

bool releaseAtLeast(const SimulatedMac& mac, int major, int minor) {
    auto v = mac.release().systemVersion;
    return v.majorVersion > major || (v.majorVersion == major && v.minorVersion >= minor);
}

bool isMojave(const SimulatedMac& mac) {
    auto v = mac.release().systemVersion;
    return v.majorVersion == 10 && v.minorVersion == 14;
}

}  // namespace

// PLPrivacy's shared object: answers from the privacy database, each answer
// present or absent as the Mac is set up.
class SimServices::PrivacyObject : public PhotosPrivacyObject {
public:
    explicit PrivacyObject(SimServices& services) : services_(services) {}

    bool respondsToSelector(std::string_view selector) const override {
        const auto& p = services_.availability_.photosPrivacy;
        if (selector == "isPhotosTCCAccessAllowed") return p.respondsToAllowed;
        if (selector == "isPhotosTCCAccessNotAllowed") return p.respondsToNotAllowed;
        if (selector == "isPhotosTCCAccessRestricted") return p.respondsToRestricted;
        if (selector == "photosTCCAccessStatus") return p.respondsToStatus;
        return false;
    }
    bool isPhotosTCCAccessAllowed() override {
        services_.send("PLPrivacy isPhotosTCCAccessAllowed");
        return answer("isPhotosTCCAccessAllowed", services_.availability_.photosPrivacy.allowed, Consent::Authorized);
    }
    bool isPhotosTCCAccessNotAllowed() override {
        services_.send("PLPrivacy isPhotosTCCAccessNotAllowed");
        return answer("isPhotosTCCAccessNotAllowed", services_.availability_.photosPrivacy.notAllowed, Consent::Denied);
    }
    bool isPhotosTCCAccessRestricted() override {
        services_.send("PLPrivacy isPhotosTCCAccessRestricted");
        return answer("isPhotosTCCAccessRestricted", services_.availability_.photosPrivacy.restricted, Consent::Restricted);
    }
    std::int32_t photosTCCAccessStatus() override {
        services_.send("PLPrivacy photosTCCAccessStatus");
        if (!respondsToSelector("photosTCCAccessStatus")) return 0;
        if (auto fixed = services_.availability_.photosPrivacy.status) return *fixed;
        switch (consent()) {
        case Consent::Authorized: return 0;
        case Consent::Denied: return 1;
        case Consent::NotDetermined: return 2;
        case Consent::Restricted: return 3;
        }
        return 2;
    }

private:
    Consent consent() const { return services_.mac_.privacy().consent(PromptedService::Photos); }
    // A message the object does not understand would raise; answering NO
    // keeps a faulty caller visible in the message list instead.
    bool answer(std::string_view selector, const std::optional<bool>& fixed, Consent when) const {
        if (!respondsToSelector(selector)) return false;
        return fixed ? *fixed : consent() == when;
    }
    SimServices& services_;
};

SimServices::SimServices(SimulatedMac& mac) : mac_(mac) {
    availability_.eventStoreFullAccess = releaseAtLeast(mac, 14, 0);
    availability_.contactStore = releaseAtLeast(mac, 10, 11);
    availability_.photoLibrary = releaseAtLeast(mac, 10, 13);
    availability_.photosPrivacy.classExists = isMojave(mac);
    availability_.captureDevice = releaseAtLeast(mac, 10, 14);
    availability_.screenCapture = availability_.hidAccess = availability_.bluetoothAuthorization = releaseAtLeast(mac, 10, 15);
    setLibraryPreference(releaseAtLeast(mac, 10, 14) ? LibraryPreference::ValidBookmark : LibraryPreference::Absent);
}

void SimServices::send(std::string message) { messages_.push_back(std::move(message)); }

std::size_t SimServices::count(std::string_view message) const {
    return static_cast<std::size_t>(std::count(messages_.begin(), messages_.end(), message));
}

int SimServices::loads(std::string_view path) const {
    auto it = loads_.find(path);
    return it == loads_.end() ? 0 : it->second;
}

long SimServices::codeFor(Consent consent) {
    switch (consent) {
    case Consent::NotDetermined: return ServiceAuthorizationStatusNotDetermined;
    case Consent::Restricted: return ServiceAuthorizationStatusRestricted;
    case Consent::Denied: return ServiceAuthorizationStatusDenied;
    case Consent::Authorized: return ServiceAuthorizationStatusAuthorized;
    }
    return ServiceAuthorizationStatusNotDetermined;
}

bool SimServices::classExists(std::string_view className) {
    if (className == "EKEventStore" || className == "ABAddressBook") return true;
    if (className == "CNContactStore") return availability_.contactStore;
    if (className == "CNAuthorization") return availability_.contactsAuthorization;
    if (className == "PHPhotoLibrary") return availability_.photoLibrary && photosLoaded_;
    if (className == "PLPrivacy")
        return availability_.photosPrivacy.classExists && assetsLibraryServicesLoaded_ && !mac_.configuration().appStoreBuild;
    return false;
}

bool SimServices::classRespondsToSelector(std::string_view className, std::string_view selector) {
    if (!classExists(className)) return false;
    if (className == "CNAuthorization")
        return selector == "authorizationStatusForEntityType:" && availability_.contactsAuthorizationAnswersStatus;
    if (className == "CNContactStore" || className == "EKEventStore") return selector == "authorizationStatusForEntityType:";
    if (className == "PHPhotoLibrary") {
        if (selector == "systemPhotoLibraryURL")
            return availability_.systemPhotoLibraryURL.has_value() && !mac_.configuration().appStoreBuild;
        return selector == "authorizationStatus" || selector == "requestAuthorization:";
    }
    if (className == "PLPrivacy") return selector == "sharedInstance" && availability_.photosPrivacy.respondsToSharedInstance;
    return false;
}

bool SimServices::classInstancesRespondToSelector(std::string_view className, std::string_view selector) {
    if (!classExists(className)) return false;
    if (className == "EKEventStore") {
        if (selector == "requestFullAccessToEventsWithCompletion:" || selector == "requestFullAccessToRemindersWithCompletion:")
            return availability_.eventStoreFullAccess;
        return selector == "requestAccessToEntityType:completion:";
    }
    if (className == "CNContactStore") return selector == "requestAccessForEntityType:completionHandler:";
    return false;
}

bool SimServices::hostHasUsageDescription(std::string_view key) const {
    auto value = mac_.bundles().mainBundle()->objectForInfoDictionaryKey(key);
    return value && value->isString();
}

void SimServices::requireUsageDescription(std::string_view key, int major, int minor) {
    if (!releaseAtLeast(mac_, major, minor) || hostHasUsageDescription(key)) return;
    const std::string why = "the Info.plist has no " + std::string(key) + " (Namespace TCC)";
    mac_.record("system", "terminates " + mac_.configuration().hostName + ": " + why);
    throw HostTerminated(mac_.configuration().hostName + " terminated: " + why);
}

void SimServices::requestService(PromptedService service, std::function<void(bool granted)> answer) {
    auto& privacy = mac_.privacy();
    auto name = std::string(SimPrivacy::serviceName(service));
    auto deliver = [this, name, answer](bool granted) {
        mac_.runLoop().dispatchOnSystemQueue(0, [this, name, answer, granted] {
            mac_.record("system", name + " answers the request on a system queue: " + (granted ? "granted" : "not granted"));
            answer(granted);
        });
    };
    Consent consent = privacy.consent(service);
    if (consent != Consent::NotDetermined) {
        deliver(consent == Consent::Authorized);
        return;
    }
    privacy.askUser(name, [this, service, deliver](bool allowed) {
        mac_.privacy().setConsent(service, allowed ? Consent::Authorized : Consent::Denied);
        deliver(allowed);
    });
}

long SimServices::eventStoreAuthorizationStatus(long entityType) {
    send("EKEventStore authorizationStatusForEntityType: " + std::to_string(entityType));
    if (availability_.eventStoreStatus) return *availability_.eventStoreStatus;
    if (entityType == EKEntityTypeEvent) return codeFor(mac_.privacy().consent(PromptedService::Calendars));
    if (entityType == EKEntityTypeReminder) return codeFor(mac_.privacy().consent(PromptedService::Reminders));
    return ServiceAuthorizationStatusNotDetermined;
}

void SimServices::requestEventStoreAccess(long entityType,
                                          std::function<void(bool granted, const PlatformError* error)> completion) {
    send("EKEventStore requestAccessToEntityType: " + std::to_string(entityType));
    if (entityType != EKEntityTypeEvent && entityType != EKEntityTypeReminder) {
        mac_.runLoop().dispatchOnSystemQueue(0, [completion] {
            PlatformError error{"EKErrorDomain", 0, nullptr};
            completion(false, &error);
        });
        return;
    }
    if (availability_.eventStoreFullAccess) {
        // The error's code is unconfirmed; its domain is EventKit's.
        mac_.record("system", "EventKit answers the old request at once, without asking: not granted");
        mac_.runLoop().dispatchOnSystemQueue(0, [completion] {
            PlatformError error{"EKErrorDomain", 0, nullptr};
            completion(false, &error);
        });
        return;
    }
    requireUsageDescription(entityType == EKEntityTypeEvent ? "NSCalendarsUsageDescription" : "NSRemindersUsageDescription",
                            10, 14);
    auto service = entityType == EKEntityTypeEvent ? PromptedService::Calendars : PromptedService::Reminders;
    requestService(service, [completion](bool granted) { completion(granted, nullptr); });
}

void SimServices::requestFullEventStoreAccess(long entityType,
                                              std::function<void(bool granted, const PlatformError* error)> completion) {
    const bool events = entityType == EKEntityTypeEvent;
    send(events ? "EKEventStore requestFullAccessToEventsWithCompletion:"
                : "EKEventStore requestFullAccessToRemindersWithCompletion:");
    if (!hostHasUsageDescription(events ? "NSCalendarsFullAccessUsageDescription" : "NSRemindersFullAccessUsageDescription")) {
        mac_.record("system", "EventKit answers the full-access request at once, without asking: no usage description");
        mac_.runLoop().dispatchOnSystemQueue(0, [completion] {
            PlatformError error{"EKErrorDomain", 0, nullptr};
            completion(false, &error);
        });
        return;
    }
    requestService(events ? PromptedService::Calendars : PromptedService::Reminders,
                   [completion](bool granted) { completion(granted, nullptr); });
}

long SimServices::contactsAuthorizationStatus(std::string_view className, long entityType) {
    send(std::string(className) + " authorizationStatusForEntityType: " + std::to_string(entityType));
    if (availability_.contactsStatus) return *availability_.contactsStatus;
    if (entityType != CNEntityTypeContacts) return ServiceAuthorizationStatusNotDetermined;
    return codeFor(mac_.privacy().consent(PromptedService::Contacts));
}

void SimServices::requestContactsAccess(long entityType,
                                        std::function<void(bool granted, const PlatformError* error)> completion) {
    send("CNContactStore requestAccessForEntityType: " + std::to_string(entityType));
    if (entityType != CNEntityTypeContacts) {
        mac_.runLoop().dispatchOnSystemQueue(0, [completion] { completion(false, nullptr); });
        return;
    }
    requireUsageDescription("NSContactsUsageDescription", 10, 14);
    requestService(PromptedService::Contacts, [completion](bool granted) { completion(granted, nullptr); });
}

bool SimServices::sharedAddressBookExists() {
    send("ABAddressBook sharedAddressBook");
    switch (mac_.privacy().consent(PromptedService::Contacts)) {
    case Consent::Authorized: return true;
    case Consent::Denied:
    case Consent::Restricted: return false;
    case Consent::NotDetermined: break;
    }
    if (!addressBookPromptPending_) {
        addressBookPromptPending_ = true;
        mac_.privacy().askUser("Contacts", [this](bool allowed) {
            addressBookPromptPending_ = false;
            mac_.privacy().setConsent(PromptedService::Contacts, allowed ? Consent::Authorized : Consent::Denied);
        });
    }
    return false;
}

bool SimServices::isProcessTrustedWithOptions(bool prompt) {
    send(std::string("AXIsProcessTrustedWithOptions prompt ") + (prompt ? "YES" : "NO"));
    bool trusted = mac_.privacy().isAccessibilityTrusted();
    if (prompt && !trusted) mac_.record("system", "Accessibility prompt: open System Preferences to allow \"" +
                                                      mac_.configuration().hostName + "\"");
    return trusted;
}

bool SimServices::loadBundleAtPath(std::string_view path) {
    ++loads_[std::string(path)];
    send("NSBundle load " + std::string(path));
    if (path == photosFrameworkPath && releaseAtLeast(mac_, 10, 11)) return photosLoaded_ = true;
    if (path == assetsLibraryServicesPath && releaseAtLeast(mac_, 10, 14) && !mac_.configuration().appStoreBuild)
        return assetsLibraryServicesLoaded_ = true;
    return false;
}

long SimServices::photosStatus() const {
    if (availability_.photoLibraryStatus) return *availability_.photoLibraryStatus;
    Consent consent = mac_.privacy().consent(PromptedService::Photos);
    // The fault of 10.14: a refusal reads as authorized.
    if (isMojave(mac_) && consent == Consent::Denied) return ServiceAuthorizationStatusAuthorized;
    return codeFor(consent);
}

long SimServices::photoLibraryAuthorizationStatus() {
    send("PHPhotoLibrary authorizationStatus");
    return photosStatus();
}

void SimServices::requestPhotoLibraryAuthorization(std::function<void(long status)> handler) {
    send("PHPhotoLibrary requestAuthorization:");
    requireUsageDescription("NSPhotoLibraryUsageDescription", 10, 14);
    requestService(PromptedService::Photos, [this, handler](bool) { handler(photosStatus()); });
}

std::optional<PlatformURL> SimServices::systemPhotoLibraryURL() {
    send("PHPhotoLibrary systemPhotoLibraryURL");
    return availability_.systemPhotoLibraryURL;
}

std::shared_ptr<PhotosPrivacyObject> SimServices::photosPrivacySharedInstance() {
    send("PLPrivacy sharedInstance");
    if (availability_.photosPrivacy.sharedInstanceIsNil) return nullptr;
    return std::make_shared<PrivacyObject>(*this);
}

Data SimServices::bookmarkDataForPath(std::string_view path) {
    std::string text = std::string(bookmarkMagic) + std::string(path);
    return Data{std::vector<std::uint8_t>(text.begin(), text.end())};
}

std::string SimServices::photoLibraryPath() const {
    return mac_.homeDirectory() + "/" + std::string(SimPrivacy::photoLibraryDirectory);
}

BookmarkResolution SimServices::resolveBookmarkData(const Data& bookmark, unsigned long options) {
    send("CFURLCreateByResolvingBookmarkData options " + std::to_string(options));
    std::string text(bookmark.bytes.begin(), bookmark.bytes.end());
    if (text.rfind(bookmarkMagic, 0) != 0)
        return {std::nullopt, "The file couldn't be opened because it isn't in the correct format."};
    std::string path = text.substr(bookmarkMagic.size());
    if (!mac_.fileSystem().fileExistsAtPath(path, nullptr))
        return {std::nullopt, "The file couldn't be opened because it doesn't exist."};
    return {PlatformURL{true, path}, {}};
}

std::optional<bool> SimServices::preflightScreenCaptureAccess() {
    if (!availability_.screenCapture) return std::nullopt;
    send("CGPreflightScreenCaptureAccess");
    return mac_.privacy().consent(PromptedService::ScreenRecording) == Consent::Authorized &&
           !mac_.privacy().screenRecordingAwaitsRelaunch();
}

std::optional<bool> SimServices::requestScreenCaptureAccess() {
    if (!availability_.screenCapture) return std::nullopt;
    send("CGRequestScreenCaptureAccess");
    if (mac_.privacy().consent(PromptedService::ScreenRecording) == Consent::Authorized) return true;
    // Reported: the prompt comes up once per application, whatever the
    // answer, and the call returns before the user has answered.
    if (mac_.privacy().consent(PromptedService::ScreenRecording) == Consent::NotDetermined && !screenCapturePromptShown_) {
        screenCapturePromptShown_ = true;
        mac_.privacy().askUser("Screen Recording", [this](bool allowed) {
            mac_.privacy().setConsent(PromptedService::ScreenRecording, allowed ? Consent::Authorized : Consent::Denied);
        });
    }
    return false;
}

std::optional<long> SimServices::hidCheckAccess(long requestType) {
    if (!availability_.hidAccess) return std::nullopt;
    send("IOHIDCheckAccess " + std::to_string(requestType));
    if (requestType != kIOHIDRequestTypeListenEvent) return kIOHIDAccessTypeUnknown;
    switch (mac_.privacy().consent(PromptedService::InputMonitoring)) {
    case Consent::Authorized: return kIOHIDAccessTypeGranted;
    case Consent::Denied:
    case Consent::Restricted: return kIOHIDAccessTypeDenied;
    case Consent::NotDetermined: break;
    }
    return kIOHIDAccessTypeUnknown;
}

std::optional<bool> SimServices::hidRequestAccess(long requestType) {
    if (!availability_.hidAccess) return std::nullopt;
    send("IOHIDRequestAccess " + std::to_string(requestType));
    // The call waits for the user: on the main thread the host hangs until
    // then, which the simulated Mac notes.
    if (mac_.runLoop().isMainThread()) {
        ++mainThreadBlockingCalls_;
        mac_.record("system", "IOHIDRequestAccess blocks the main thread: the host hangs until the user answers");
    }
    if (requestType != kIOHIDRequestTypeListenEvent) return false;
    auto& privacy = mac_.privacy();
    Consent consent = privacy.consent(PromptedService::InputMonitoring);
    if (consent != Consent::NotDetermined) return consent == Consent::Authorized;
    auto allowed = privacy.askUserAndWait("Input Monitoring");
    if (!allowed) return false;
    privacy.setConsent(PromptedService::InputMonitoring, *allowed ? Consent::Authorized : Consent::Denied);
    return *allowed;
}

std::optional<PromptedService> SimServices::captureDevice(std::string_view mediaType) {
    if (mediaType == AVMediaTypeVideo) return PromptedService::Camera;
    if (mediaType == AVMediaTypeAudio) return PromptedService::Microphone;
    return std::nullopt;
}

std::optional<long> SimServices::captureDeviceAuthorizationStatus(std::string_view mediaType) {
    if (!availability_.captureDevice) return std::nullopt;
    send("AVCaptureDevice authorizationStatusForMediaType: " + std::string(mediaType));
    auto device = captureDevice(mediaType);
    return device ? codeFor(mac_.privacy().consent(*device)) : ServiceAuthorizationStatusNotDetermined;
}

bool SimServices::requestCaptureDeviceAccess(std::string_view mediaType, std::function<void(bool granted)> completion) {
    if (!availability_.captureDevice) return false;
    send("AVCaptureDevice requestAccessForMediaType: " + std::string(mediaType));
    auto device = captureDevice(mediaType);
    if (!device) {
        mac_.runLoop().dispatchOnSystemQueue(0, [completion] { completion(false); });
        return true;
    }
    requireUsageDescription(*device == PromptedService::Camera ? "NSCameraUsageDescription" : "NSMicrophoneUsageDescription",
                            10, 14);
    requestService(*device, std::move(completion));
    return true;
}

std::optional<long> SimServices::bluetoothAuthorization() {
    if (!availability_.bluetoothAuthorization) return std::nullopt;
    send("CBManager authorization");
    return codeFor(mac_.privacy().consent(PromptedService::Bluetooth));
}

bool SimServices::requestBluetoothAccess(std::function<void(long authorization)> completion) {
    if (!availability_.bluetoothAuthorization) return false;
    send("CBCentralManager initWithDelegate:queue:options:");
    requireUsageDescription("NSBluetoothAlwaysUsageDescription", 11, 0);
    requestService(PromptedService::Bluetooth,
                   [this, completion](bool) { completion(codeFor(mac_.privacy().consent(PromptedService::Bluetooth))); });
    return true;
}

void SimServices::setLibraryPreference(LibraryPreference preference) {
    Value canonical;
    switch (preference) {
    case LibraryPreference::Absent:
        mac_.defaults().setAppValue("com.apple.photolibraryd", "WellKnownLibraryPathCache", Value());
        return;
    case LibraryPreference::ValidBookmark: canonical = bookmarkDataForPath(photoLibraryPath()); break;
    case LibraryPreference::UnresolvableBookmark:
        canonical = Data{{0x62, 0x6f, 0x6f, 0x6b, 0x00, 0x00, 0x00, 0x00}};  // "book" and nothing after
        break;
    case LibraryPreference::NotData: canonical = photoLibraryPath(); break;
    }
    Value::Dictionary cache{{"kRDLibraryKey_Canonical", canonical}};
    mac_.defaults().setAppValue("com.apple.photolibraryd", "WellKnownLibraryPathCache",
                                Value(Value::Dictionary{{"cache", Value(cache)}}));
}

}  // namespace vantro::sim
