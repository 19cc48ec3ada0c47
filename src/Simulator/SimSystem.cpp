#include "Simulator/SimSystem.h"

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

class SimStaticCode : public StaticCode {
public:
    explicit SimStaticCode(std::string url) : url(std::move(url)) {}
    std::string url;
};

class SimRequirement : public CodeRequirement {
public:
    explicit SimRequirement(std::string text) : text(std::move(text)) {}
    std::string text;
};

constexpr std::int32_t errSecCSReqFailed = -67050;
constexpr std::int32_t errSecCSBadResource = -67054;
constexpr std::int32_t errSecCSSignatureFailed = -67061;
constexpr std::int32_t errSecCSStaticCodeNotFound = -67068;

}  // namespace

double SimSystem::appKitVersionNumber() const { return mac_.configuration().appKitVersionNumber(); }

bool SimSystem::usesOnlyPublicInterfaces() const { return mac_.configuration().appStoreBuild; }

bool SimSystem::isOperatingSystemAtLeastVersion(OperatingSystemVersion v) const {
    auto have = mac_.release().systemVersion;
    if (have.majorVersion != v.majorVersion) return have.majorVersion > v.majorVersion;
    if (have.minorVersion != v.minorVersion) return have.minorVersion > v.minorVersion;
    return have.patchVersion >= v.patchVersion;
}

std::optional<std::string> SimSystem::userDatabaseHomeDirectory() const {
    if (!mac_.configuration().userDatabaseHasEntry) return std::nullopt;
    return mac_.homeDirectory();
}

std::string SimSystem::mainBundleURL() const { return SimWorkspace::directoryURL(mac_.hostBundlePath()); }

std::shared_ptr<StaticCode> SimSystem::createStaticCodeWithPath(std::string_view url, std::uint32_t) {
    if (mac_.configuration().staticCodeCreationFails) return nullptr;
    return std::make_shared<SimStaticCode>(std::string(url));
}

std::shared_ptr<CodeRequirement> SimSystem::createRequirementWithString(std::string_view text, std::uint32_t) {
    if (mac_.configuration().requirementCreationFails || text.empty()) return nullptr;
    return std::make_shared<SimRequirement>(std::string(text));
}

std::int32_t SimSystem::checkStaticCodeValidity(const StaticCode& code, std::uint32_t flags, const CodeRequirement& requirement) {
    ++validityChecks_;
    const auto& staticCode = static_cast<const SimStaticCode&>(code);
    const auto& req = static_cast<const SimRequirement&>(requirement);
    if (staticCode.url != mainBundleURL()) return errSecCSStaticCodeNotFound;
    // The signature itself is checked first, then what the flags leave in.
    const auto& configuration = mac_.configuration();
    if (configuration.executableChangedAfterSigning && !(flags & kSecCSDoNotValidateExecutable))
        return errSecCSSignatureFailed;
    if (configuration.resourcesChangedAfterSigning && !(flags & kSecCSDoNotValidateResources)) return errSecCSBadResource;
    // The host's signature holds exactly one entitlement that a requirement
    // can ask about: the App Sandbox, when the host is sandboxed.
    bool asksForSandbox = req.text == "entitlement[\"com.apple.security.app-sandbox\"] exists";
    return asksForSandbox && mac_.configuration().sandboxed ? 0 : errSecCSReqFailed;
}

}  // namespace vantro::sim
