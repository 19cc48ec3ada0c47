#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {
namespace {

MacConfiguration release(std::string name) {
    MacConfiguration configuration;
    configuration.release = std::move(name);
    return configuration;
}

TEST(SimNewerServices, BeforeTheirReleaseNothingGuardsWhatTheyGuard) {
    struct Case {
        const char* release;
        long camera;      // AVAuthorizationStatus with nothing decided
        bool screen;      // CGPreflightScreenCaptureAccess
        long listen;      // IOHIDCheckAccess(ListenEvent)
        long bluetooth;   // CBManager authorization
    } cases[] = {
        {"10.13", 3, true, kIOHIDAccessTypeGranted, 3},
        {"10.14", 0, true, kIOHIDAccessTypeGranted, 3},
        {"10.15", 0, false, kIOHIDAccessTypeUnknown, 0},
        {"26", 0, false, kIOHIDAccessTypeUnknown, 0},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(release(c.release));
        auto& services = mac.services();
        EXPECT_EQ(services.captureDeviceAuthorizationStatus(AVMediaTypeVideo), c.camera) << c.release;
        EXPECT_EQ(services.preflightScreenCaptureAccess(), c.screen) << c.release;
        EXPECT_EQ(services.hidCheckAccess(kIOHIDRequestTypeListenEvent), c.listen) << c.release;
        EXPECT_EQ(services.bluetoothAuthorization(), c.bluetooth) << c.release;
        EXPECT_TRUE(mac.privacy().prompts().empty());
    }
}

TEST(SimNewerServices, ScreenRecordingPromptsOnceWhateverTheAnswerAndReturnsAtOnce) {
    SimulatedMac mac(release("14"));
    mac.privacy().answerNextPrompt(PromptAnswer::deny(2));
    EXPECT_FALSE(mac.services().requestScreenCaptureAccess());
    EXPECT_DOUBLE_EQ(mac.now(), 0.0);
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.privacy().consent(PromptedService::ScreenRecording), Consent::Denied);
    EXPECT_FALSE(mac.services().requestScreenCaptureAccess());
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
    // Switched on in the settings afterwards.
    mac.privacy().setConsentForIdentifier("Privacy_ScreenCapture", Consent::Authorized);
    EXPECT_TRUE(mac.services().requestScreenCaptureAccess());
    EXPECT_EQ(mac.services().count("CGPreflightScreenCaptureAccess"), 0u);
}

TEST(SimNewerServices, InputMonitoringAnswersOnlyListenEventAndItsRequestBlocks) {
    SimulatedMac mac(release("15"));
    auto& services = mac.services();
    EXPECT_EQ(services.hidCheckAccess(0), kIOHIDAccessTypeUnknown);
    EXPECT_FALSE(services.hidRequestAccess(0));
    EXPECT_TRUE(mac.privacy().prompts().empty());

    mac.privacy().answerNextPrompt(PromptAnswer::allow(3));
    EXPECT_TRUE(services.hidRequestAccess(kIOHIDRequestTypeListenEvent));
    EXPECT_DOUBLE_EQ(mac.now(), 3.0);
    EXPECT_EQ(services.hidCheckAccess(kIOHIDRequestTypeListenEvent), kIOHIDAccessTypeGranted);
    EXPECT_TRUE(services.hidRequestAccess(kIOHIDRequestTypeListenEvent));
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
}

}  // namespace
}  // namespace vantro::sim
