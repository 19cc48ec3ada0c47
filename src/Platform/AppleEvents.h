#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vantro {

using OSStatus = std::int32_t;
using FourCharCode = std::uint32_t;

inline constexpr OSStatus noErr = 0;
inline constexpr OSStatus procNotFound = -600;
inline constexpr OSStatus errAEEventNotPermitted = -1743;
inline constexpr OSStatus errAEEventWouldRequireUserConsent = -1744;

constexpr FourCharCode fourCharCode(const char (&code)[5]) {
    return (FourCharCode(std::uint8_t(code[0])) << 24) | (FourCharCode(std::uint8_t(code[1])) << 16) |
           (FourCharCode(std::uint8_t(code[2])) << 8) | FourCharCode(std::uint8_t(code[3]));
}
inline constexpr FourCharCode typeWildCard = fourCharCode("****");
inline constexpr FourCharCode keyDirectObject = fourCharCode("----");

// An Apple-event target descriptor (NSAppleEventDescriptor).
class AppleEventDescriptor {
public:
    virtual ~AppleEventDescriptor() = default;
};

// An object of a scripting-bridge application (SBObject).
class ScriptingObject {
public:
    virtual ~ScriptingObject() = default;
    // propertyWithCode:; nullptr when the application has no such property.
    virtual std::shared_ptr<ScriptingObject> propertyWithCode(FourCharCode code) = 0;
    // get: the value as a string, nullopt when it has none or is not text.
    virtual std::optional<std::string> get() = 0;
};

// A scripting-bridge application (SBApplication).
class ScriptingApplication : public ScriptingObject {
public:
    // sendEvent:id:parameters: with one keyword parameter; the reply is dropped.
    virtual void sendEvent(FourCharCode eventClass, FourCharCode eventID, FourCharCode keyword,
                           const std::shared_ptr<ScriptingObject>& parameter) = 0;
};

// Apple events to other applications. Main thread; every call is synchronous
// and may block while the target answers.
class AppleEvents {
public:
    AppleEvents() = default;
    AppleEvents(const AppleEvents&) = delete;
    AppleEvents& operator=(const AppleEvents&) = delete;
    virtual ~AppleEvents() = default;

    // Whether dlsym finds AEDeterminePermissionToAutomateTarget (10.14 on).
    virtual bool lookUpDeterminePermissionToAutomateTarget() = 0;
    // Whether NSAppleEventDescriptor responds to descriptorWithBundleIdentifier:.
    virtual bool descriptorRespondsToBundleIdentifier() = 0;
    virtual std::shared_ptr<AppleEventDescriptor> descriptorWithBundleIdentifier(std::string_view bundleIdentifier) = 0;
    // AEDeterminePermissionToAutomateTarget; only called after the look-up succeeded.
    virtual OSStatus determinePermissionToAutomateTarget(const AppleEventDescriptor& target, FourCharCode eventClass,
                                                         FourCharCode eventID, bool askUserIfNeeded) = 0;
    // SBApplication initWithBundleIdentifier:; nullptr when none can be made.
    virtual std::shared_ptr<ScriptingApplication> applicationWithBundleIdentifier(std::string_view bundleIdentifier) = 0;
};

}  // namespace vantro
