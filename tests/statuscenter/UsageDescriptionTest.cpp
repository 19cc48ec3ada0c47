#include <gtest/gtest.h>

#include <algorithm>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {
namespace {

std::string missingLine(std::string_view key) {
    return "Privacy category usage description missing from Info.plist: " + std::string(key);
}

// A request whose usage description the host lacks asks nothing, says which
// key is missing, and leaves the status as it was; a key the running release
// does not need stops nothing. Without the check the simulated Mac ends the
// host, so a request that asks here got past it.
TEST(UsageDescriptions, ARequestWithoutItsKeyAsksNothingAndNamesTheKey) {
    struct Case {
        const char* release;
        std::string_view identifier;
        const char* removedKey;
        bool asks;
    } cases[] = {
        {"13", VantroPrivacyCalendars, "NSCalendarsUsageDescription", false},
        {"13", VantroPrivacyCalendars, "NSCalendarsFullAccessUsageDescription", true},
        {"14", VantroPrivacyCalendars, "NSCalendarsFullAccessUsageDescription", false},
        {"14", VantroPrivacyCalendars, "NSCalendarsUsageDescription", true},
        {"10.14", VantroPrivacyReminders, "NSRemindersUsageDescription", false},
        {"15", VantroPrivacyReminders, "NSRemindersFullAccessUsageDescription", false},
        {"10.13", VantroPrivacyContacts, "NSContactsUsageDescription", true},
        {"10.14", VantroPrivacyContacts, "NSContactsUsageDescription", false},
        {"10.14", VantroPrivacyPhotos, "NSPhotoLibraryUsageDescription", false},
        {"26", VantroPrivacyPhotos, "NSContactsUsageDescription", true},
        {"10.14", "Privacy_Camera", "NSCameraUsageDescription", false},
        {"15", "Privacy_Microphone", "NSMicrophoneUsageDescription", false},
        {"15", "Privacy_Camera", "NSMicrophoneUsageDescription", true},
        {"10.15", "Privacy_Bluetooth", "NSBluetoothAlwaysUsageDescription", true},
        {"11", "Privacy_Bluetooth", "NSBluetoothAlwaysUsageDescription", false},
    };
    for (const auto& c : cases) {
        const std::string name = std::string(c.release) + " " + std::string(c.identifier) + " without " + c.removedKey;
        sim::SimulatedMac mac({.release = c.release});
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
        mac.setHostInfoValue(c.removedKey, std::nullopt);
        auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
        const auto before = center->privacyAuthorizationStatusForIdentifier(c.identifier);
        mac.privacy().answerNextPrompt(sim::PromptAnswer::deny(0.5));
        EXPECT_NO_THROW({
            center->requestPrivacyAuthorizationForIdentifier(c.identifier, false);
            mac.runFor(2.0);
        }) << name;
        EXPECT_EQ(mac.privacy().prompts().size(), c.asks ? 1u : 0u) << name;
        const auto& lines = mac.log().lines();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), missingLine(c.removedKey)), c.asks ? 0 : 1) << name;
        if (!c.asks) {
            EXPECT_EQ(lines.size(), 1u) << name;
            EXPECT_TRUE(mac.alerts().shown().empty()) << name;
            EXPECT_EQ(center->privacyAuthorizationStatusForIdentifier(c.identifier), before) << name;
        }
    }
}

// What the check stands between: the system ends a host that asks without
// the key, and from 14 a full-access request without its own key fails
// unasked.
TEST(UsageDescriptions, TheSimulatedMacEndsAHostThatAsksWithoutTheKey) {
    sim::SimulatedMac mac({.release = "10.14"});
    mac.setHostInfoValue("NSContactsUsageDescription", std::nullopt);
    EXPECT_THROW(mac.services().requestContactsAccess(CNEntityTypeContacts, [](bool, const PlatformError*) {}),
                 sim::HostTerminated);

    sim::SimulatedMac sonoma({.release = "14"});
    sonoma.setHostInfoValue("NSCalendarsFullAccessUsageDescription", std::nullopt);
    std::optional<bool> granted;
    sonoma.services().requestFullEventStoreAccess(EKEntityTypeEvent, [&](bool g, const PlatformError*) { granted = g; });
    sonoma.runFor(1.0);
    EXPECT_EQ(granted, false);
    EXPECT_TRUE(sonoma.privacy().prompts().empty());
}

}  // namespace
}  // namespace vantro
