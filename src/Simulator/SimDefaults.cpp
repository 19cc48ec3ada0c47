#include "Simulator/SimDefaults.h"

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

bool SimDefaults::boolForKey(std::string_view key) {
    auto it = host_.find(key);
    return it != host_.end() && it->second.boolValue();
}

void SimDefaults::setBool(bool value, std::string_view key) {
    host_.insert_or_assign(std::string(key), Value(value));
    mac_.record("host", std::string("user defaults: ") + std::string(key) + " = " + (value ? "YES" : "NO"));
}

std::optional<Value::Dictionary> SimDefaults::persistentDomainForName(std::string_view domainName) {
    auto it = domains_.find(domainName);
    if (it == domains_.end()) return std::nullopt;
    return it->second;
}

std::optional<Value> SimDefaults::copyAppValue(std::string_view key, std::string_view applicationID) {
    auto domain = appDomains_.find(applicationID);
    if (domain == appDomains_.end()) return std::nullopt;
    auto it = domain->second.find(key);
    if (it == domain->second.end()) return std::nullopt;
    return it->second;
}

void SimDefaults::setPersistentDomain(std::string_view name, Value::Dictionary domain) {
    domains_.insert_or_assign(std::string(name), std::move(domain));
}

void SimDefaults::setAppValue(std::string_view applicationID, std::string_view key, Value value) {
    appDomains_[std::string(applicationID)].insert_or_assign(std::string(key), std::move(value));
}

void SimDefaults::setUserLanguages(const std::vector<std::string>& languages) {
    Value::Array array(languages.begin(), languages.end());
    domains_[std::string(NSGlobalDomain)].insert_or_assign("AppleLanguages", Value(std::move(array)));
}

std::vector<std::string> SimDefaults::userLanguages() const {
    std::vector<std::string> out;
    auto domain = domains_.find(NSGlobalDomain);
    if (domain == domains_.end()) return out;
    auto it = domain->second.find("AppleLanguages");
    if (it == domain->second.end() || !it->second.array()) return out;
    for (const auto& v : *it->second.array())
        if (auto s = v.string()) out.push_back(*s);
    return out;
}

}  // namespace vantro::sim
