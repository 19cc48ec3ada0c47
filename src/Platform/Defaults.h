#pragma once

#include <optional>
#include <string_view>

#include "Platform/Value.h"

namespace vantro {

inline constexpr std::string_view NSGlobalDomain = "NSGlobalDomain";

// The host's user defaults and the system's preference domains. Main thread,
// except copyAppValue, which any thread may call (the Photos answer reads the
// photo library daemon's preference on the system's queue).
class Defaults {
public:
    Defaults() = default;
    Defaults(const Defaults&) = delete;
    Defaults& operator=(const Defaults&) = delete;
    virtual ~Defaults() = default;

    // boolForKey: of the standard user defaults; false when unset.
    virtual bool boolForKey(std::string_view key) = 0;
    // setBool:forKey: of the standard user defaults.
    virtual void setBool(bool value, std::string_view key) = 0;
    // persistentDomainForName: of the standard user defaults; nullopt when the
    // domain does not exist.
    virtual std::optional<Value::Dictionary> persistentDomainForName(std::string_view domainName) = 0;
    // CFPreferencesCopyAppValue: the value of `key` in another application's
    // preference domain, nullopt when absent.
    virtual std::optional<Value> copyAppValue(std::string_view key, std::string_view applicationID) = 0;
};

}  // namespace vantro
