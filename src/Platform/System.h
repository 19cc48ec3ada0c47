#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vantro {

// The SecCSFlags the signature calls take.
inline constexpr std::uint32_t kSecCSDefaultFlags = 0;
inline constexpr std::uint32_t kSecCSDoNotValidateExecutable = 1u << 1;
inline constexpr std::uint32_t kSecCSDoNotValidateResources = 1u << 2;

struct OperatingSystemVersion {
    int majorVersion = 0;
    int minorVersion = 0;
    int patchVersion = 0;
};

// Opaque Security objects (SecStaticCodeRef, SecRequirementRef). Dropping the
// last reference releases them.
class StaticCode {
public:
    virtual ~StaticCode() = default;
};
class CodeRequirement {
public:
    virtual ~CodeRequirement() = default;
};

// What the running system is, and who the process runs as. Every operation may
// be called on any thread and returns at once.
class System {
public:
    System() = default;
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    virtual ~System() = default;

    // NSAppKitVersionNumber, fraction included.
    virtual double appKitVersionNumber() const = 0;
    // NSProcessInfo isOperatingSystemAtLeastVersion:.
    virtual bool isOperatingSystemAtLeastVersion(OperatingSystemVersion version) const = 0;
    // pw_dir of getpwuid(getuid()) as UTF-8, nullopt when the user database
    // has no entry for the process's user.
    virtual std::optional<std::string> userDatabaseHomeDirectory() const = 0;

    // The main bundle's location as a file URL string.
    virtual std::string mainBundleURL() const = 0;
    // SecStaticCodeCreateWithPath; nullptr when the system refuses.
    virtual std::shared_ptr<StaticCode> createStaticCodeWithPath(std::string_view url, std::uint32_t flags) = 0;
    // SecRequirementCreateWithString; nullptr when the text does not compile.
    virtual std::shared_ptr<CodeRequirement> createRequirementWithString(std::string_view text, std::uint32_t flags) = 0;
    // SecStaticCodeCheckValidity; the OSStatus (0 is errSecSuccess).
    virtual std::int32_t checkStaticCodeValidity(const StaticCode& code, std::uint32_t flags,
                                                 const CodeRequirement& requirement) = 0;
    // Whether the framework was built to use the system's public interfaces
    // only, as a host in the Mac App Store must: the private Photos privacy
    // object, the private frameworks and the window's private activation hook
    // are then not in the build, and the core does not ask for them. Fixed
    // for the life of the process.
    virtual bool usesOnlyPublicInterfaces() const = 0;
};

}  // namespace vantro
