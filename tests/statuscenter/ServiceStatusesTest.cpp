#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "statuscenter/CenterFixture.h"

namespace vantro {
namespace {

using sim::Consent;
using sim::PromptAnswer;
using sim::PromptedService;
using sim::ProtectedFolder;
using test::AlertRecordingCenter;
using test::opened;

const std::string paneAtAllFiles = test::securityPane("Privacy_AllFiles");

TEST(ServiceStatuses, FullDiskAccessIsRefusedAbove1561AndFoldersAndVolumesNotDeterminedAbove1671WithoutIt) {
    struct Case { double appKit; bool granted; PrivacyAuthorizationStatus fullDiskAccess, folders; bool probes; } cases[] = {
        {1561.0, false, 2, 2, false}, {1561.6, false, 2, 2, false}, {1562.0, false, 1, 2, true}, {1562.0, true, 2, 2, true},
        {1671.99, false, 1, 2, true}, {1672.0, false, 1, 0, true},  {1672.0, true, 2, 2, true},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit));
        mac.privacy().setFullDiskAccess(c.granted);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        EXPECT_EQ(center->fullDiskAccessAuthorizationStatus(), c.fullDiskAccess) << c.appKit;
        EXPECT_EQ(mac.fileSystem().listingCount() > 0, c.probes) << c.appKit;
        for (auto id : {VantroPrivacyFilesAndFolders, VantroPrivacyNetworkVolume, VantroPrivacyRemovableVolume})
            EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(id), c.folders) << c.appKit << id;
    }
}

// The Full Disk Access request guides only a loud request without it; the
// folders-and-volumes request opens the pane whenever loud, without looking.
TEST(ServiceStatuses, WhichRequestsOpenThePaneAtFullDiskAccess) {
    struct Case { bool folders, granted, silent, opens; } cases[] = {
        {false, false, false, true}, {false, false, true, false}, {false, true, false, false},
        {true, true, false, true},   {true, true, true, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        mac.privacy().setFullDiskAccess(c.granted);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        if (c.folders) center->requestAndFoldersAuthorization(c.silent);
        else center->requestFullDiskAccessAuthorization(c.silent);
        EXPECT_EQ(opened(mac, paneAtAllFiles), c.opens ? 1u : 0u) << c.folders << c.granted << c.silent;
        if (c.folders) {
            EXPECT_EQ(mac.fileSystem().listingCount(), 0u) << "the status is not looked at";
        }
        mac.runUntilIdle(5);
        EXPECT_EQ(mac.workspace().openedURLs().empty(), !c.opens) << c.folders << c.granted << c.silent;
    }
}

TEST(ServiceStatuses, FolderStatusGates) {
    struct Case { const char* name; double appKit; bool fullDiskAccess, rechecks, flag; PrivacyAuthorizationStatus status; bool lists; } cases[] = {
        {"at 1671 nothing is protected", 1671.5, false, true, true, 2, false},
        {"Full Disk Access opens every folder", 1894.5, true, true, false, 2, true},
        {"no rechecks", 1894.5, false, false, true, 0, true},
        {"never asked for", 1894.5, false, true, false, 0, true},
        {"asked for and refused", 1894.5, false, true, true, 1, true},
    };
    for (const auto& c : cases) {
        for (auto [id, flag, folder] : {std::tuple{VantroPrivacyDesktopFolder, kDesktopFolderAccessRequested, ProtectedFolder::Desktop},
                                        std::tuple{VantroPrivacyDocumentsFolder, kDocumentsFolderAccessRequested, ProtectedFolder::Documents},
                                        std::tuple{VantroPrivacyDownloadsFolder, kDownloadsFolderAccessRequested, ProtectedFolder::Downloads}}) {
            sim::SimulatedMac mac(test::atAppKit(c.appKit));
            mac.privacy().setFullDiskAccess(c.fullDiskAccess);
            mac.privacy().setFolderConsent(folder, Consent::Denied);
            if (c.flag) mac.defaults().setBool(true, flag);
            auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
            center->setAllowPotentiallyVerboseRechecks(c.rechecks);
            EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(id), c.status) << c.name << " " << id;
            // Only the Full Disk Access probe may have listed; the folder is
            // listed only when its status is the probe's.
            EXPECT_EQ(mac.fileSystem().listingsOf("~/" + std::string(sim::SimPrivacy::folderName(folder))), c.status == 1 ? 1u : 0u)
                << c.name;
            EXPECT_EQ(mac.fileSystem().listingCount() > 0, c.lists) << c.name;
        }
    }
}

