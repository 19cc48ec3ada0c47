#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

// The privacy categories that applications ask for on today's systems, beyond
// the sixteen the framework has always served. The values are their anchors
// in the privacy settings.
inline constexpr PrivacyCategoryIdentifier VantroPrivacyScreenRecording = "Privacy_ScreenCapture";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyInputMonitoring = "Privacy_ListenEvent";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyCamera = "Privacy_Camera";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyMicrophone = "Privacy_Microphone";
inline constexpr PrivacyCategoryIdentifier VantroPrivacyBluetooth = "Privacy_Bluetooth";

inline constexpr std::array<PrivacyCategoryIdentifier, 5> VantroPrivacyNewerIdentifiers = {
    VantroPrivacyScreenRecording, VantroPrivacyInputMonitoring, VantroPrivacyCamera,
    VantroPrivacyMicrophone,      VantroPrivacyBluetooth,
};

// The key of the host's user defaults under which the status center
// remembers that it has made the system's Screen Recording request once.
// Written true, never cleared.
inline constexpr std::string_view kScreenRecordingAccessRequested = "VantroScreenRecordingAccessRequested";

// Whether `identifier` is one of the five newer categories.
bool isNewerPrivacyCategory(std::string_view identifier);

// The framework's own constant for `identifier` when it names one of the
// sixteen categories or of the five newer ones, whether or not these are
// served: static text that outlives every caller. nullopt for anything else.
std::optional<PrivacyCategoryIdentifier> privacyCategoryIdentifierNamed(std::string_view identifier);

// Whether the host has turned the newer categories on for this process. Off
// by default: until the host turns them on, the framework knows nothing of
// them and answers for their identifiers exactly as for any identifier it
// does not serve. Main thread.
bool newerPrivacyCategoriesServed();
void setNewerPrivacyCategoriesServed(bool served);

// Whether the framework treats `identifier` as unknown although its
// resources may list it: a newer category while they are off.
bool isPrivacyCategoryWithheld(std::string_view identifier);

// Whether the running system has the newer category at all, by the whole
// AppKit version: Camera and Microphone from 10.14 on (above 1561), Screen
// Recording, Input Monitoring and Bluetooth from 10.15 on (above 1671).
// False for any other identifier.
bool systemHasNewerPrivacyCategory(std::string_view identifier);

}  // namespace vantro
