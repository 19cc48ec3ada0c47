#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "Guide/Vantro.h"
#include "PermissionList/VantroViewController.h"
#include "statuscenter/CenterFixture.h"

namespace vantro {
namespace {

// A status center whose per-service operations say who was asked.
class RecordingStatusCenter : public VantroRequestStatusCenter {
public:
    using VantroRequestStatusCenter::VantroRequestStatusCenter;
    std::vector<std::string> calls;
    PrivacyAuthorizationStatus fullDiskAccessAuthorizationStatus() override { return record("fullDiskAccess", 2); }
    PrivacyAuthorizationStatus accessibilityAuthorizationStatus() override { return record("accessibility", 2); }
    PrivacyAuthorizationStatus foldersAndVolumesAuthorizationStatus() override { return record("foldersAndVolumes", 1); }
    PrivacyAuthorizationStatus photosAuthorizationStatus() override { return record("photos", 1); }
    void requestAccessibilityAuthorizationStatus(bool silent) override { record(silent ? "requestAccessibility silent" : "requestAccessibility", 0); }
    void requestAndFoldersAuthorization(bool silent) override { record(silent ? "requestFolders silent" : "requestFolders", 0); }
    void requestCalendarsAuthorization(bool silent) override { record(silent ? "requestCalendars silent" : "requestCalendars", 0); }

private:
    PrivacyAuthorizationStatus record(const char* what, PrivacyAuthorizationStatus s) {
        calls.emplace_back(what);
        return s;
    }
};

// The status center, the guide and the list exist only under shared
// ownership: their pending answers and delayed work rely on it.
static_assert(!std::is_default_constructible_v<VantroRequestStatusCenter> && !std::is_default_constructible_v<Vantro> &&
              !std::is_default_constructible_v<VantroViewController>);
static_assert(!std::is_default_constructible_v<SharedOwnership> && !std::is_copy_constructible_v<SharedOwnership>);

TEST(StatusDispatch, TheSharedInstanceIsOneAndStartsWithBothFlagsSet) {
    sim::SimulatedMac mac;
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_EQ(center, VantroRequestStatusCenter::sharedRequestStatusCenter());
    EXPECT_TRUE(center->allowPotentiallyVerboseRechecks());
    EXPECT_TRUE(center->canRelyOnPLPrivacyValue());
}

TEST(StatusDispatch, SharedOperationsAndSubclassRedefinitionsAreWhatRuns) {
    sim::SimulatedMac mac;
    auto center = makeShared<RecordingStatusCenter>();
    struct Case { PrivacyCategoryIdentifier identifier; PrivacyAuthorizationStatus status; const char* call; } cases[] = {
        {VantroPrivacyAssistive, 2, "accessibility"},           {VantroPrivacyAccessibility, 2, "accessibility"},
        {VantroPrivacyFilesAndFolders, 1, "foldersAndVolumes"}, {VantroPrivacyNetworkVolume, 1, "foldersAndVolumes"},
        {VantroPrivacyRemovableVolume, 1, "foldersAndVolumes"}, {VantroPrivacyFullDiskAccess, 2, "fullDiskAccess"},
        {VantroPrivacyPhotos, 1, "photos"},
    };
    for (const auto& c : cases) {
        center->calls.clear();
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(c.identifier), c.status) << c.identifier;
        EXPECT_EQ(center->calls, std::vector<std::string>{c.call}) << c.identifier;
    }
    center->calls.clear();
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyAssistive, true);
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyAccessibility, false);
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyDesktopFolder, false);  // not redefined: base runs
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyNetworkVolume, true);
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyCalendars, false);
    EXPECT_EQ(center->calls, (std::vector<std::string>{"requestAccessibility silent", "requestAccessibility", "requestFolders silent",
                                                      "requestCalendars"}));
    EXPECT_TRUE(mac.log().lines().empty());
}

TEST(StatusDispatch, UnsupportedIdentifiersAnswerZeroWithOneLogLineEach) {
    sim::SimulatedMac mac;
    auto center = makeShared<RecordingStatusCenter>();
    std::vector<std::string> expected;
    for (auto identifier : {VantroPrivacyAutomation, VantroPrivacyLocationServices, VantroPrivacyDiagnostics,
                            PrivacyCategoryIdentifier("Privacy_Camera"), PrivacyCategoryIdentifier("")}) {
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(identifier), 0) << identifier;
        expected.push_back("Privacy category identifier not supported: " + std::string(identifier));
    }
    EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(std::nullopt), 0);
    center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyAutomation, false);
    center->requestPrivacyAuthorizationForIdentifier(std::nullopt, true);
    EXPECT_TRUE(center->calls.empty());
    for (const char* more : {"(null)", "Privacy_Automation", "(null)"})
        expected.push_back("Privacy category identifier not supported: " + std::string(more));
    EXPECT_EQ(mac.log().lines(), expected);
}

TEST(RequestTypes, OnlyOneAndTwoAreKept) {
    test::TemporaryResources resources;
    resources.write("RequestTypes.plist", test::plistDictionary("<key>one</key><integer>1</integer><key>two</key><integer>2</integer>"
                                                                "<key>twoText</key><string>2</string><key>three</key><integer>3</integer>"
                                                                "<key>minus</key><integer>-1</integer><key>word</key><string>Grant</string>"
                                                                "<key>real</key><real>1.0</real><key>zero</key><integer>0</integer>"));
    sim::SimulatedMac mac(resources.configuration());
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    struct Case { const char* identifier; PrivacyAuthorizationRequestType type; } cases[] = {
        {"one", 1}, {"two", 2}, {"twoText", 2}, {"three", 0}, {"minus", 0}, {"word", 0}, {"real", 1}, {"zero", 0}, {"absent", 0}};
    for (const auto& c : cases) EXPECT_EQ(center->authorizationRequestTypeForIdentifier(c.identifier), c.type) << c.identifier;
    EXPECT_EQ(center->authorizationRequestTypeForIdentifier(std::nullopt), 0);
    EXPECT_EQ(mac.bundles().reads("RequestTypes.plist"), 1);
}