TEST(ServiceStatuses, TheFirstFolderRequestIsQuietAndTheSecondGuides) {
    sim::SimulatedMac mac;
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_EQ(center->desktopFolderAuthorizationStatus(), 0);
    EXPECT_EQ(mac.fileSystem().listingsOf("~/Desktop"), 0u) << "a status query does not raise the prompt";

    mac.privacy().answerNextPrompt(PromptAnswer::deny(1.0));
    center->requestDesktopFolderAuthorization(false);
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
    EXPECT_TRUE(mac.defaults().boolForKey(kDesktopFolderAccessRequested));
    // The listing (and the system's question) comes before the flag.
    auto prompt = mac.timeline().matching("would like to access files in your Desktop folder");
    auto flag = mac.timeline().matching("VantroDesktopFolderAccessRequested = YES");
    ASSERT_EQ(prompt.size(), 1u);
    ASSERT_EQ(flag.size(), 1u);
    EXPECT_LT(prompt[0].time, flag[0].time);
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.workspace().openedURLs().size(), 0u);
    EXPECT_TRUE(mac.alerts().shown().empty());
    EXPECT_EQ(center->desktopFolderAuthorizationStatus(), 1);

    center->requestDesktopFolderAuthorization(true);
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.workspace().openedURLs().size(), 0u) << "a silent second request only probes";

    center->requestDesktopFolderAuthorization(false);
    mac.runUntilIdle(5);
    EXPECT_GE(opened(mac, paneAtAllFiles), 1u) << "the Full Disk Access guide";
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
    EXPECT_EQ(mac.fileSystem().listingsOf("~/Desktop"), 4u);
}

TEST(ServiceStatuses, AGrantedFolderRequestSetsItsFlagAndGuidesNowhere) {
    sim::SimulatedMac mac;
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    mac.privacy().answerNextPrompt(PromptAnswer::allow());
    center->requestDownloadsFolderAuthorization(true);
    EXPECT_TRUE(mac.defaults().boolForKey(kDownloadsFolderAccessRequested));
    EXPECT_FALSE(mac.defaults().boolForKey(kDesktopFolderAccessRequested));
    EXPECT_EQ(center->downloadsFolderAuthorizationStatus(), 2);
    center->requestDownloadsFolderAuthorization(false);
    mac.runUntilIdle(5);
    EXPECT_TRUE(mac.workspace().openedURLs().empty());
}

// Restricted reads as not determined; from 14, write-only event access (4)
// reads as refused, for calendars and reminders only.
TEST(ServiceStatuses, EventKitAndContactsCodesMapToStatuses) {
    struct Case { const char* release; long code; PrivacyAuthorizationStatus events, contacts; } cases[] = {
        {"10.15", 0, 0, 0}, {"10.15", 1, 0, 0}, {"10.15", 2, 1, 1}, {"10.15", 3, 2, 2}, {"10.15", 4, 0, 0}, {"10.15", -1, 0, 0},
        {"13", 4, 0, 0},    {"14", 4, 1, 0},    {"27", 4, 1, 0},    {"14", 3, 2, 2},    {"14", 2, 1, 1},    {"14", 1, 0, 0},
        {"14", 5, 0, 0},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.services().availability().eventStoreStatus = c.code;
        mac.services().availability().contactsStatus = c.code;
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        EXPECT_EQ(center->calendarsAuthorizationStatus(), c.events) << c.release << " code " << c.code;
        EXPECT_EQ(center->remindersAuthorizationStatus(), c.events) << c.release << " code " << c.code;
        EXPECT_EQ(center->contactsAuthorizationStatus(), c.contacts) << c.release << " code " << c.code;
    }
    sim::SimulatedMac mac;
    mac.privacy().setConsent(PromptedService::Calendars, Consent::Restricted);
    mac.privacy().setConsent(PromptedService::Reminders, Consent::Authorized);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_EQ(center->calendarsAuthorizationStatus(), 0);
    EXPECT_EQ(center->remindersAuthorizationStatus(), 2);
    EXPECT_EQ(mac.services().messages(), (std::vector<std::string>{"EKEventStore authorizationStatusForEntityType: 0",
                                                                   "EKEventStore authorizationStatusForEntityType: 1"}));
}

