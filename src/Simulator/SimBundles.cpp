#include "Simulator/SimBundles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "Simulator/PropertyListFile.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace fs = std::filesystem;

namespace {

std::string lower(std::string_view s) {
    std::string out(s);
    for (auto& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

bool isRegularFile(const fs::path& p) {
    std::error_code ec;
    return fs::is_regular_file(p, ec);
}

}  // namespace

std::string SimBundle::bundleURL() const { return SimWorkspace::directoryURL(bundlePath_); }

SimBundle::SimBundle(SimulatedMac& mac, std::string bundlePath, std::string resourcesPath)
    : mac_(mac), bundlePath_(std::move(bundlePath)), resourcesPath_(std::move(resourcesPath)) {}

std::vector<std::string> SimBundle::localizations() const {
    std::vector<std::string> out;
    std::error_code ec;
    for (fs::directory_iterator it(resourcesPath_, ec); !ec && it != fs::directory_iterator(); it.increment(ec)) {
        auto name = it->path().filename().string();
        if (it->is_directory() && name.size() > 6 && name.ends_with(".lproj")) out.push_back(name.substr(0, name.size() - 6));
    }
    std::sort(out.begin(), out.end());
    return out;
}

std::vector<std::string> SimBundle::languageOrder() const {
    auto available = localizations();
    auto preferred = mac_.bundles().preferredLocalizations(available, mac_.defaults().userLanguages());
    for (const char* fallback : {"en", "English", "Base"})
        if (std::find(available.begin(), available.end(), fallback) != available.end()) preferred.push_back(fallback);
    return preferred;
}

std::optional<std::string> SimBundle::pathForResource(std::string_view name, std::string_view type,
                                                      std::optional<std::string_view> localization) const {
    if (type == "nib" && xibsStandForNibs_) return pathForResource(name, "xib", localization);
    std::string file = std::string(name) + (type.empty() ? "" : "." + std::string(type));
    // Global resources come first and serve every localization, as in
    // pathForResource:ofType:inDirectory:forLocalization:; a localization
    // asked for by name is the only one looked in after them.
    fs::path flat = fs::path(resourcesPath_) / file;
    if (isRegularFile(flat)) return flat.string();
    if (localization) {
        fs::path p = fs::path(resourcesPath_) / (std::string(*localization) + ".lproj") / file;
        if (isRegularFile(p)) return p.string();
        return std::nullopt;
    }
    for (const auto& language : languageOrder()) {
        fs::path p = fs::path(resourcesPath_) / (language + ".lproj") / file;
        if (isRegularFile(p)) return p.string();
    }
    return std::nullopt;
}

std::optional<Value> SimBundle::objectForInfoDictionaryKey(std::string_view key) const {
    auto info = PropertyListFile::read(bundlePath_ + "/Contents/Info.plist");
    const Value* value = info ? info->find(key) : nullptr;
    if (!value) return std::nullopt;
    return *value;
}

std::string SimBundle::localizedString(std::string_view key, std::string_view value,
                                       std::optional<std::string_view> table) const {
    std::string tableName = table && !table->empty() ? std::string(*table) : std::string("Localizable");
    if (auto path = pathForResource(tableName, "strings", std::nullopt)) {
        auto cached = stringsTables_.find(*path);
        if (cached == stringsTables_.end())
            cached = stringsTables_.emplace(*path, mac_.bundles().propertyListWithContentsOfFile(*path)).first;
        if (const auto& strings = cached->second) {
            if (const auto* found = strings->find(key))
                if (auto text = found->string()) return *text;
        }
    }
    return value.empty() ? std::string(key) : std::string(value);
}

std::shared_ptr<Bundle> SimBundles::frameworkBundle() {
    if (!framework_) {
        auto resources = mac_.configuration().resourcesDirectory;
        framework_ = std::make_shared<SimBundle>(mac_, resources, resources);
        framework_->setXibsStandForNibs(mac_.configuration().layoutsCompiled);
    }
    return framework_;
}

std::shared_ptr<Bundle> SimBundles::mainBundle() {
    if (!main_) main_ = std::make_shared<SimBundle>(mac_, mac_.hostBundlePath(), mac_.hostBundlePath() + "/Contents/Resources");
    return main_;
}

std::shared_ptr<Bundle> SimBundles::bundleWithPath(std::string_view path) {
    std::string real = mac_.realPath(path);
    std::error_code ec;
    if (!fs::is_directory(real, ec)) return nullptr;
    fs::path resources = fs::path(real) / "Contents" / "Resources";
    return std::make_shared<SimBundle>(mac_, real, fs::is_directory(resources, ec) ? resources.string() : real);
}

std::optional<Value> SimBundles::propertyListWithContentsOfFile(std::string_view path) {
    ++reads_[fs::path(path).filename().string()];
    return PropertyListFile::read(std::string(path));
}

std::vector<std::string> SimBundles::preferredLocalizations(const std::vector<std::string>& localizations,
                                                            const std::vector<std::string>& preferences) {
    // The first preference that a localization serves wins: an exact match
    // ("zh-Hans"), else the preference without its region ("de-CH" → "de").
    auto served = [&](std::string_view preference) -> std::optional<std::string> {
        std::string wanted = lower(preference);
        std::vector<std::string> candidates{wanted};
        for (auto dash = wanted.rfind('-'); dash != std::string::npos; dash = wanted.rfind('-', dash - 1)) {
            candidates.push_back(wanted.substr(0, dash));
            if (dash == 0) break;
        }
        for (const auto& candidate : candidates)
            for (const auto& localization : localizations)
                if (lower(localization) == candidate) return localization;
        return std::nullopt;
    };
    for (const auto& preference : preferences)
        if (auto localization = served(preference)) return {*localization};
    // When no preference is served, Foundation still answers one of the
    // localizations offered: U.S. English where one serves it, else the first.
    if (auto english = served("en-US")) return {*english};
    if (!localizations.empty()) return {localizations.front()};
    return {};
}

int SimBundles::reads(std::string_view fileName) const {
    auto it = reads_.find(fileName);
    return it == reads_.end() ? 0 : it->second;
}

}  // namespace vantro::sim
