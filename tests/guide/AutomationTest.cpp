#include <gtest/gtest.h>

#include "support/GuideFixture.h"

namespace vantro::test {
namespace {

TEST(Automation, BeforeTheQueryExistedEverythingMayBeAutomated) {
    sim::SimulatedMac mac(sim::MacConfiguration{.release = "10.13"});
    RunningApplicationPtr untouched = mac.workspace().host();
    EXPECT_TRUE(Vantro::checkPermissionToAutomate("com.apple.finder", &untouched));
    EXPECT_EQ(untouched, mac.workspace().host());
    EXPECT_TRUE(Vantro::checkPermissionToAutomate("com.apple.finder", nullptr));
    EXPECT_EQ(mac.appleEvents().lookUps(), 2);  // a failed look-up is not remembered
}

TEST(Automation, ConsentsMapToAnswers) {
    using sim::Consent;
    struct Case {
        std::optional<Consent> consent;
        bool installed;
        bool allowed;
        bool targetKept;
    } cases[] = {
        {Consent::Authorized, true, true, true},   {Consent::Denied, true, false, true},
        {Consent::NotDetermined, true, false, true}, {std::nullopt, true, false, true},
        {Consent::Authorized, false, false, false},
    };
    for (const auto& c : cases) {
        sim::SimulatedMac mac;
        if (c.installed) mac.workspace().install({"com.example.Target", "Target", "file:///Applications/Target.app/", 0.3});
        if (c.consent) mac.privacy().setAutomationConsent("com.example.Target", *c.consent);
        RunningApplicationPtr target = mac.workspace().host();
        EXPECT_EQ(Vantro::checkPermissionToAutomate("com.example.Target", &target), c.allowed);
        EXPECT_EQ(target != nullptr, c.targetKept);
        if (c.installed) {
            // Not running: launched without waiting for it to start, and
            // without activation, so the host stays in front.
            EXPECT_EQ(mac.now(), 0.0);
            EXPECT_FALSE(mac.workspace().application("com.example.Target")->isFinishedLaunching());
            EXPECT_EQ(mac.workspace().front(), mac.workspace().host());
            EXPECT_TRUE(mac.timeline().contains("launches Target without activating it"));
        } else {
            EXPECT_FALSE(mac.timeline().contains("launches"));
        }
        EXPECT_FALSE(mac.timeline().contains("prompt:"));  // never asks the user
        mac.runFor(2);
        EXPECT_EQ(mac.workspace().front(), mac.workspace().host());
    }
}

TEST(Automation, WithoutTheDescriptorMethodTheAnswerIsYes) {
    sim::SimulatedMac mac;
    mac.appleEvents().setDescriptorAvailable(false);
    mac.privacy().setAutomationConsent("com.apple.finder", sim::Consent::Denied);
    RunningApplicationPtr target;
    EXPECT_TRUE(Vantro::checkPermissionToAutomate("com.apple.finder", &target));
    EXPECT_NE(target, nullptr);
    EXPECT_EQ(mac.appleEvents().queries(), 0);
}

TEST(Automation, TheAuthorizeEventGoesOnlyToTheSecurityPane) {
    sim::SimulatedMac mac;
    mac.privacy().setAutomationConsent(SystemPreferencesBundleIdentifier, sim::Consent::Authorized);
    Vantro::openPrivacyPreferencesWithAnchor(VantroPrivacyFullDiskAccess);
    mac.runFor(1.0);
    mac.systemPreferences().userShowsPane("com.apple.preference.general");
    Vantro::authorizeIfPossible();
    EXPECT_EQ(mac.systemPreferences().authorizeEvents(), 0);
    mac.systemPreferences().userShowsPane(sim::SimSystemPreferences::securityPane);
    Vantro::authorizeIfPossible();
    EXPECT_EQ(mac.systemPreferences().authorizeEvents(), 1);
    mac.runFor(2.0);
    EXPECT_FALSE(mac.systemPreferences().isLocked());

    mac.privacy().setAutomationConsent(SystemPreferencesBundleIdentifier, sim::Consent::Denied);
    Vantro::authorizeIfPossible();
    EXPECT_EQ(mac.systemPreferences().authorizeEvents(), 1);
}

}  // namespace
}  // namespace vantro::test
