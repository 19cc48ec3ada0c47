// Defaults on the real Mac.
//
// Implements: the standard user defaults' boolForKey: and setBool:forKey:;
// persistentDomainForName: (NSGlobalDomain's AppleLanguages among others);
// CFPreferencesCopyAppValue for another application's domain, safe on any
// thread.
// Known gaps: none.

#import <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include "macOS/MacAreas.h"
#include "macOS/MacFoundation.h"

namespace vantro::mac {

namespace {

class MacDefaults final : public Defaults {
public:
    bool boolForKey(std::string_view key) override { return [NSUserDefaults.standardUserDefaults boolForKey:toNSString(key)]; }

    void setBool(bool value, std::string_view key) override {
        [NSUserDefaults.standardUserDefaults setBool:value forKey:toNSString(key)];
    }

    std::optional<Value::Dictionary> persistentDomainForName(std::string_view domainName) override {
        NSDictionary* domain = [NSUserDefaults.standardUserDefaults persistentDomainForName:toNSString(domainName)];
        if (!domain) return std::nullopt;
        Value value = toValue(domain);
        return value.dictionary() ? std::optional(*value.dictionary()) : std::nullopt;
    }

    std::optional<Value> copyAppValue(std::string_view key, std::string_view applicationID) override {
        CFPropertyListRef value =
            CFPreferencesCopyAppValue((__bridge CFStringRef)toNSString(key), (__bridge CFStringRef)toNSString(applicationID));
        if (!value) return std::nullopt;
        return toValue(CFBridgingRelease(value));
    }
};

}  // namespace

std::unique_ptr<Defaults> makeDefaults() { return std::make_unique<MacDefaults>(); }

}  // namespace vantro::mac
