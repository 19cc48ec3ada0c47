#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Vocabulary/NewerPrivacyCategories.h"
#include "statuscenter/CenterFixture.h"

namespace vantro {
namespace {

using sim::Consent;
using sim::PromptAnswer;
using sim::PromptedService;
using test::AlertRecordingCenter;
using test::settingsPane;

// The labels of the rows a permission list shows for `identifiers`.
std::vector<std::string> listedLabels(sim::SimulatedMac& mac, std::vector<std::string> identifiers) {
    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers(std::move(identifiers));
    sim::SimPermissionList list(mac, controller);
    list.show();
    std::vector<std::string> labels;
    for (const auto& row : list.rows()) labels.push_back(row.label);
    return labels;
}

TEST(NewerCategories, UntilTheHostTurnsThemOnEveryAnswerIsThatOfAnUnknownIdentifier) {
    sim::SimulatedMac mac(test::atAppKit(2685.4, "26"));
    for (auto identifier : VantroPrivacyNewerIdentifiers) mac.privacy().setConsentForIdentifier(identifier, Consent::Authorized);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    EXPECT_FALSE(VantroRequestStatusCenter::servesNewerPrivacyCategories());
    std::vector<std::string> expected;
    for (auto identifier : VantroPrivacyNewerIdentifiers) {
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(identifier), 0) << identifier;
        // Screen Recording and Input Monitoring are listed as 1 in the
        // resource; unserved, they read as unlisted.
        EXPECT_EQ(center->authorizationRequestTypeForIdentifier(identifier), 0) << identifier;
        center->requestPrivacyAuthorizationForIdentifier(identifier, false);
        // One line for the status and one for the request of each.
        expected.insert(expected.end(), 2, "Privacy category identifier not supported: " + std::string(identifier));
    }
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.log().lines(), expected);
    EXPECT_TRUE(mac.services().messages().empty());
    EXPECT_TRUE(mac.privacy().prompts().empty());
    EXPECT_TRUE(mac.workspace().openedURLs().empty());

    auto guide = Vantro::sharedKit();
    guide->askAccessForPanelIdentifier(VantroPrivacyScreenRecording);
    EXPECT_EQ(guide->message(),
              "Drag Vantro Demo into the list above, or click + below the list and choose Vantro Demo. Then turn on its switch.");
    guide->stop();
    EXPECT_EQ(listedLabels(mac, {std::string(VantroPrivacyCamera), std::string(VantroPrivacyCalendars)}),
              std::vector<std::string>{"Calendars"});
}

TEST(NewerCategories, ServedTheyAnswerFromTheSystemWithTheirOwnRequestTypesAndPrompts) {
    sim::SimulatedMac mac(test::atAppKit(2685.4, "26"));
    VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    auto guide = Vantro::sharedKit();
    const std::string toggle = "Find Vantro Demo in the list above and turn on its switch.";
    const std::string toggleOrAdd = toggle.substr(0, toggle.size() - 1) +
                                    ". If Vantro Demo is missing, drag it into the list or click + below the list.";
    struct Case { PrivacyCategoryIdentifier identifier; PrivacyAuthorizationRequestType type; const std::string& prompt; } cases[] = {
        {VantroPrivacyScreenRecording, 1, toggleOrAdd}, {VantroPrivacyInputMonitoring, 1, toggleOrAdd},
        {VantroPrivacyCamera, 0, toggle}, {VantroPrivacyMicrophone, 0, toggle}, {VantroPrivacyBluetooth, 0, toggle},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(center->authorizationRequestTypeForIdentifier(c.identifier), c.type) << c.identifier;
        guide->askAccessForPanelIdentifier(c.identifier);
        EXPECT_EQ(guide->message(), c.prompt) << c.identifier;
        guide->stop();
        // Every anchor is the identifier itself.
        Vantro::openPrivacyPreferencesWithAnchor(c.identifier);
        EXPECT_EQ(mac.workspace().openedURLs().back(), settingsPane(c.identifier));
    }
    EXPECT_TRUE(mac.log().lines().empty());
}

