#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Value.h"

namespace vantro {

// A bundle on disk (NSBundle). Main thread.
class Bundle {
public:
    Bundle() = default;
    Bundle(const Bundle&) = delete;
    Bundle& operator=(const Bundle&) = delete;
    virtual ~Bundle() = default;

    virtual std::string bundlePath() const = 0;
    // bundleURL, as a file URL string.
    virtual std::string bundleURL() const = 0;
    // pathForResource:ofType: (no localization: the bundle's own choice of
    // language) or pathForResource:ofType:inDirectory:forLocalization: with
    // exactly that localization and no sub-directory. nullopt when missing.
    virtual std::optional<std::string> pathForResource(std::string_view name, std::string_view type,
                                                       std::optional<std::string_view> localization = std::nullopt) const = 0;
    // localizations: the languages the bundle holds resources for.
    virtual std::vector<std::string> localizations() const = 0;
    // localizedStringForKey:value:table:. A missing entry yields `value`, or
    // the key itself when `value` is empty. No table means "Localizable".
    virtual std::string localizedString(std::string_view key, std::string_view value,
                                        std::optional<std::string_view> table) const = 0;
    // objectForInfoDictionaryKey:: the value of `key` in the bundle's
    // Info.plist (localized where the bundle localizes it); nullopt when the
    // key is missing.
    virtual std::optional<Value> objectForInfoDictionaryKey(std::string_view key) const = 0;
};

// Finding bundles and reading their files. Main thread.
class Bundles {
public:
    Bundles() = default;
    Bundles(const Bundles&) = delete;
    Bundles& operator=(const Bundles&) = delete;
    virtual ~Bundles() = default;

    // The bundle that holds the framework's classes (bundleForClass:).
    virtual std::shared_ptr<Bundle> frameworkBundle() = 0;
    // The host application's main bundle.
    virtual std::shared_ptr<Bundle> mainBundle() = 0;
    // bundleWithPath:; nullptr when there is no bundle at the path.
    virtual std::shared_ptr<Bundle> bundleWithPath(std::string_view path) = 0;
    // dictionaryWithContentsOfFile: / arrayWithContentsOfFile:: the property
    // list (XML, binary or strings format) at a path; nullopt when missing or
    // unreadable.
    virtual std::optional<Value> propertyListWithContentsOfFile(std::string_view path) = 0;
    // preferredLocalizationsFromArray:forPreferences:. Foundation always
    // answers one of the offered localizations (English, or the first, when
    // no preference matches); empty only when none is offered.
    virtual std::vector<std::string> preferredLocalizations(const std::vector<std::string>& localizations,
                                                            const std::vector<std::string>& preferences) = 0;
};

}  // namespace vantro
