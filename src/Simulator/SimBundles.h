#pragma once

#include <map>
#include <memory>
#include <string>

#include "Platform/Bundles.h"

namespace vantro::sim {

class SimulatedMac;

// A bundle of the simulated Mac: a folder of resources on the real disk, with
// flat resources and one "<language>.lproj" folder per localization. Strings
// tables are read in the user's preferred language (AppleLanguages of the
// global domain) among the bundle's localizations, English when none matches.
class SimBundle : public Bundle {
public:
    SimBundle(SimulatedMac& mac, std::string bundlePath, std::string resourcesPath);

    std::string bundlePath() const override { return bundlePath_; }
    std::string bundleURL() const override;
    std::optional<std::string> pathForResource(std::string_view name, std::string_view type,
                                               std::optional<std::string_view> localization) const override;
    std::vector<std::string> localizations() const override;
    // Reads each strings table once, when a string of it is first asked
    // for, and keeps it for the bundle's life, as NSBundle does: a table
    // changed on disk afterwards is not seen by this bundle.
    std::string localizedString(std::string_view key, std::string_view value,
                                std::optional<std::string_view> table) const override;
    // From Contents/Info.plist, read afresh at each call (a test may change
    // the host's), without localization.
    std::optional<Value> objectForInfoDictionaryKey(std::string_view key) const override;

    const std::string& resourcesPath() const { return resourcesPath_; }
    // Whether a layout's .xib stands for its compiled .nib, as in the
    // framework's bundle once its layouts are compiled.
    void setXibsStandForNibs(bool stand) { xibsStandForNibs_ = stand; }

private:
    std::vector<std::string> languageOrder() const;

    SimulatedMac& mac_;
    std::string bundlePath_;
    std::string resourcesPath_;
    bool xibsStandForNibs_ = false;
    // The tables read so far, by file path; nullopt for one that did not read.
    mutable std::map<std::string, std::optional<Value>, std::less<>> stringsTables_;
};

class SimBundles : public Bundles {
public:
    explicit SimBundles(SimulatedMac& mac) : mac_(mac) {}

    std::shared_ptr<Bundle> frameworkBundle() override;
    std::shared_ptr<Bundle> mainBundle() override;
    std::shared_ptr<Bundle> bundleWithPath(std::string_view path) override;
    std::optional<Value> propertyListWithContentsOfFile(std::string_view path) override;
    std::vector<std::string> preferredLocalizations(const std::vector<std::string>& localizations,
                                                    const std::vector<std::string>& preferences) override;

    // How many times a resource file was read, for tests of once-per-process loading.
    int reads(std::string_view fileName) const;

private:
    SimulatedMac& mac_;
    std::shared_ptr<SimBundle> framework_;
    std::shared_ptr<SimBundle> main_;
    std::map<std::string, int, std::less<>> reads_;
};

}  // namespace vantro::sim