TEST(NewerCategories, EachStatusComesFromItsServiceAndNeverPrompts) {
    const char* screen = "CGPreflightScreenCaptureAccess";
    const char* input = "IOHIDCheckAccess 1";
    const char* camera = "AVCaptureDevice authorizationStatusForMediaType: vide";
    const char* bluetooth = "CBManager authorization";
    struct Case { PrivacyCategoryIdentifier identifier; Consent consent; PrivacyAuthorizationStatus status; const char* message; } cases[] = {
        {VantroPrivacyScreenRecording, Consent::NotDetermined, 0, screen}, {VantroPrivacyScreenRecording, Consent::Denied, 0, screen},
        {VantroPrivacyScreenRecording, Consent::Authorized, 2, screen},    {VantroPrivacyInputMonitoring, Consent::NotDetermined, 0, input},
        {VantroPrivacyInputMonitoring, Consent::Denied, 1, input},         {VantroPrivacyInputMonitoring, Consent::Restricted, 1, input},
        {VantroPrivacyInputMonitoring, Consent::Authorized, 2, input},     {VantroPrivacyCamera, Consent::NotDetermined, 0, camera},
        {VantroPrivacyCamera, Consent::Restricted, 0, camera},             {VantroPrivacyCamera, Consent::Denied, 1, camera},
        {VantroPrivacyMicrophone, Consent::Authorized, 2, "AVCaptureDevice authorizationStatusForMediaType: soun"},
        {VantroPrivacyMicrophone, Consent::Denied, 1, "AVCaptureDevice authorizationStatusForMediaType: soun"},
        {VantroPrivacyBluetooth, Consent::Restricted, 0, bluetooth},       {VantroPrivacyBluetooth, Consent::Denied, 1, bluetooth},
        {VantroPrivacyBluetooth, Consent::Authorized, 2, bluetooth},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(2022.5, "11"));
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.privacy().setConsentForIdentifier(c.identifier, c.consent);
        auto status = VantroRequestStatusCenter::sharedRequestStatusCenter()->privacyAuthorizationStatusForIdentifier(c.identifier);
        EXPECT_EQ(status, c.status) << c.identifier << " " << sim::SimPrivacy::consentName(c.consent);
        EXPECT_EQ(mac.services().messages(), std::vector<std::string>{c.message}) << c.identifier;
        EXPECT_TRUE(mac.privacy().prompts().empty());
    }
}

TEST(NewerCategories, BeforeTheirReleaseTheyAreGrantedWithoutAsking) {
    // Strictly above 1561 for the capture devices, above 1671 for the rest;
    // 1561.x and 1671.x fall below.
    struct Case { double appKit; PrivacyCategoryIdentifier identifier; bool asks; } cases[] = {
        {1561.9, VantroPrivacyCamera, false},          {1562.0, VantroPrivacyCamera, true},
        {1561.9, VantroPrivacyMicrophone, false},      {1562.0, VantroPrivacyMicrophone, true},
        {1671.9, VantroPrivacyScreenRecording, false}, {1672.0, VantroPrivacyScreenRecording, true},
        {1671.9, VantroPrivacyInputMonitoring, false}, {1672.0, VantroPrivacyInputMonitoring, true},
        {1671.9, VantroPrivacyBluetooth, false},       {1672.0, VantroPrivacyBluetooth, true},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(c.appKit, "10.15"));
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.privacy().setConsentForIdentifier(c.identifier, Consent::Denied);
        auto center = makeShared<AlertRecordingCenter>();
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(c.identifier) == 2, !c.asks) << c.identifier << c.appKit;
        center->requestPrivacyAuthorizationForIdentifier(c.identifier, false);
        mac.runUntilIdle(5);
        EXPECT_EQ(mac.services().messages().empty(), !c.asks) << c.identifier << " " << c.appKit;
        EXPECT_EQ(listedLabels(mac, {std::string(c.identifier)}).size(), c.asks ? 1u : 0u) << c.identifier << c.appKit;
    }
}

TEST(NewerCategories, ACallTheSystemLacksGuardsNothingAndAsksNothing) {
    using Availability = sim::SimServices::Availability;
    struct Case {
        PrivacyCategoryIdentifier identifier;
        bool Availability::*call;
    } cases[] = {
        {VantroPrivacyScreenRecording, &Availability::screenCapture},
        {VantroPrivacyInputMonitoring, &Availability::hidAccess},
        {VantroPrivacyCamera, &Availability::captureDevice},
        {VantroPrivacyMicrophone, &Availability::captureDevice},
        {VantroPrivacyBluetooth, &Availability::bluetoothAuthorization},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = "15"});
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.privacy().setConsentForIdentifier(c.identifier, Consent::Denied);
        mac.services().availability().*c.call = false;
        auto center = makeShared<AlertRecordingCenter>();
        EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(c.identifier), 2) << c.identifier;
        center->requestPrivacyAuthorizationForIdentifier(c.identifier, false);
        mac.runUntilIdle(5);
        EXPECT_TRUE(center->record->alerts.empty()) << c.identifier;
        EXPECT_TRUE(mac.workspace().openedURLs().empty()) << c.identifier;
        EXPECT_TRUE(mac.privacy().prompts().empty()) << c.identifier;
    }
}

