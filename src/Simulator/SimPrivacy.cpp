#include "Simulator/SimPrivacy.h"

#include <cerrno>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

constexpr std::int32_t noErr = 0;
constexpr std::int32_t procNotFound = -600;
constexpr std::int32_t errAEEventNotPermitted = -1743;
constexpr std::int32_t errAEEventWouldRequireUserConsent = -1744;

// The mode a blocked main thread "runs" in: no main-thread work at all, only
// what happens outside it (the user, the system's queues).
constexpr std::string_view blockedOnPromptMode = "SimBlockedOnSystemPrompt";

// How a directory that needs Full Disk Access answers a listing, from a
// release on: the last row that names the directory and whose release the Mac
// has reached decides. Each row carries how sure the field reports are.
struct ProtectedDirectoryAnswer {
    std::string_view directory;
    int fromMajor;
    int fromMinor;
    int withFullDiskAccess;     // 0: lists; else the POSIX error of the refusal
    int withoutFullDiskAccess;  // likewise
};
constexpr ProtectedDirectoryAnswer protectedDirectoryAnswers[] = {
    // Confirmed: from 10.14 every one of them is refused with EPERM unless
    // the application holds Full Disk Access.
    {"", 10, 14, 0, EPERM},
    // Reported, details conflicting: on 27 the per-user privacy database's
    // folder is refused even with Full Disk Access (one report has it moved
    // away and gone; refused is the harder case for the probe).
    {"Library/Application Support/com.apple.TCC", 27, 0, EPERM, EPERM},
    // Reported: on 27 some protected locations answer "no such file" without
    // Full Disk Access. Which ones is unconfirmed: these four are modelled so;
    // Safari, Mail and Messages are reported to still answer EPERM.
    {"Library/Containers/com.apple.mail", 27, 0, 0, ENOENT},
    {"Library/Containers/com.apple.Safari", 27, 0, 0, ENOENT},
    {"Library/Cookies", 27, 0, 0, ENOENT},
    {"Library/Metadata/CoreSpotlight", 27, 0, 0, ENOENT},
};

}  // namespace

SimPrivacy::SimPrivacy(SimulatedMac& mac) : mac_(mac) {}

bool SimPrivacy::atLeast(int major, int minor) const {
    auto v = mac_.release().systemVersion;
    return v.majorVersion > major || (v.majorVersion == major && v.minorVersion >= minor);
}

std::string_view SimPrivacy::serviceName(PromptedService service) {
    switch (service) {
    case PromptedService::Calendars: return "Calendars";
    case PromptedService::Reminders: return "Reminders";
    case PromptedService::Contacts: return "Contacts";
    case PromptedService::Photos: return "Photos";
    case PromptedService::ScreenRecording: return "Screen Recording";
    case PromptedService::InputMonitoring: return "Input Monitoring";
    case PromptedService::Camera: return "Camera";
    case PromptedService::Microphone: return "Microphone";
    case PromptedService::Bluetooth: return "Bluetooth";
    }
    return "?";
}

std::string_view SimPrivacy::consentName(Consent consent) {
    switch (consent) {
    case Consent::NotDetermined: return "not determined";
    case Consent::Denied: return "denied";
    case Consent::Authorized: return "authorized";
    case Consent::Restricted: return "restricted";
    }
    return "?";
}

std::string_view SimPrivacy::folderName(ProtectedFolder folder) {
    switch (folder) {
    case ProtectedFolder::Desktop: return "Desktop";
    case ProtectedFolder::Documents: return "Documents";
    case ProtectedFolder::Downloads: return "Downloads";
    }
    return "?";
}

const std::vector<std::string>& SimPrivacy::fullDiskAccessDirectories() {
    static const std::vector<std::string> directories = {
        "Library/Application Support/com.apple.TCC",
        "Library/Containers/com.apple.mail",
        "Library/Containers/com.apple.Safari",
        "Library/Cookies",
        "Library/Mail",
        "Library/Messages",
        "Library/Metadata/CoreSpotlight",
        "Library/Safari",
    };
    return directories;
}

Consent SimPrivacy::consent(PromptedService service) const {
    auto it = services_.find(service);
    return it == services_.end() ? Consent::NotDetermined : it->second;
}

