#include <gtest/gtest.h>

#include <optional>
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

TEST(SimNewerServices, BeforeTheirReleaseTheCallsAreNotThere) {
    constexpr std::optional<long> none;
    struct Case {
        const char* release;
        std::optional<long> camera;     // AVAuthorizationStatus with nothing decided
        std::optional<bool> screen;     // CGPreflightScreenCaptureAccess
        std::optional<long> listen;     // IOHIDCheckAccess(ListenEvent)
        std::optional<long> bluetooth;  // CBManager authorization
    } cases[] = {
        {"10.13", none, std::nullopt, none, none},
        {"10.14", 0, std::nullopt, none, none},
        {"10.15", 0, false, kIOHIDAccessTypeUnknown, 0},
        {"26", 0, false, kIOHIDAccessTypeUnknown, 0},
    };
    for (const auto& c : cases) {
        SimulatedMac mac(release(c.release));
        auto& services = mac.services();
        EXPECT_EQ(services.captureDeviceAuthorizationStatus(AVMediaTypeVideo), c.camera) << c.release;
        EXPECT_EQ(services.preflightScreenCaptureAccess(), c.screen) << c.release;
        EXPECT_EQ(services.requestScreenCaptureAccess().has_value(), c.screen.has_value()) << c.release;
        EXPECT_EQ(services.hidCheckAccess(kIOHIDRequestTypeListenEvent), c.listen) << c.release;
        EXPECT_EQ(services.bluetoothAuthorization(), c.bluetooth) << c.release;
        // A request the system cannot make is not made, and nothing answers.
        bool answered = false;
        EXPECT_EQ(services.requestCaptureDeviceAccess(AVMediaTypeAudio, [&](bool) { answered = true; }), c.camera.has_value())
            << c.release;
        EXPECT_EQ(services.requestBluetoothAccess([&](long) { answered = true; }), c.bluetooth.has_value()) << c.release;
        if (!c.camera) {
            mac.runUntilIdle(5);
            EXPECT_FALSE(answered) << c.release;
            EXPECT_TRUE(mac.privacy().prompts().empty()) << c.release;
        }
    }
}

TEST(SimNewerServices, ScreenRecordingPromptsOnceWhateverTheAnswerAndReturnsAtOnce) {
    SimulatedMac mac(release("14"));
    mac.privacy().answerNextPrompt(PromptAnswer::deny(2));
    EXPECT_EQ(mac.services().requestScreenCaptureAccess(), false);
    EXPECT_DOUBLE_EQ(mac.now(), 0.0);
    mac.runUntilIdle(5);
    EXPECT_EQ(mac.privacy().consent(PromptedService::ScreenRecording), Consent::Denied);
    EXPECT_EQ(mac.services().requestScreenCaptureAccess(), false);
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
    // Switched on in the settings afterwards.
    mac.privacy().setConsentForIdentifier("Privacy_ScreenCapture", Consent::Authorized);
    EXPECT_EQ(mac.services().requestScreenCaptureAccess(), true);
    EXPECT_EQ(mac.services().count("CGPreflightScreenCaptureAccess"), 0u);
}

TEST(SimNewerServices, InputMonitoringAnswersOnlyListenEventAndItsRequestBlocks) {
    SimulatedMac mac(release("15"));
    auto& services = mac.services();
    EXPECT_EQ(services.hidCheckAccess(0), kIOHIDAccessTypeUnknown);
    EXPECT_EQ(services.hidRequestAccess(0), false);
    EXPECT_TRUE(mac.privacy().prompts().empty());

    mac.privacy().answerNextPrompt(PromptAnswer::allow(3));
    EXPECT_EQ(services.hidRequestAccess(kIOHIDRequestTypeListenEvent), true);
    EXPECT_DOUBLE_EQ(mac.now(), 3.0);
    EXPECT_EQ(services.hidCheckAccess(kIOHIDRequestTypeListenEvent), kIOHIDAccessTypeGranted);
    EXPECT_EQ(services.hidRequestAccess(kIOHIDRequestTypeListenEvent), true);
    EXPECT_EQ(mac.privacy().prompts().size(), 1u);
}

}  // namespace
}  // namespace vantro::sim