TEST(NewerCategories, ScreenRecordingAsksTheSystemOnceThenGuidesUnlessSilent) {
    sim::SimulatedMac mac(test::atAppKit(2487.3, "14"));
    VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    mac.privacy().answerNextPrompt(PromptAnswer::deny(0.5));
    center->requestScreenRecordingAuthorization(true);  // silent: the system's prompt still comes
    EXPECT_TRUE(mac.defaults().boolForKey(kScreenRecordingAccessRequested));
    mac.runUntilIdle(5);
    ASSERT_EQ(mac.privacy().prompts().size(), 1u);
    EXPECT_EQ(mac.privacy().prompts()[0].service, "Screen Recording");
    EXPECT_EQ(center->screenRecordingAuthorizationStatus(), 1) << "asked and still missing: refused";
    EXPECT_TRUE(mac.workspace().openedURLs().empty());

    center->requestScreenRecordingAuthorization(true);
    mac.runUntilIdle(5);
    EXPECT_TRUE(mac.workspace().openedURLs().empty()) << "a silent request shows nothing";
    center->requestScreenRecordingAuthorization(false);
    ASSERT_FALSE(mac.workspace().openedURLs().empty());
    EXPECT_EQ(mac.workspace().openedURLs().front(), settingsPane("Privacy_ScreenCapture"));
    EXPECT_EQ(mac.privacy().prompts().size(), 1u) << "the system asks only once";
    Vantro::sharedKit()->stop();

    mac.privacy().setConsentForIdentifier(VantroPrivacyScreenRecording, Consent::Authorized);
    auto openedBefore = mac.workspace().openedURLs().size();
    center->requestScreenRecordingAuthorization(false);
    EXPECT_EQ(mac.workspace().openedURLs().size(), openedBefore) << "granted: nothing to do";
    EXPECT_EQ(center->screenRecordingAuthorizationStatus(), 2);
}

TEST(NewerCategories, InputMonitoringWaitsForTheSystemsPromptAndGuidesOnlyAfterARefusal) {
    struct Case { const char* name; Consent before; std::optional<PromptAnswer> answer; bool silent, guided; Consent after; } cases[] = {
        {"allowed at the prompt", Consent::NotDetermined, PromptAnswer::allow(2), false, false, Consent::Authorized},
        {"refused at the prompt", Consent::NotDetermined, PromptAnswer::deny(2), false, false, Consent::Denied},
        {"never answered", Consent::NotDetermined, PromptAnswer::never(), false, false, Consent::NotDetermined},
        {"refused before", Consent::Denied, std::nullopt, false, true, Consent::Denied},
        {"refused before, silent", Consent::Denied, std::nullopt, true, false, Consent::Denied},
        {"granted", Consent::Authorized, std::nullopt, false, false, Consent::Authorized},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(test::atAppKit(2575.3, "15"));
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.privacy().setConsent(PromptedService::InputMonitoring, c.before);
        if (c.answer) mac.privacy().answerNextPrompt(*c.answer);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        // The system's request waits for the user on a background thread:
        // the host's request returns at once, and a second one meanwhile
        // asks nothing more.
        center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyInputMonitoring, c.silent);
        EXPECT_EQ(mac.workspace().openedURLs(), (c.guided ? std::vector{settingsPane("Privacy_ListenEvent")} : std::vector<std::string>{}))
            << c.name;
        if (c.before == Consent::NotDetermined) center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyInputMonitoring, c.silent);
        EXPECT_TRUE(mac.privacy().prompts().empty()) << c.name;
        mac.runFor(sim::SimPrivacy::promptTimeout + 1);
        EXPECT_EQ(mac.services().mainThreadBlockingCalls(), 0) << c.name;
        EXPECT_EQ(mac.privacy().prompts().size(), c.answer ? 1u : 0u) << c.name;
        EXPECT_EQ(mac.privacy().consent(PromptedService::InputMonitoring), c.after) << c.name;
        // Once the answer is back on the main queue, a request may ask again.
        if (c.answer && c.after == Consent::NotDetermined) {
            center->requestPrivacyAuthorizationForIdentifier(VantroPrivacyInputMonitoring, c.silent);
            mac.runFor(sim::SimPrivacy::promptTimeout + 1);
            EXPECT_EQ(mac.privacy().prompts().size(), 2u) << c.name;
        }
        Vantro::sharedKit()->stop();
    }
}

