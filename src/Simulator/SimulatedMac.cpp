#include "Simulator/SimulatedMac.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "Platform/PosixFileSystem.h"
#include "Simulator/PropertyListFile.h"

#ifndef VANTRO_RESOURCES_DIR
#define VANTRO_RESOURCES_DIR "Resources"
#endif

namespace vantro::sim {

namespace fs = std::filesystem;

namespace {

// The platform as the framework sees it: the simulated Mac's components.
class SimPlatform : public Platform {
public:
    explicit SimPlatform(SimulatedMac& mac) : mac_(mac) {}
    System& system() override { return mac_.system(); }
    FileSystem& fileSystem() override { return mac_.fileSystem(); }
    RunLoop& runLoop() override { return mac_.runLoop(); }
    Defaults& defaults() override { return mac_.defaults(); }
    Bundles& bundles() override { return mac_.bundles(); }
    Log& log() override { return mac_.log(); }
    AssertionHandler& assertionHandler() override { return mac_.assertionHandler(); }
    Alerts& alerts() override { return mac_.alerts(); }
    Workspace& workspace() override { return mac_.workspace(); }
    Services& services() override { return mac_.services(); }
    Windows& windows() override { return mac_.windows(); }
    Dragging& dragging() override { return mac_.dragging(); }
    AppleEvents& appleEvents() override { return mac_.appleEvents(); }

private:
    SimulatedMac& mac_;
};

// Plain permission bits set by tests would stop the clean-up: give them back.
void makeRemovable(const std::string& root) {
    std::error_code ec;
    for (fs::recursive_directory_iterator it(root, fs::directory_options::skip_permission_denied, ec), end; !ec && it != end;
         it.increment(ec)) {
        fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
    }
}

constexpr std::string_view rootPrefix = "vantro-mac-";

// Disks left behind by processes that ended without tearing their simulated
// Macs down (a crash, a kill): each disk's name carries its process's id, and
// a disk whose process no longer runs is removed.
void removeAbandonedRoots(const fs::path& base) {
    std::error_code ec;
    for (fs::directory_iterator it(base, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (!name.starts_with(rootPrefix)) continue;
        const char* digits = name.c_str() + rootPrefix.size();
        pid_t pid = 0;
        auto [rest, error] = std::from_chars(digits, name.c_str() + name.size(), pid);
        if (error != std::errc() || rest == digits || *rest != '-' || pid <= 0 || pid == getpid()) continue;
        if (kill(pid, 0) == 0 || errno != ESRCH) continue;
        makeRemovable(it->path().string());
        std::error_code removal;
        fs::remove_all(it->path(), removal);
    }
}

// The folder the simulated Mac's disk goes in: TMPDIR when the user set
// one, else memory-backed storage, which keeps the few dozen folders a Mac
// makes cheap, else /tmp. A TMPDIR that cannot hold the disk is an error,
// never a reason to fall back on a folder other processes share.
fs::path temporaryBase() {
    const char* chosen = std::getenv("TMPDIR");
    if (chosen && *chosen) return chosen;
    std::error_code ec;
    if (fs::is_directory("/dev/shm", ec) && access("/dev/shm", W_OK) == 0) return "/dev/shm";
    return "/tmp";
}

std::string makeTemporaryRoot() {
    const fs::path base = temporaryBase();
    removeAbandonedRoots(base);
    std::string pattern = (base / (std::string(rootPrefix) + std::to_string(getpid()) + "-XXXXXX")).string();
    if (!mkdtemp(pattern.data()))
        throw SetupFailure("cannot make the simulated Mac's disk in the temporary folder " + base.string() + ": " +
                           std::generic_category().message(errno));
    return pattern;
}

const MacRelease& knownRelease(const std::string& name) {
    static const std::vector<MacRelease>& releases = MacRelease::all();
    for (const auto& release : releases)
        if (release.name == name) return release;
    throw std::invalid_argument("unknown macOS release \"" + name + "\"");
}

}  // namespace

std::unique_ptr<Platform> SimulatedMac::makePlatform() { return std::make_unique<SimPlatform>(*this); }

double MacConfiguration::appKitVersionNumber() const {
    if (appKitVersion) return *appKitVersion;
    auto r = MacRelease::named(release);
    return r ? r->appKitVersionNumber : 0;
}

void SimulatedMac::changeRelease(const std::string& release) {
    release_ = knownRelease(release);
    configuration_.release = release;
    configuration_.appKitVersion.reset();
}

SimulatedMac::SimulatedMac(MacConfiguration configuration)
    : configuration_(std::move(configuration)),
      release_(knownRelease(configuration_.release)) {
    if (configuration_.resourcesDirectory.empty()) configuration_.resourcesDirectory = VANTRO_RESOURCES_DIR;
    root_ = makeTemporaryRoot();
    home_ = root_ + "/Users/" + configuration_.userName;
    hostBundle_ = root_ + "/Applications/" + configuration_.hostName + ".app";
    try {
        buildDisk();
    } catch (...) {
        makeRemovable(root_);
        std::error_code ec;
        fs::remove_all(root_, ec);
        throw;
    }

    runLoop_ = std::make_unique<SimRunLoop>();
    system_ = std::make_unique<SimSystem>(*this);
    defaults_ = std::make_unique<SimDefaults>(*this);
    bundles_ = std::make_unique<SimBundles>(*this);
    log_ = std::make_unique<SimLog>(*this);
    assertions_ = std::make_unique<SimAssertionHandler>(*this);
    alerts_ = std::make_unique<SimAlerts>(*this);
    workspace_ = std::make_unique<SimWorkspace>(*this);
    windows_ = std::make_unique<SimWindows>(*this);
    dragging_ = std::make_unique<SimDragging>(*this);
    appleEvents_ = std::make_unique<SimAppleEvents>(*this);
    privacy_ = std::make_unique<SimPrivacy>(*this);
    fileSystem_ = std::make_unique<SimFileSystem>(*this, home_);
    services_ = std::make_unique<SimServices>(*this);

    defaults_->setUserLanguages(configuration_.languages);
    workspace_->install({configuration_.hostBundleIdentifier, configuration_.hostName, SimWorkspace::directoryURL(hostBundle_), 0.5});
    workspace_->host_ = workspace_->start(configuration_.hostBundleIdentifier);
    workspace_->front_ = workspace_->host_;
    workspace_->frontSeenByHost_ = workspace_->host_;
    workspace_->install({"com.apple.finder", "Finder", "file:///System/Library/CoreServices/Finder.app/", 0.3});
    workspace_->start("com.apple.finder");
    systemPreferences_ = std::make_unique<SimSystemPreferences>(*this);
    // The host's icon dropped on System Preferences' privacy list grants the
    // category of the list to the host.
    systemPreferences_->setGrantHandler([this](const std::string& anchor) {
        if (anchor == "Privacy_ScreenCapture") privacy_->grantScreenRecordingFromSettings();
        else privacy_->setConsentForIdentifier(anchor, Consent::Authorized);
    });
    dragging_->setDropTarget([this](const SimDragging::Drop& drop) -> DragOperation {
        return systemPreferences_->acceptsDrop(drop.url, drop.screenPoint) ? (drop.allowed & NSDragOperationCopy) : NSDragOperationNone;
    });

    process_ = std::make_unique<HostProcess>(makePlatform());
    HostProcess::install(process_.get());
    record("system", release_.title() + ", AppKit " +
                         std::to_string(configuration_.appKitVersionNumber()).substr(0, 7) +
                         (configuration_.sandboxed ? ", sandboxed host " : ", host ") + configuration_.hostName);
}

SimulatedMac::~SimulatedMac() {
    // Pending work goes first, while its process is current (it may hold the
    // framework's objects), then the process itself: the framework's objects
    // unregister from the platform while it still exists.
    runLoop_->discardPendingWork();
    process_.reset();
    makeRemovable(root_);
    std::error_code ec;
    fs::remove_all(root_, ec);
}

void SimulatedMac::relaunchHost() {
    record("system", "quits " + configuration_.hostName);
    if (hostQuits_) hostQuits_();
    runLoop_->discardMainThreadWork();
    process_.reset();
    workspace_->host_->markTerminated();
    std::erase(workspace_->running_, workspace_->host_);
    workspace_->host_ = workspace_->start(configuration_.hostBundleIdentifier);
    privacy_->hostRelaunched();
    process_ = std::make_unique<HostProcess>(makePlatform());
    HostProcess::install(process_.get());
    record("system", "opens " + configuration_.hostName + " again");
    workspace_->activate(workspace_->host_);
    if (hostReopened_) hostReopened_();
}

double SimulatedMac::now() const { return runLoop_->now(); }

void SimulatedMac::record(std::string_view actor, std::string_view text) { timeline_.record(now(), actor, text); }

void SimulatedMac::userDoes(double delay, std::string description, std::function<void()> action) {
    runLoop_->scheduleUserEvent(delay, [this, description = std::move(description), action = std::move(action)] {
        record("user", description);
        action();
    });
}

std::string SimulatedMac::realPath(std::string_view macPath) const {
    std::string path(macPath);
    if (path.rfind(root_, 0) == 0) return path;
    if (path.empty() || path.front() != '/') return root_ + "/" + path;
    return root_ + path;
}

void SimulatedMac::makeHomeDirectory(std::string_view relativePath) {
    std::error_code ec;
    fs::create_directories(fs::path(home_) / relativePath, ec);
}

void SimulatedMac::buildDisk() {
    std::error_code ec;
    fs::create_directories(home_, ec);
    if (ec) throw SetupFailure("cannot make the simulated Mac's disk in " + root_ + ": " + ec.message());
    writeHostBundle();
}

const std::vector<std::string>& SimulatedMac::usageDescriptionKeys() {
    static const std::vector<std::string> keys = {
        "NSCalendarsUsageDescription", "NSCalendarsFullAccessUsageDescription", "NSRemindersUsageDescription",
        "NSRemindersFullAccessUsageDescription", "NSContactsUsageDescription", "NSPhotoLibraryUsageDescription",
        "NSCameraUsageDescription", "NSMicrophoneUsageDescription", "NSBluetoothAlwaysUsageDescription",
    };
    return keys;
}

void SimulatedMac::setHostInfoValue(std::string_view key, std::optional<Value> value) {
    const std::string path = hostBundle_ + "/Contents/Info.plist";
    Value::Dictionary entries;
    if (auto info = PropertyListFile::read(path); info && info->dictionary()) entries = *info->dictionary();
    entries.erase(std::string(key));
    if (value) entries.emplace(std::string(key), *value);
    PropertyListFile::writeXML(path, Value(std::move(entries)));
}

void SimulatedMac::writeHostBundle() {
    Value::Dictionary info{
        {"CFBundleIdentifier", Value(configuration_.hostBundleIdentifier)},
        {"CFBundleName", Value(configuration_.hostName)},
        {"CFBundlePackageType", Value("APPL")},
    };
    for (const auto& key : usageDescriptionKeys()) info.emplace(key, Value("To show what the permission list offers."));
    std::error_code created;
    fs::create_directories(fs::path(hostBundle_) / "Contents", created);
    PropertyListFile::writeXML(hostBundle_ + "/Contents/Info.plist", Value(std::move(info)));

    // The host's own translations of the refusal alert: its title, message,
    // and the two buttons.
    struct AlertTexts {
        const char* language;
        const char* texts[4];
    };
    static const char* const keys[4] = {"Permission Refused", "Visit System Privacy Preferences to grant permission.",
                                        "Open Privacy Preferences", "Cancel"};
    static const AlertTexts translations[] = {
        {"en", {keys[0], keys[1], keys[2], keys[3]}},
        {"de", {"Zugriff verweigert", "Erteile die Berechtigung in den Datenschutz-Einstellungen.", "Datenschutz öffnen",
                "Abbrechen"}},
        {"fr", {"Autorisation refusée", "Accordez l’autorisation dans les préférences de confidentialité du système.",
                "Ouvrir les préférences de confidentialité", "Annuler"}},
        {"ja", {"アクセスが拒否されました", "システムのプライバシー設定で許可してください。", "プライバシー設定を開く",
                "キャンセル"}},
    };
    fs::path resources = fs::path(hostBundle_) / "Contents" / "Resources";
    for (const auto& translation : translations) {
        fs::path folder = resources / (std::string(translation.language) + ".lproj");
        std::error_code ec;
        fs::create_directories(folder, ec);
        std::ofstream table(folder / "Localizable.strings");
        for (int i = 0; i < 4; ++i) table << "\"" << keys[i] << "\" = \"" << translation.texts[i] << "\";\n";
        table.close();
        if (ec || !table)
            throw SetupFailure("cannot write the host's bundle in " + root_ + ": " +
                               (ec ? ec.message() : std::generic_category().message(errno ? errno : EIO)));
    }
}

}  // namespace vantro::sim
