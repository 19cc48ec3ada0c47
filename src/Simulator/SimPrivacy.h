#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantro::sim {

class SimulatedMac;

// A user's answer recorded in the privacy database. Restricted is set by a
// management profile, never by the user, and no prompt can change it.
enum class Consent { NotDetermined, Denied, Authorized, Restricted };

// The services whose access the system asks the user for by itself. Screen
// Recording's and Input Monitoring's prompts offer the privacy settings; the
// user who takes them up and switches the host on is recorded as allowing.
enum class PromptedService {
    Calendars,
    Reminders,
    Contacts,
    Photos,
    ScreenRecording,
    InputMonitoring,
    Camera,
    Microphone,
    Bluetooth,
};

// The user folders that the system protects from 10.15 on.
enum class ProtectedFolder { Desktop, Documents, Downloads };

// The scripted user's answer to one of the system's prompts.
struct PromptAnswer {
    enum class Choice { Allow, Deny, Never };
    Choice choice = Choice::Deny;
    double delay = 1.0;  // seconds after the prompt came up

    static PromptAnswer allow(double after = 1.0) { return {Choice::Allow, after}; }
    static PromptAnswer deny(double after = 1.0) { return {Choice::Deny, after}; }
    static PromptAnswer never() { return {Choice::Never, 0}; }
};

// The privacy (TCC) database of the host application, and the system's
// prompts that fill it. What it protects depends on the release: the Full
// Disk Access directories and the photo library from 10.14 on, the Desktop,
// Documents and Downloads folders from 10.15 on.
//
// A fresh Mac has granted nothing and asked nothing.
class SimPrivacy {
public:
    explicit SimPrivacy(SimulatedMac& mac);

    Consent consent(PromptedService service) const;
    void setConsent(PromptedService service, Consent consent);
    bool hasFullDiskAccess() const { return fullDiskAccess_; }
    void setFullDiskAccess(bool granted);
    Consent folderConsent(ProtectedFolder folder) const;
    void setFolderConsent(ProtectedFolder folder, Consent consent);
    // Screen Recording switched on in System Settings while the host runs
    // reaches the host only once it relaunches: until then the running
    // process keeps its old answer.
    void grantScreenRecordingFromSettings();
    bool screenRecordingAwaitsRelaunch() const { return screenRecordingAwaitsRelaunch_; }
    void hostRelaunched() { screenRecordingAwaitsRelaunch_ = false; }
    bool isAccessibilityTrusted() const { return accessibilityTrusted_; }
    void setAccessibilityTrusted(bool trusted);

    // Automation: whether the host may send Apple events to the application
    // with this bundle identifier.
    Consent automationConsent(std::string_view targetBundleIdentifier) const;
    void setAutomationConsent(std::string_view targetBundleIdentifier, Consent consent);
    // AEDeterminePermissionToAutomateTarget's answer: procNotFound (-600) when
    // the target is not running; noErr (0) when allowed; errAEEventNotPermitted
    // (-1743) when denied or restricted; when not yet determined,
    // errAEEventWouldRequireUserConsent (-1744) without asking, or the user's
    // answer to a prompt when asking (a prompt never answered leaves the
    // consent undetermined and answers -1744).
    std::int32_t determinePermissionToAutomate(std::string_view targetBundleIdentifier, bool askUserIfNeeded);

    // Sets a category by its identifier as `vantro-sim status` names it:
    // "Privacy_AllFiles", a folder, "Privacy_Accessibility" (or
    // "Privacy_Assistive"), or a prompted service ("Privacy_ScreenCapture",
    // "Privacy_ListenEvent", "Privacy_Camera", … included). Full Disk Access,
    // Accessibility and the folders have no restricted state. Answers false,
    // changing nothing, for any other identifier or state.
    bool setConsentForIdentifier(std::string_view identifier, Consent consent);

    // The scripted user's next answers to the system's prompts, in order.
    // Without one the user answers "Don't Allow" after one second.
    void answerNextPrompt(PromptAnswer answer);

    // A prompt the system showed, and what became of it.
    struct Prompt {
        std::string service;
        double shownAt = 0;
        std::optional<bool> allowed;  // nullopt while (or when forever) unanswered
        bool givenUp = false;         // a blocking prompt nobody answered in time
    };
    const std::vector<Prompt>& prompts() const { return prompts_; }

    // Raises the system's prompt for `service` ("Calendars", …) without
    // blocking: `answered` runs when the user answers, as an action of the
    // user; never when the user never answers.
    void askUser(std::string_view service, std::function<void(bool allowed)> answered);
    // Raises the system's prompt and blocks the calling thread until the user
    // answers, as a file access does: the main thread's run loop does not run
    // meanwhile, only the world outside it. A prompt left unanswered is given
    // up after `promptTimeout` seconds and answers nullopt.
    std::optional<bool> askUserAndWait(std::string_view service);
    static constexpr double promptTimeout = 60.0;

    // The POSIX error with which listing the directory at `standardizedPath`
    // fails (EPERM, or ENOENT where a release hides a protected location),
    // or 0 when the listing is allowed. Listing a protected folder not yet
    // decided asks the user first and remembers the answer; a prompt given up
    // refuses this listing only.
    int listingRefusal(std::string_view standardizedPath);
    // Some releases have been reported to answer a refused listing with an
    // empty folder rather than EPERM: when set, every EPERM refusal of a
    // directory that needs Full Disk Access lists as empty instead.
    void setRefusedListingsLookEmpty(bool empty) { refusedListingsLookEmpty_ = empty; }
    bool refusedListingsLookEmpty() const { return refusedListingsLookEmpty_; }

    // The directories the host may list only with Full Disk Access, relative
    // to the home directory.
    static const std::vector<std::string>& fullDiskAccessDirectories();
    // The protected folders, relative to the home directory.
    static std::string_view folderName(ProtectedFolder folder);
    // Where the system photo library lives, relative to the home directory.
    static constexpr std::string_view photoLibraryDirectory = "Pictures/Photos Library.photoslibrary";

    static std::string_view serviceName(PromptedService service);
    static std::string_view consentName(Consent consent);

private:
    bool atLeast(int major, int minor) const;
    // How the directory of Full Disk Access at `directory` answers a listing
    // on this release, with or without Full Disk Access.
    int fullDiskAccessDirectoryRefusal(std::string_view directory) const;
    // The home-relative path of `path`, or nullopt when it is not inside home.
    std::optional<std::string> homeRelative(std::string_view path) const;
    static bool isInside(std::string_view relative, std::string_view directory);

    SimulatedMac& mac_;
    std::map<PromptedService, Consent> services_;
    std::map<ProtectedFolder, Consent> folders_;
    std::map<std::string, Consent, std::less<>> automation_;
    bool fullDiskAccess_ = false;
    bool accessibilityTrusted_ = false;
    bool refusedListingsLookEmpty_ = false;
    bool screenRecordingAwaitsRelaunch_ = false;
    std::deque<PromptAnswer> answers_;
    std::vector<Prompt> prompts_;
};

}  // namespace vantro::sim