// Who asks, what the database holds and how the user answers; then the
// alerts shown and the status that follows. An answer outliving its
// requester still alerts on the main queue.
TEST(NewerCategories, CaptureDevicesAndBluetoothAlertAfterTheirAnswerOnlyWhenRefusedAndLoud) {
    struct Case { PrivacyCategoryIdentifier identifier; Consent before; std::optional<PromptAnswer> answer; bool silent;
                  std::vector<std::string> alerts; PrivacyAuthorizationStatus status; bool releaseRequester = false; } cases[] = {
        {VantroPrivacyCamera, Consent::NotDetermined, PromptAnswer::allow(), false, {}, 2},
        {VantroPrivacyCamera, Consent::NotDetermined, PromptAnswer::deny(), false, {"Privacy_Camera"}, 1},
        {VantroPrivacyCamera, Consent::NotDetermined, PromptAnswer::deny(1), false, {"Privacy_Camera"}, 1, true},
        {VantroPrivacyMicrophone, Consent::NotDetermined, PromptAnswer::deny(), true, {}, 1},
        {VantroPrivacyMicrophone, Consent::Denied, std::nullopt, false, {"Privacy_Microphone"}, 1},
        {VantroPrivacyBluetooth, Consent::NotDetermined, PromptAnswer::allow(), false, {}, 2},
        {VantroPrivacyBluetooth, Consent::Restricted, std::nullopt, false, {"Privacy_Bluetooth"}, 0},
        {VantroPrivacyBluetooth, Consent::NotDetermined, PromptAnswer::never(), false, {}, 0},
        {VantroPrivacyBluetooth, Consent::Authorized, std::nullopt, false, {}, 2},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& c = cases[i];
        sim::SimulatedMac mac(test::atAppKit(2685.4, "26"));
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.privacy().setConsentForIdentifier(c.identifier, c.before);
        if (c.answer) mac.privacy().answerNextPrompt(*c.answer);
        auto center = makeShared<AlertRecordingCenter>();
        auto record = center->record;
        center->requestPrivacyAuthorizationForIdentifier(c.identifier, c.silent);
        EXPECT_TRUE(record->alerts.empty()) << "case " << i << ": nothing before the answer";
        if (c.releaseRequester) center.reset();
        mac.runUntilIdle(30);
        EXPECT_EQ(record->alerts, c.alerts) << "case " << i;
        EXPECT_TRUE(record->allOnMainThread) << "case " << i;
        EXPECT_EQ(mac.privacy().prompts().size(), c.answer ? 1u : 0u) << "case " << i;
        EXPECT_EQ(VantroRequestStatusCenter::sharedRequestStatusCenter()->privacyAuthorizationStatusForIdentifier(c.identifier),
                  c.status)
            << "case " << i;
    }
}

TEST(NewerCategories, TheListShowsThemWhereTheReleaseHasThemWithTheirLabels) {
    const std::vector<std::string> requested = {"Privacy_ScreenCapture", "Privacy_ListenEvent", "Privacy_Camera",
                                                "Privacy_Microphone", "Privacy_Bluetooth"};
    const std::vector<std::string> all = {"Screen Recording", "Input Monitoring", "Camera", "Microphone", "Bluetooth"};
    struct Case { const char* release; const char* language; std::vector<std::string> labels; } cases[] = {
        {"10.13", "en", {}},
        {"10.14", "en", {"Camera", "Microphone"}},
        {"10.15", "en", all},
        {"27", "en", all},
        {"10.15", "de", {"Bildschirmaufnahme", "Eingabeüberwachung", "Kamera", "Mikrofon", "Bluetooth"}},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac(sim::MacConfiguration{.release = c.release, .languages = {c.language}});
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        EXPECT_EQ(listedLabels(mac, requested), c.labels) << c.release << " " << c.language;
    }
}

}  // namespace
}  // namespace vantro