TEST(ServiceStatuses, ALoudRefusedCalendarsRequestAlertsOnlyAfterTheHopToTheMainQueue) {
    sim::SimulatedMac mac;
    mac.privacy().answerNextPrompt(PromptAnswer::deny(0));
    VantroRequestStatusCenter::sharedRequestStatusCenter()->requestCalendarsAuthorization(false);
    EXPECT_TRUE(mac.alerts().shown().empty());
    mac.runOnePass();  // the user answers
    mac.runOnePass();  // EventKit calls the completion on a queue of its own
    ASSERT_TRUE(mac.timeline().contains("Calendars answers the request on a system queue: not granted"));
    EXPECT_TRUE(mac.alerts().shown().empty()) << "nothing happens off the main thread";
    mac.runOnePass();  // the main queue
    ASSERT_EQ(mac.alerts().shown().size(), 1u);
    EXPECT_TRUE(mac.alerts().shown()[0].onMainThread);
    EXPECT_EQ(mac.alerts().shown()[0].alert.messageText, "Permission Refused");
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.alerts().shown().size(), 1u);
}

TEST(ServiceStatuses, EventKitRequestsAlertOnlyWhenRefusedAndLoud) {
    struct Case { const char* name; bool reminders; Consent before; std::optional<PromptAnswer> answer; bool silent;
                  std::vector<std::string> alerts; Consent after; } cases[] = {
        {"granted", false, Consent::NotDetermined, PromptAnswer::allow(), false, {}, Consent::Authorized},
        {"already granted", true, Consent::Authorized, std::nullopt, false, {}, Consent::Authorized},
        {"already refused", true, Consent::Denied, std::nullopt, false, {"Privacy_Reminders"}, Consent::Denied},
        {"restricted", false, Consent::Restricted, std::nullopt, false, {"Privacy_Calendars"}, Consent::Restricted},
        {"never answered", false, Consent::NotDetermined, PromptAnswer::never(), false, {}, Consent::NotDetermined},
        {"refused reminders", true, Consent::NotDetermined, PromptAnswer::deny(), false, {"Privacy_Reminders"}, Consent::Denied},
        {"silent refusal", false, Consent::NotDetermined, PromptAnswer::deny(0.5), true, {}, Consent::Denied},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        auto service = c.reminders ? PromptedService::Reminders : PromptedService::Calendars;
        mac.privacy().setConsent(service, c.before);
        if (c.answer) mac.privacy().answerNextPrompt(*c.answer);
        auto center = makeShared<AlertRecordingCenter>();
        if (c.reminders) center->requestRemindersAuthorization(c.silent);
        else center->requestCalendarsAuthorization(c.silent);
        mac.runUntilIdle(30);
        EXPECT_EQ(center->alerts(), c.alerts) << c.name;
        EXPECT_TRUE(center->record->allOnMainThread) << c.name;
        EXPECT_EQ(mac.privacy().consent(service), c.after) << c.name;
        EXPECT_EQ(mac.privacy().prompts().size(), c.answer ? 1u : 0u) << c.name;
    }
}

