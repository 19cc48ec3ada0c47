#pragma once

#include <map>
#include <string>

#include "Platform/Defaults.h"

namespace vantro::sim {

class SimulatedMac;

// The host's standard user defaults, the global domain (AppleLanguages) and
// other applications' preference domains.
class SimDefaults : public Defaults {
public:
    explicit SimDefaults(SimulatedMac& mac) : mac_(mac) {}

    bool boolForKey(std::string_view key) override;
    void setBool(bool value, std::string_view key) override;
    std::optional<Value::Dictionary> persistentDomainForName(std::string_view domainName) override;
    std::optional<Value> copyAppValue(std::string_view key, std::string_view applicationID) override;

    // Setting up the Mac.
    void setPersistentDomain(std::string_view name, Value::Dictionary domain);
    void setAppValue(std::string_view applicationID, std::string_view key, Value value);
    void setUserLanguages(const std::vector<std::string>& languages);
    std::vector<std::string> userLanguages() const;
    // The host's own defaults, for tests to read.
    const Value::Dictionary& hostDefaults() const { return host_; }

private:
    SimulatedMac& mac_;
    Value::Dictionary host_;
    std::map<std::string, Value::Dictionary, std::less<>> domains_;
    std::map<std::string, Value::Dictionary, std::less<>> appDomains_;
};

}  // namespace vantro::sim
