// Bundles on the real Mac.
//
// Implements: the framework's own bundle (the Swift package's resource bundle
// when built as a package, else the bundle of a framework class), the main
// bundle, bundleWithPath:, pathForResource:ofType: and
// pathForResource:ofType:inDirectory:forLocalization:, localizations,
// localizedStringForKey:value:table:, objectForInfoDictionaryKey:,
// +preferredLocalizationsFromArray:forPreferences:, and property lists read
// with NSPropertyListSerialization (XML, binary and the strings format; a
// UTF-16 strings file through NSString's propertyListFromStringsFileFormat).
// Known gaps: none.

#import <Foundation/Foundation.h>

#include "macOS/MacAreas.h"
#include "macOS/MacBundles.h"
#include "macOS/MacFoundation.h"

// A class of the framework: its bundle is the framework's.
@interface VantroBundleLocator : NSObject
@end

@implementation VantroBundleLocator
@end

namespace vantro::mac {

// In the Swift package the shell is a static library inside the host, so the
// bundle of a framework class would be the host's own: the resources are in
// the package's resource bundle, whose accessor the package manager defines
// for a target with resources and Objective-C(++) sources.
NSBundle* frameworkNSBundle() {
#if defined(SWIFTPM_MODULE_BUNDLE)
    return SWIFTPM_MODULE_BUNDLE;
#elif defined(SWIFT_PACKAGE)
#error "The Swift package build defines no SWIFTPM_MODULE_BUNDLE: the framework's resources could not be found"
#else
    return [NSBundle bundleForClass:[VantroBundleLocator class]];
#endif
}

namespace {

class MacBundle final : public Bundle {
public:
    explicit MacBundle(NSBundle* bundle) : bundle_(bundle) {}

    std::string bundlePath() const override { return toString(bundle_.bundlePath); }
    std::string bundleURL() const override { return toString(bundle_.bundleURL.absoluteString); }

    std::optional<std::string> pathForResource(std::string_view name, std::string_view type,
                                               std::optional<std::string_view> localization) const override {
        NSString* path = localization ? [bundle_ pathForResource:toNSString(name)
                                                          ofType:toNSString(type)
                                                     inDirectory:nil
                                                 forLocalization:toNSString(*localization)]
                                      : [bundle_ pathForResource:toNSString(name) ofType:toNSString(type)];
        return toOptionalString(path);
    }

    std::vector<std::string> localizations() const override { return toStrings(bundle_.localizations); }

    std::string localizedString(std::string_view key, std::string_view value,
                                std::optional<std::string_view> table) const override {
        return toString([bundle_ localizedStringForKey:toNSString(key)
                                                 value:toNSString(value)
                                                 table:table ? toNSString(*table) : nil]);
    }

    std::optional<Value> objectForInfoDictionaryKey(std::string_view key) const override {
        id value = [bundle_ objectForInfoDictionaryKey:toNSString(key)];
        if (!value) return std::nullopt;
        return toValue(value);
    }

private:
    NSBundle* bundle_;
};

class MacBundles final : public Bundles {
public:
    std::shared_ptr<Bundle> frameworkBundle() override {
        if (!framework_) framework_ = std::make_shared<MacBundle>(frameworkNSBundle());
        return framework_;
    }

    std::shared_ptr<Bundle> mainBundle() override {
        if (!main_) main_ = std::make_shared<MacBundle>(NSBundle.mainBundle);
        return main_;
    }

    std::shared_ptr<Bundle> bundleWithPath(std::string_view path) override {
        NSBundle* bundle = [NSBundle bundleWithPath:toNSString(path)];
        if (!bundle) return nullptr;
        return std::make_shared<MacBundle>(bundle);
    }

    std::optional<Value> propertyListWithContentsOfFile(std::string_view path) override {
        NSData* data = [NSData dataWithContentsOfFile:toNSString(path)];
        if (!data) return std::nullopt;
        id plist = [NSPropertyListSerialization propertyListWithData:data
                                                             options:NSPropertyListImmutable
                                                              format:nullptr
                                                               error:nil];
        if (!plist) {
            NSString* text = [NSString stringWithContentsOfFile:toNSString(path) usedEncoding:nullptr error:nil];
            plist = text.propertyListFromStringsFileFormat;
        }
        if (!plist) return std::nullopt;
        return toValue(plist);
    }

    std::vector<std::string> preferredLocalizations(const std::vector<std::string>& localizations,
                                                    const std::vector<std::string>& preferences) override {
        return toStrings([NSBundle preferredLocalizationsFromArray:toNSArray(localizations)
                                                     forPreferences:toNSArray(preferences)]);
    }

private:
    std::shared_ptr<MacBundle> framework_;
    std::shared_ptr<MacBundle> main_;
};

}  // namespace

std::unique_ptr<Bundles> makeBundles() { return std::make_unique<MacBundles>(); }

}  // namespace vantro::mac