void SimPrivacy::setConsent(PromptedService service, Consent consent) {
    services_[service] = consent;
    mac_.record("privacy", std::string(serviceName(service)) + ": " + std::string(consentName(consent)));
}

void SimPrivacy::grantScreenRecordingFromSettings() {
    const bool before = consent(PromptedService::ScreenRecording) == Consent::Authorized;
    setConsent(PromptedService::ScreenRecording, Consent::Authorized);
    screenRecordingAwaitsRelaunch_ = !before;
}

void SimPrivacy::setFullDiskAccess(bool granted) {
    fullDiskAccess_ = granted;
    mac_.record("privacy", std::string("Full Disk Access: ") + (granted ? "granted" : "not granted"));
}

Consent SimPrivacy::folderConsent(ProtectedFolder folder) const {
    auto it = folders_.find(folder);
    return it == folders_.end() ? Consent::NotDetermined : it->second;
}

void SimPrivacy::setFolderConsent(ProtectedFolder folder, Consent consent) {
    folders_[folder] = consent;
    mac_.record("privacy", std::string(folderName(folder)) + " folder: " + std::string(consentName(consent)));
}

void SimPrivacy::setAccessibilityTrusted(bool trusted) {
    accessibilityTrusted_ = trusted;
    mac_.record("privacy", std::string("Accessibility: ") + (trusted ? "trusted" : "not trusted"));
}

Consent SimPrivacy::automationConsent(std::string_view target) const {
    auto it = automation_.find(target);
    return it == automation_.end() ? Consent::NotDetermined : it->second;
}

void SimPrivacy::setAutomationConsent(std::string_view target, Consent consent) {
    automation_.insert_or_assign(std::string(target), consent);
    mac_.record("privacy", "Automation of " + std::string(target) + ": " + std::string(consentName(consent)));
}

std::int32_t SimPrivacy::determinePermissionToAutomate(std::string_view target, bool askUserIfNeeded) {
    if (!mac_.workspace().application(target) || mac_.workspace().application(target)->isTerminated()) return procNotFound;
    switch (automationConsent(target)) {
    case Consent::Authorized: return noErr;
    case Consent::Denied:
    case Consent::Restricted: return errAEEventNotPermitted;
    case Consent::NotDetermined: break;
    }
    if (!askUserIfNeeded) return errAEEventWouldRequireUserConsent;
    auto allowed = askUserAndWait("Automation of " + std::string(target));
    if (!allowed) return errAEEventWouldRequireUserConsent;
    setAutomationConsent(target, *allowed ? Consent::Authorized : Consent::Denied);
    return *allowed ? noErr : errAEEventNotPermitted;
}

bool SimPrivacy::setConsentForIdentifier(std::string_view identifier, Consent consent) {
    const bool restricted = consent == Consent::Restricted;
    if (identifier == "Privacy_AllFiles") {
        if (restricted) return false;
        setFullDiskAccess(consent == Consent::Authorized);
        return true;
    }
    if (identifier == "Privacy_Accessibility" || identifier == "Privacy_Assistive") {
        if (restricted) return false;
        setAccessibilityTrusted(consent == Consent::Authorized);
        return true;
    }
    const std::pair<std::string_view, ProtectedFolder> folders[] = {
        {"Privacy_DesktopFolder", ProtectedFolder::Desktop},
        {"Privacy_DocumentsFolder", ProtectedFolder::Documents},
        {"Privacy_DownloadsFolder", ProtectedFolder::Downloads},
    };
    for (const auto& [name, folder] : folders) {
        if (identifier != name) continue;
        if (restricted) return false;
        setFolderConsent(folder, consent);
        return true;
    }
    const std::pair<std::string_view, PromptedService> services[] = {
        {"Privacy_Calendars", PromptedService::Calendars},
        {"Privacy_Reminders", PromptedService::Reminders},
        {"Privacy_Contacts", PromptedService::Contacts},
        {"Privacy_Photos", PromptedService::Photos},
        {"Privacy_ScreenCapture", PromptedService::ScreenRecording},
        {"Privacy_ListenEvent", PromptedService::InputMonitoring},
        {"Privacy_Camera", PromptedService::Camera},
        {"Privacy_Microphone", PromptedService::Microphone},
        {"Privacy_Bluetooth", PromptedService::Bluetooth},
    };
    for (const auto& [name, service] : services) {
        if (identifier != name) continue;
        setConsent(service, consent);
        return true;
    }
    return false;
}

