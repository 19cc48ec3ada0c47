#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

namespace {

Platform& platform() { return HostProcess::current().platform(); }

// EventKit's and Contacts' codes: authorized gives 2, denied 1, and
// everything else, restricted and codes of later systems included, 0.
PrivacyAuthorizationStatus statusForServiceCode(long code) {
    if (code == ServiceAuthorizationStatusAuthorized) return PrivacyAuthorizationStatusAuthorized;
    if (code == ServiceAuthorizationStatusDenied) return PrivacyAuthorizationStatusDenied;
    return PrivacyAuthorizationStatusNotDetermined;
}

bool isAtLeastElCapitan() { return platform().system().isOperatingSystemAtLeastVersion({10, 11, 0}); }

bool isAtLeastSonoma() { return flooredAppKitVersion() >= NSAppKitVersionNumber14_0; }

// EventKit's codes. From macOS 14 the user may let an application add events
// without reading any (write only). Calendars and Reminders here mean reading
// them as well, which that access does not allow and which only the user can
// widen, in System Settings: it reads as a refusal. Before 14 no such code
// exists, and a code a later system adds reads as not determined.
PrivacyAuthorizationStatus statusForEventStoreCode(long code) {
    if (code == EKAuthorizationStatusWriteOnly && isAtLeastSonoma()) return PrivacyAuthorizationStatusDenied;
    return statusForServiceCode(code);
}

std::string_view fullAccessRequest(long entityType) {
    return entityType == EKEntityTypeReminder ? "requestFullAccessToRemindersWithCompletion:"
                                              : "requestFullAccessToEventsWithCompletion:";
}

constexpr std::string_view statusForEntityType = "authorizationStatusForEntityType:";

}  // namespace