TEST(RequestTypes, AMissingResourceIsLookedForAgainUntilItAppears) {
    test::TemporaryResources resources;
    resources.remove("RequestTypes.plist");
    sim::SimulatedMac mac(resources.configuration());
    auto typeOfFullDiskAccess = [] {
        return VantroRequestStatusCenter::sharedRequestStatusCenter()->authorizationRequestTypeForIdentifier(VantroPrivacyFullDiskAccess);
    };
    EXPECT_EQ(typeOfFullDiskAccess(), 0);
    resources.write("RequestTypes.plist", "<?xml version=\"1.0\"?><plist><dict><key>");  // unreadable
    EXPECT_EQ(typeOfFullDiskAccess(), 0);
    resources.write("RequestTypes.plist", test::plistDictionary("<key>Privacy_AllFiles</key><integer>1</integer>"));
    EXPECT_EQ(typeOfFullDiskAccess(), 1);
    resources.remove("RequestTypes.plist");
    EXPECT_EQ(typeOfFullDiskAccess(), 1);  // kept for the process
}

// Each service the system asks for is answered by its own consent, never by
// another's: the user who allowed only Reminders has Reminders and nothing
// else, and so on.
TEST(StatusDispatch, EachServiceIsAnsweredByItsOwnConsent) {
    const std::pair<PrivacyCategoryIdentifier, sim::PromptedService> services[] = {
        {VantroPrivacyCalendars, sim::PromptedService::Calendars},
        {VantroPrivacyReminders, sim::PromptedService::Reminders},
        {VantroPrivacyContacts, sim::PromptedService::Contacts},
        {VantroPrivacyPhotos, sim::PromptedService::Photos},
    };
    for (const auto& [allowed, service] : services) {
        sim::SimulatedMac mac;
        mac.privacy().setConsent(service, sim::Consent::Authorized);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        for (const auto& [identifier, unused] : services)
            EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(identifier), identifier == allowed ? 2 : 0)
                << "only " << allowed << " allowed; asked for " << identifier;
    }
}

// The shipped table: what the user grants by hand, and what the system asks for.
TEST(RequestTypes, TheShippedTableSaysHowEachCategoryIsObtained) {
    sim::SimulatedMac mac;
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    for (auto id : {VantroPrivacyFullDiskAccess, VantroPrivacyAccessibility, VantroPrivacyAssistive, VantroPrivacyFilesAndFolders})
        EXPECT_EQ(center->authorizationRequestTypeForIdentifier(id), PrivacyAuthorizationRequestTypeGrant) << id;
    for (auto id : {VantroPrivacyCalendars, VantroPrivacyReminders, VantroPrivacyContacts, VantroPrivacyPhotos, VantroPrivacyDesktopFolder})
        EXPECT_EQ(center->authorizationRequestTypeForIdentifier(id), PrivacyAuthorizationRequestTypeRequest) << id;
}

TEST(RefusalAlert, CancelOpensNothingAndTheFirstButtonOpensTheVeryIdentifier) {
    sim::SimulatedMac mac;
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    for (auto [button, identifier] : {std::pair{1, VantroPrivacyAccessibility}, std::pair{0, VantroPrivacyAccessibility}, std::pair{0, VantroPrivacyPhotos}}) {
        mac.alerts().answerNext(button);
        center->alertOpenPrivacyPreferences(identifier);
    }
    EXPECT_EQ(mac.workspace().openedURLs(),
              (std::vector<std::string>{test::securityPane("Privacy_Accessibility"), test::securityPane("Privacy_Photos")}));
    ASSERT_EQ(mac.alerts().shown().size(), 3u);
    const auto& alert = mac.alerts().shown()[0].alert;
    EXPECT_EQ(alert.style, AlertStyle::Warning);
    EXPECT_EQ(alert.messageText, "Permission Refused");
    EXPECT_EQ(alert.informativeText, "Visit System Privacy Preferences to grant permission.");
    EXPECT_EQ(alert.buttons, (std::vector<std::string>{"Open Privacy Preferences", "Cancel"}));
}

TEST(RefusalAlert, TextsComeFromTheHostsTableInTheUsersLanguage) {
    struct Case { std::vector<std::string> languages; const char* title; const char* cancel; } cases[] = {
        {{"de-DE", "en"}, "Zugriff verweigert", "Abbrechen"}, {{"fr"}, "Autorisation refusée", "Annuler"},
        {{"ja"}, "アクセスが拒否されました", "キャンセル"},   {{"xx"}, "Permission Refused", "Cancel"},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.languages = c.languages});
        VantroRequestStatusCenter::sharedRequestStatusCenter()->alertOpenPrivacyPreferences(VantroPrivacyPhotos);
        ASSERT_EQ(mac.alerts().shown().size(), 1u);
        EXPECT_EQ(mac.alerts().shown()[0].alert.messageText, c.title) << c.languages[0];
        EXPECT_EQ(mac.alerts().shown()[0].alert.buttons.back(), c.cancel) << c.languages[0];
    }
}

}  // namespace
}  // namespace vantro