void SimPrivacy::answerNextPrompt(PromptAnswer answer) { answers_.push_back(answer); }

void SimPrivacy::askUser(std::string_view service, std::function<void(bool allowed)> answered) {
    PromptAnswer answer = PromptAnswer::deny();
    if (!answers_.empty()) {
        answer = answers_.front();
        answers_.pop_front();
    }
    std::size_t index = prompts_.size();
    prompts_.push_back({std::string(service), mac_.now(), std::nullopt});
    mac_.record("system", "prompt: \"" + mac_.configuration().hostName + "\" would like to access " + std::string(service));
    if (answer.choice == PromptAnswer::Choice::Never) return;
    const bool allow = answer.choice == PromptAnswer::Choice::Allow;
    mac_.userDoes(answer.delay, std::string(allow ? "allows " : "does not allow ") + std::string(service),
                  [this, index, allow, answered = std::move(answered)] {
                      // A prompt given up is gone: a late answer changes nothing.
                      if (prompts_[index].givenUp) return;
                      prompts_[index].allowed = allow;
                      answered(allow);
                  });
}

std::optional<bool> SimPrivacy::askUserAndWait(std::string_view service) {
    auto result = std::make_shared<std::optional<bool>>();
    std::size_t index = prompts_.size();
    askUser(service, [result](bool allowed) { *result = allowed; });
    mac_.runLoop().runModeUntil(blockedOnPromptMode, [&] { return result->has_value(); }, promptTimeout);
    if (!result->has_value()) {
        prompts_[index].givenUp = true;
        mac_.record("system", "prompt for " + std::string(service) + " given up without an answer");
    }
    return *result;
}

std::optional<std::string> SimPrivacy::homeRelative(std::string_view path) const {
    const std::string& home = mac_.homeDirectory();
    if (path == home) return std::string();
    if (path.size() > home.size() && path.substr(0, home.size()) == home && path[home.size()] == '/')
        return std::string(path.substr(home.size() + 1));
    return std::nullopt;
}

bool SimPrivacy::isInside(std::string_view relative, std::string_view directory) {
    return relative == directory ||
           (relative.size() > directory.size() && relative.substr(0, directory.size()) == directory &&
            relative[directory.size()] == '/');
}

int SimPrivacy::fullDiskAccessDirectoryRefusal(std::string_view directory) const {
    int refusal = 0;
    for (const auto& answer : protectedDirectoryAnswers) {
        if (!answer.directory.empty() && answer.directory != directory) continue;
        if (!atLeast(answer.fromMajor, answer.fromMinor)) continue;
        refusal = fullDiskAccess_ ? answer.withFullDiskAccess : answer.withoutFullDiskAccess;
    }
    return refusal;
}

int SimPrivacy::listingRefusal(std::string_view standardizedPath) {
    auto relative = homeRelative(standardizedPath);
    if (!relative) return 0;
    if (atLeast(10, 14)) {
        for (const auto& directory : fullDiskAccessDirectories())
            if (isInside(*relative, directory)) return fullDiskAccessDirectoryRefusal(directory);
        if (isInside(*relative, photoLibraryDirectory))
            return !fullDiskAccess_ && consent(PromptedService::Photos) != Consent::Authorized ? EPERM : 0;
    }
    if (!atLeast(10, 15)) return 0;
    for (auto folder : {ProtectedFolder::Desktop, ProtectedFolder::Documents, ProtectedFolder::Downloads}) {
        if (!isInside(*relative, folderName(folder))) continue;
        if (fullDiskAccess_) return 0;
        switch (folderConsent(folder)) {
        case Consent::Authorized: return 0;
        case Consent::Denied:
        case Consent::Restricted: return EPERM;
        case Consent::NotDetermined: break;
        }
        auto allowed = askUserAndWait(std::string("files in your ") + std::string(folderName(folder)) + " folder");
        if (!allowed) return EPERM;
        setFolderConsent(folder, *allowed ? Consent::Authorized : Consent::Denied);
        return *allowed ? 0 : EPERM;
    }
    return 0;
}

}  // namespace vantro::sim