std::shared_ptr<VantroRequestStatusCenter> VantroRequestStatusCenter::retainedSelf() {
    if (auto strong = weak_from_this().lock()) return strong;
    return std::shared_ptr<VantroRequestStatusCenter>(std::shared_ptr<void>(), this);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::fullDiskAccessAuthorizationStatus() {
    if (flooredAppKitVersion() <= 1561.0) return PrivacyAuthorizationStatusAuthorized;
    // A missing Full Disk Access is a refusal, never "not determined".
    return hasFullDiskAccess() ? PrivacyAuthorizationStatusAuthorized : PrivacyAuthorizationStatusDenied;
}

void VantroRequestStatusCenter::requestFullDiskAccessAuthorization(bool silent) {
    if (hasFullDiskAccess() || silent) return;
    Vantro::sharedKit()->askAccessForPanelIdentifier(VantroPrivacyFullDiskAccess);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::calendarsAuthorizationStatus() {
    return statusForEventStoreCode(platform().services().eventStoreAuthorizationStatus(EKEntityTypeEvent));
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::remindersAuthorizationStatus() {
    return statusForEventStoreCode(platform().services().eventStoreAuthorizationStatus(EKEntityTypeReminder));
}

void VantroRequestStatusCenter::requestCalendarsAuthorization(bool silent) {
    requestEventStoreAccess(EKEntityTypeEvent, VantroPrivacyCalendars, silent);
}

void VantroRequestStatusCenter::requestRemindersAuthorization(bool silent) {
    requestEventStoreAccess(EKEntityTypeReminder, VantroPrivacyReminders, silent);
}

void VantroRequestStatusCenter::requestEventStoreAccess(long entityType, PrivacyCategoryIdentifier identifier, bool silent) {
    auto& services = platform().services();
    auto* runLoop = &platform().runLoop();
    // The answer comes on a queue of the system's choosing: it touches nothing
    // until it is back on the main queue, and keeps the status center alive
    // until then.
    auto answer = [self = retainedSelf(), runLoop, identifier, silent](bool granted, const PlatformError*) {
        runLoop->dispatchAsyncMain([self, identifier, granted, silent] {
            if (!granted && !silent) self->alertOpenPrivacyPreferences(identifier);
        });
    };
    // From macOS 14 the request of earlier systems no longer asks the user:
    // for an application built with a current SDK it answers at once with an
    // error, and the user would see the refusal alert without ever being
    // asked. There the full-access request, found at run time, is the one
    // that asks.
    const bool fullAccess =
        isAtLeastSonoma() && services.classInstancesRespondToSelector("EKEventStore", fullAccessRequest(entityType));
    if (!hostDeclaresUsageDescription(identifier, fullAccess)) return;
    if (fullAccess) {
        services.requestFullEventStoreAccess(entityType, std::move(answer));
        return;
    }
    services.requestEventStoreAccess(entityType, std::move(answer));
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::contactsAuthorizationStatus() {
    auto& services = platform().services();
    if (isAtLeastElCapitan()) {
        for (std::string_view className : {"CNAuthorization", "CNContactStore"}) {
            if (services.classRespondsToSelector(className, statusForEntityType))
                return statusForServiceCode(services.contactsAuthorizationStatus(className, CNEntityTypeContacts));
        }
        return PrivacyAuthorizationStatusNotDetermined;
    }
    // Before 10.11 the system cannot tell without asking: the address book is
    // consulted only once the host has asked for it.
    if (!allowPotentiallyVerboseRechecks()) return PrivacyAuthorizationStatusNotDetermined;
    if (!platform().defaults().boolForKey(kContactsAccessRequested)) return PrivacyAuthorizationStatusNotDetermined;
    return services.sharedAddressBookExists() ? PrivacyAuthorizationStatusAuthorized : PrivacyAuthorizationStatusDenied;
}

void VantroRequestStatusCenter::requestContactsAuthorization(bool silent) {
    auto& services = platform().services();
    if (isAtLeastElCapitan()) {
        if (!services.classExists("CNContactStore")) return;
        if (!hostDeclaresUsageDescription(VantroPrivacyContacts)) return;
        auto* runLoop = &platform().runLoop();
        services.requestContactsAccess(
            CNEntityTypeContacts, [self = retainedSelf(), runLoop, silent](bool granted, const PlatformError*) {
                runLoop->dispatchAsyncMain([self, granted, silent] {
                    if (!granted && !silent) self->alertOpenPrivacyPreferences(VantroPrivacyContacts);
                });
            });
        return;
    }
    // In this order: the address book is asked for before the flag is written.
    bool available = services.sharedAddressBookExists();
    platform().defaults().setBool(true, kContactsAccessRequested);
    if (!available && !silent) alertOpenPrivacyPreferences(VantroPrivacyContacts);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::folderStatus(PrivacyCategoryIdentifier identifier,
                                                                   std::string_view flag) {
    if (flooredAppKitVersion() <= 1671.0) return PrivacyAuthorizationStatusAuthorized;
    if (hasFullDiskAccess()) return PrivacyAuthorizationStatusAuthorized;
    if (!allowPotentiallyVerboseRechecks()) return PrivacyAuthorizationStatusNotDetermined;
    // A folder never asked for is not touched: listing it would raise the
    // system's question unasked.
    if (!platform().defaults().boolForKey(flag)) return PrivacyAuthorizationStatusNotDetermined;
    return filesAndFoldersAuthorizationStatus(identifier);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::desktopFolderAuthorizationStatus() {
    return folderStatus(VantroPrivacyDesktopFolder, kDesktopFolderAccessRequested);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::documentsFolderAuthorizationStatus() {
    return folderStatus(VantroPrivacyDocumentsFolder, kDocumentsFolderAccessRequested);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::downloadsFolderAuthorizationStatus() {
    return folderStatus(VantroPrivacyDownloadsFolder, kDownloadsFolderAccessRequested);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::foldersAndVolumesAuthorizationStatus() {
    if (flooredAppKitVersion() <= 1671.0) return PrivacyAuthorizationStatusAuthorized;
    // Unlike Full Disk Access itself, its absence reads here as "not determined".
    return hasFullDiskAccess() ? PrivacyAuthorizationStatusAuthorized : PrivacyAuthorizationStatusNotDetermined;
}

void VantroRequestStatusCenter::requestFolder(PrivacyCategoryIdentifier identifier, std::string_view flag, bool silent) {
    // The listing is what makes the system ask the user, silent or not.
    PrivacyAuthorizationStatus status = filesAndFoldersAuthorizationStatus(identifier);
    // The first refusal is the system's own answer; only a folder asked for
    // before, and still refused, leads the user to Full Disk Access.
    if (status == PrivacyAuthorizationStatusDenied && !silent && platform().defaults().boolForKey(flag))
        requestFullDiskAccessAuthorization(false);
    platform().defaults().setBool(true, flag);
}

void VantroRequestStatusCenter::requestDesktopFolderAuthorization(bool silent) {
    requestFolder(VantroPrivacyDesktopFolder, kDesktopFolderAccessRequested, silent);
}

void VantroRequestStatusCenter::requestDocumentsFolderAuthorization(bool silent) {
    requestFolder(VantroPrivacyDocumentsFolder, kDocumentsFolderAccessRequested, silent);
}

void VantroRequestStatusCenter::requestDownloadsFolderAuthorization(bool silent) {
    requestFolder(VantroPrivacyDownloadsFolder, kDownloadsFolderAccessRequested, silent);
}

void VantroRequestStatusCenter::requestAndFoldersAuthorization(bool silent) {
    if (!silent) Vantro::openPrivacyPreferencesWithAnchor(VantroPrivacyFullDiskAccess);
}

PrivacyAuthorizationStatus VantroRequestStatusCenter::accessibilityAuthorizationStatus() {
    // Never lets the system prompt; an untrusted process is "not determined".
    return platform().services().isProcessTrustedWithOptions(false) ? PrivacyAuthorizationStatusAuthorized
                                                                      : PrivacyAuthorizationStatusNotDetermined;
}

void VantroRequestStatusCenter::requestAccessibilityAuthorizationStatus(bool) {
    // `silent` is ignored on purpose: an untrusted process always gets the
    // alert, and the system's own Accessibility prompt is never shown.
    if (platform().services().isProcessTrustedWithOptions(false)) return;
    alertOpenPrivacyPreferences(flooredAppKitVersion() > 1265.0 ? VantroPrivacyAccessibility : VantroPrivacyAssistive);
}

}  // namespace vantro
