// System on the real Mac.
//
// Implements: NSAppKitVersionNumber; -[NSProcessInfo
// isOperatingSystemAtLeastVersion:]; the user database's home directory
// (getpwuid_r, safe on any thread); the main bundle's URL; the App Sandbox
// check with SecStaticCodeCreateWithPath, SecRequirementCreateWithString and
// SecStaticCodeCheckValidity, with the flags the caller gives; the build
// variant (VANTRO_APP_STORE: public interfaces only).
// Known gaps: on 10.9, where NSProcessInfo cannot answer the version question,
// every "at least" answers NO (10.9 is below every version the framework asks
// about).

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <Security/Security.h>

#include <pwd.h>
#include <cerrno>
#include <unistd.h>

#include <vector>

#include "Vocabulary/BuildVariant.h"

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

class MacStaticCode final : public StaticCode {
public:
    explicit MacStaticCode(SecStaticCodeRef code) : code_(code) {}
    ~MacStaticCode() override { CFRelease(code_); }
    SecStaticCodeRef code() const { return code_; }

private:
    SecStaticCodeRef code_;
};

class MacCodeRequirement final : public CodeRequirement {
public:
    explicit MacCodeRequirement(SecRequirementRef requirement) : requirement_(requirement) {}
    ~MacCodeRequirement() override { CFRelease(requirement_); }
    SecRequirementRef requirement() const { return requirement_; }

private:
    SecRequirementRef requirement_;
};

// errSecParam: what Security answers for an object it did not make.
constexpr OSStatus parameterError = -50;

class MacSystem final : public System {
public:
    double appKitVersionNumber() const override { return NSAppKitVersionNumber; }

    bool isOperatingSystemAtLeastVersion(OperatingSystemVersion version) const override {
        NSProcessInfo* processInfo = NSProcessInfo.processInfo;
        if (![processInfo respondsToSelector:@selector(isOperatingSystemAtLeastVersion:)]) return false;
        NSOperatingSystemVersion wanted = {version.majorVersion, version.minorVersion, version.patchVersion};
        return [processInfo isOperatingSystemAtLeastVersion:wanted];
    }

    std::optional<std::string> userDatabaseHomeDirectory() const override {
        long suggested = sysconf(_SC_GETPW_R_SIZE_MAX);
        std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 4096);
        struct passwd entry {};
        struct passwd* found = nullptr;
        while (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE && buffer.size() < (1u << 20))
            buffer.resize(buffer.size() * 2);
        if (!found || !found->pw_dir) return std::nullopt;
        return std::string(found->pw_dir);
    }

    std::string mainBundleURL() const override { return toString(NSBundle.mainBundle.bundleURL.absoluteString); }

    std::shared_ptr<StaticCode> createStaticCodeWithPath(std::string_view url, std::uint32_t flags) override {
        NSURL* location = [NSURL URLWithString:toNSString(url)];
        if (!location) return nullptr;
        SecStaticCodeRef code = nullptr;
        if (SecStaticCodeCreateWithPath((__bridge CFURLRef)location, flags, &code) != errSecSuccess || !code) return nullptr;
        return std::make_shared<MacStaticCode>(code);
    }

    std::shared_ptr<CodeRequirement> createRequirementWithString(std::string_view text, std::uint32_t flags) override {
        SecRequirementRef requirement = nullptr;
        if (SecRequirementCreateWithString((__bridge CFStringRef)toNSString(text), flags, &requirement) != errSecSuccess ||
            !requirement)
            return nullptr;
        return std::make_shared<MacCodeRequirement>(requirement);
    }

    std::int32_t checkStaticCodeValidity(const StaticCode& code, std::uint32_t flags,
                                         const CodeRequirement& requirement) override {
        auto* macCode = dynamic_cast<const MacStaticCode*>(&code);
        auto* macRequirement = dynamic_cast<const MacCodeRequirement*>(&requirement);
        if (!macCode || !macRequirement) return parameterError;
        return SecStaticCodeCheckValidity(macCode->code(), flags, macRequirement->requirement());
    }

    bool usesOnlyPublicInterfaces() const override { return VANTRO_APP_STORE; }
};

}  // namespace

std::unique_ptr<System> makeSystem() { return std::make_unique<MacSystem>(); }

}  // namespace vantro::mac