TEST(ServiceStatuses, FromSonomaCalendarsAndRemindersAskForFullAccess) {
    struct Case { const char* release; bool reminders, fullAccessRequestExists; PromptAnswer answer; std::string sent;
                  std::vector<std::string> alerts; } cases[] = {
        {"13", false, false, PromptAnswer::deny(), "EKEventStore requestAccessToEntityType: 0", {"Privacy_Calendars"}},
        {"14", false, true, PromptAnswer::allow(), "EKEventStore requestFullAccessToEventsWithCompletion:", {}},
        {"14", true, true, PromptAnswer::deny(), "EKEventStore requestFullAccessToRemindersWithCompletion:", {"Privacy_Reminders"}},
        {"26", false, true, PromptAnswer::deny(), "EKEventStore requestFullAccessToEventsWithCompletion:", {"Privacy_Calendars"}},
        // Without the full-access request the old one is all there is.
        {"14", true, false, PromptAnswer::allow(), "EKEventStore requestAccessToEntityType: 1", {}},
    };
    for (const auto& c : cases) {
        const std::string name = std::string(c.release) + (c.reminders ? " reminders" : " calendars");
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release});
        mac.services().availability().eventStoreFullAccess = c.fullAccessRequestExists;
        mac.privacy().answerNextPrompt(c.answer);
        auto center = makeShared<AlertRecordingCenter>();
        if (c.reminders) center->requestRemindersAuthorization(false);
        else center->requestCalendarsAuthorization(false);
        mac.runUntilIdle(30);
        EXPECT_EQ(mac.privacy().prompts().size(), 1u) << name << ": the user is asked";
        EXPECT_EQ(mac.services().count(c.sent), 1u) << name;
        EXPECT_EQ(center->alerts(), c.alerts) << name;
    }
    // The request of earlier systems, made on 14, asks nobody and is refused
    // at once: what the full-access request spares the user.
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "14"});
    std::optional<bool> granted;
    std::string domain;
    mac.services().requestEventStoreAccess(EKEntityTypeEvent, [&](bool g, const PlatformError* error) {
        granted = g;
        if (error) domain = error->domain;
    });
    mac.runUntilIdle(30);
    EXPECT_EQ(granted, std::optional<bool>(false));
    EXPECT_EQ(domain, "EKErrorDomain");
    EXPECT_TRUE(mac.privacy().prompts().empty());
}

TEST(ServiceStatuses, APendingAnswerKeepsTheStatusCenterAlive) {
    for (bool calendars : {true, false}) {
        sim::SimulatedMac mac;
        auto center = makeShared<AlertRecordingCenter>();
        auto record = center->record;
        std::weak_ptr<AlertRecordingCenter> weak = center;
        mac.privacy().answerNextPrompt(PromptAnswer::deny(2.0));
        if (calendars) center->requestCalendarsAuthorization(false);
        else center->requestContactsAuthorization(false);
        center.reset();
        mac.runFor(1.0);
        EXPECT_FALSE(weak.expired());
        mac.runUntilIdle(5);
        EXPECT_EQ(record->alerts.size(), 1u);
        EXPECT_TRUE(weak.expired()) << "released once the answer has been handled";
    }
}

TEST(ServiceStatuses, ContactsFromElCapitanAskTheContactsClasses) {
    struct Case { const char* name; bool contactStore, authorization, authorizationAnswers; const char* asked;
                  PrivacyAuthorizationStatus status; } cases[] = {
        {"CNAuthorization answers", true, true, true, "CNAuthorization authorizationStatusForEntityType: 0", 1},
        {"CNAuthorization without the status", true, true, false, "CNContactStore authorizationStatusForEntityType: 0", 1},
        {"CNContactStore alone", true, false, false, "CNContactStore authorizationStatusForEntityType: 0", 1},
        {"neither class", false, false, false, nullptr, 0},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.11"});
        auto& availability = mac.services().availability();
        availability.contactStore = c.contactStore;
        availability.contactsAuthorization = c.authorization;
        availability.contactsAuthorizationAnswersStatus = c.authorizationAnswers;
        mac.privacy().setConsent(PromptedService::Contacts, Consent::Denied);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        // Neither the recheck switch nor the flag matters from 10.11 on.
        center->setAllowPotentiallyVerboseRechecks(false);
        EXPECT_EQ(center->contactsAuthorizationStatus(), c.status) << c.name;
        EXPECT_EQ(mac.services().messages(), (c.asked ? std::vector<std::string>{c.asked} : std::vector<std::string>{})) << c.name;
    }
}

