#pragma once

#include <optional>
#include <string>

#include "Platform/System.h"

namespace vantro::sim {

class SimulatedMac;

// The running release, the user database and the Security checks of the main
// bundle's signature. The signature carries the App Sandbox entitlement when
// the host is sandboxed; tests can make either Security object fail to be made.
class SimSystem : public System {
public:
    explicit SimSystem(SimulatedMac& mac) : mac_(mac) {}

    double appKitVersionNumber() const override;
    bool isOperatingSystemAtLeastVersion(OperatingSystemVersion version) const override;
    std::optional<std::string> userDatabaseHomeDirectory() const override;
    std::string mainBundleURL() const override;
    std::shared_ptr<StaticCode> createStaticCodeWithPath(std::string_view url, std::uint32_t flags) override;
    std::shared_ptr<CodeRequirement> createRequirementWithString(std::string_view text, std::uint32_t flags) override;
    std::int32_t checkStaticCodeValidity(const StaticCode& code, std::uint32_t flags, const CodeRequirement& requirement) override;
    bool usesOnlyPublicInterfaces() const override;

    // How often the signature was checked (the framework checks once per process).
    int validityChecks() const { return validityChecks_; }

private:
    SimulatedMac& mac_;
    int validityChecks_ = 0;
};

}  // namespace vantro::sim