TEST(ServiceStatuses, AContactsRequestFromElCapitanLeavesTheFlagAlone) {
    for (std::string release : {"10.11", "15"}) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = release});
        auto center = makeShared<AlertRecordingCenter>();
        mac.privacy().answerNextPrompt(PromptAnswer::deny());
        center->requestContactsAuthorization(false);
        EXPECT_TRUE(center->alerts().empty()) << "the answer comes later";
        mac.runUntilIdle(5);
        EXPECT_EQ(center->alerts(), std::vector<std::string>{"Privacy_Contacts"}) << release;
        EXPECT_TRUE(center->record->allOnMainThread);
        EXPECT_FALSE(mac.defaults().boolForKey(kContactsAccessRequested)) << release;
        EXPECT_EQ(mac.services().count("ABAddressBook sharedAddressBook"), 0u);
    }
    sim::SimulatedMac without(sim::MacConfiguration{.release = "10.12"});
    without.services().availability().contactStore = false;
    auto center = makeShared<AlertRecordingCenter>();
    center->requestContactsAuthorization(false);
    without.runUntilIdle(5);
    EXPECT_TRUE(center->alerts().empty());
    EXPECT_TRUE(without.services().messages().empty());
    EXPECT_TRUE(without.privacy().prompts().empty());
}

TEST(ServiceStatuses, ContactsBeforeElCapitanGoThroughTheAddressBookAndTheFlag) {
    struct Case { const char* name; bool rechecks, flag; Consent consent; PrivacyAuthorizationStatus status; bool asksAddressBook; } cases[] = {
        {"no rechecks", false, true, Consent::Authorized, 0, false},
        {"never requested", true, false, Consent::Authorized, 0, false},
        {"granted", true, true, Consent::Authorized, 2, true},
        {"refused", true, true, Consent::Denied, 1, true},
        {"restricted", true, true, Consent::Restricted, 1, true},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.10"});
        mac.privacy().setConsent(PromptedService::Contacts, c.consent);
        if (c.flag) mac.defaults().setBool(true, kContactsAccessRequested);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        center->setAllowPotentiallyVerboseRechecks(c.rechecks);
        EXPECT_EQ(center->contactsAuthorizationStatus(), c.status) << c.name;
        EXPECT_EQ(mac.services().count("ABAddressBook sharedAddressBook"), c.asksAddressBook ? 1u : 0u) << c.name;
    }
}

TEST(ServiceStatuses, AContactsRequestBeforeElCapitanAlertsAtOnce) {
    struct Case { Consent consent; bool silent; std::size_t alerts; } cases[] = {
        {Consent::Denied, false, 1}, {Consent::Denied, true, 0}, {Consent::Authorized, false, 0}, {Consent::NotDetermined, false, 1}};
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.9"});
        mac.privacy().setConsent(PromptedService::Contacts, c.consent);
        auto center = makeShared<AlertRecordingCenter>();
        center->requestContactsAuthorization(c.silent);
        EXPECT_EQ(center->alerts().size(), c.alerts) << "on the calling thread, before returning";
        EXPECT_EQ(mac.timeline().matching("VantroContactsAccessRequested = YES").size(), 1u);
        EXPECT_EQ(mac.services().count("ABAddressBook sharedAddressBook"), 1u);
    }
}

TEST(ServiceStatuses, AccessibilityNeverPromptsAndAlertsEvenWhenSilent) {
    struct Case { double appKit; bool trusted, silent; PrivacyAuthorizationStatus status; std::vector<std::string> alerts; } cases[] = {
        {1265.0, false, true, 0, {"Privacy_Assistive"}},      {1265.99, false, false, 0, {"Privacy_Assistive"}},
        {1266.0, false, true, 0, {"Privacy_Accessibility"}}, {2575.3, false, false, 0, {"Privacy_Accessibility"}},
        {1894.5, true, false, 2, {}},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit));
        mac.privacy().setAccessibilityTrusted(c.trusted);
        auto center = makeShared<AlertRecordingCenter>();
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(VantroPrivacyAssistive), c.status);
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(VantroPrivacyAccessibility), c.status);
        center->requestAccessibilityAuthorizationStatus(c.silent);
        EXPECT_EQ(center->alerts(), c.alerts) << c.appKit;
        EXPECT_EQ(mac.services().count("AXIsProcessTrustedWithOptions prompt NO"), 3u);
        EXPECT_EQ(mac.services().count("AXIsProcessTrustedWithOptions prompt YES"), 0u);
    }
}

}  // namespace
}  // namespace vantro
