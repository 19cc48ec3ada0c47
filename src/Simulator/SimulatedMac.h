#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Platform/HostProcess.h"
#include "Simulator/MacRelease.h"
#include "Simulator/SimAlerts.h"
#include "Simulator/SimAppleEvents.h"
#include "Simulator/SimBundles.h"
#include "Simulator/SimDefaults.h"
#include "Simulator/SimDiagnostics.h"
#include "Simulator/SimDragging.h"
#include "Simulator/SimFileSystem.h"
#include "Simulator/SimPrivacy.h"
#include "Simulator/SimRunLoop.h"
#include "Simulator/SimServices.h"
#include "Simulator/SimSystem.h"
#include "Simulator/SimSystemPreferences.h"
#include "Simulator/SimWindows.h"
#include "Simulator/SimWorkspace.h"
#include "Simulator/Timeline.h"

namespace vantro {
class PosixFileSystem;
}

namespace vantro::sim {

// The simulated Mac could not be made: its disk, a folder under the
// temporary folder, could not be created or written (missing, read-only or
// full). The message names the folder and the cause.
struct SetupFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What the simulated Mac is made of; every field has a plain default.
struct MacConfiguration {
    std::string release = "10.15";
    // Overrides the release's AppKit version number (for tests at a threshold).
    std::optional<double> appKitVersion;
    bool sandboxed = false;
    std::string hostName = "Vantro Demo";
    std::string hostBundleIdentifier = "com.example.VantroDemo";
    std::string userName = "alice";
    std::vector<std::string> languages = {"en"};
    // The framework's resources: the project's Resources folder by default.
    std::string resourcesDirectory;
    // Whether the framework's layouts were compiled (CMake's ibtool, Xcode);
    // false as under a plain `swift build`, which copies the .xib files as
    // they are and leaves no .nib to load. The simulated Mac reads a
    // compiled layout from its .xib.
    bool layoutsCompiled = true;
    bool userDatabaseHasEntry = true;
    bool staticCodeCreationFails = false;
    bool requirementCreationFails = false;
    // The host's executable or its resources changed after it was signed, as
    // a developer's build often is: a signature check that validates that
    // part fails (errSecCSSignatureFailed, errSecCSBadResource).
    bool executableChangedAfterSigning = false;
    bool resourcesChangedAfterSigning = false;
    // The framework as built for the Mac App Store: its platform says it uses
    // public interfaces only, and the private classes, messages and
    // frameworks are not there for it (the private Photos object, Photos'
    // systemPhotoLibraryURL, AssetsLibraryServices).
    bool appStoreBuild = false;

    // The overriding number, else the release's; 0 for an unknown release.
    double appKitVersionNumber() const;
};

// A deterministic Mac: a virtual clock and run loop, a disk of its own (a
// temporary folder that stands for "/"), the host application and its
// bundle, user defaults, the framework's real resources, alerts answered by a
// scripted user, and a timeline of everything that happened.
//
// Creating one installs its HostProcess as the current one; destroying it
// removes it, so each simulated Mac is a fresh process.
class SimulatedMac {
public:
    // A release MacRelease does not know is a mistake of the caller: it
    // throws std::invalid_argument, naming it. A disk that cannot be made
    // throws SetupFailure.
    explicit SimulatedMac(MacConfiguration configuration = {});
    SimulatedMac(const SimulatedMac&) = delete;
    SimulatedMac& operator=(const SimulatedMac&) = delete;
    ~SimulatedMac();

    const MacConfiguration& configuration() const { return configuration_; }
    const MacRelease& release() const { return release_; }
    // From now on the system answers as `release` does (throwing, as the
    // constructor does, for one MacRelease does not know), or signs the host
    // with or without the App Sandbox. A real process never sees this; it
    // shows which answers the framework keeps once made. Windows and
    // applications already there stay as they are.
    void changeRelease(const std::string& release);
    void setSandboxed(bool sandboxed) { configuration_.sandboxed = sandboxed; }
    HostProcess& process() { return *process_; }
    // A platform made of this Mac's components, for a process other than its
    // own (the default process a Mac shell would make, in tests). It must
    // not outlive this Mac.
    std::unique_ptr<Platform> makePlatform();

    SimRunLoop& runLoop() { return *runLoop_; }
    SimSystem& system() { return *system_; }
    SimDefaults& defaults() { return *defaults_; }
    SimBundles& bundles() { return *bundles_; }
    SimLog& log() { return *log_; }
    SimAssertionHandler& assertionHandler() { return *assertions_; }
    SimAlerts& alerts() { return *alerts_; }
    SimWorkspace& workspace() { return *workspace_; }
    SimWindows& windows() { return *windows_; }
    SimDragging& dragging() { return *dragging_; }
    SimAppleEvents& appleEvents() { return *appleEvents_; }
    SimSystemPreferences& systemPreferences() { return *systemPreferences_; }
    SimFileSystem& fileSystem() { return *fileSystem_; }
    SimPrivacy& privacy() { return *privacy_; }
    SimServices& services() { return *services_; }
    Timeline& timeline() { return timeline_; }

    double now() const;
    void runOnePass() { runLoop_->runOnePass(); }
    void runFor(double seconds) { runLoop_->runFor(seconds); }
    bool runUntilIdle(double limit = 120.0) { return runLoop_->runUntilIdle(limit); }
    // Schedules something the user does, `delay` seconds from now, with a
    // line on the timeline when it happens.
    void userDoes(double delay, std::string description, std::function<void()> action);

    void record(std::string_view actor, std::string_view text);

    // The host quits and opens again, as System Settings' "Quit & Reopen" or
    // the host's own relaunch does: its pending main-thread work ends, its
    // process ends (everything the framework kept goes with it), and a new
    // instance of the host starts in a fresh process, in front. Whoever holds
    // the old process's objects is told first, to let them go, and told again
    // once the new process runs.
    void relaunchHost();
    void setHostRelaunchHandlers(std::function<void()> quits, std::function<void()> reopened) {
        hostQuits_ = std::move(quits);
        hostReopened_ = std::move(reopened);
    }

    // The real folder that stands for the Mac's "/", and paths on it.
    const std::string& rootDirectory() const { return root_; }
    // A path as the framework sees it: under the root, whatever it was given.
    std::string realPath(std::string_view macPath) const;
    std::string homeDirectory() const { return home_; }
    std::string hostBundlePath() const { return hostBundle_; }

    // The usage descriptions the host's Info.plist carries: every one the
    // framework may need, unless a test removes one.
    static const std::vector<std::string>& usageDescriptionKeys();
    // Sets `key` of the host's Info.plist to `value`, or removes it (nullopt).
    void setHostInfoValue(std::string_view key, std::optional<Value> value);

    // Makes a folder (and its parents) under the home directory.
    void makeHomeDirectory(std::string_view relativePath);

private:
    void buildDisk();
    void writeHostBundle();

    MacConfiguration configuration_;
    MacRelease release_;
    Timeline timeline_;
    std::string root_;
    std::string home_;
    std::string hostBundle_;
    // Components live as long as the process; the platform hands them out.
    std::unique_ptr<SimRunLoop> runLoop_;
    std::unique_ptr<SimSystem> system_;
    std::unique_ptr<SimDefaults> defaults_;
    std::unique_ptr<SimBundles> bundles_;
    std::unique_ptr<SimLog> log_;
    std::unique_ptr<SimAssertionHandler> assertions_;
    std::unique_ptr<SimAlerts> alerts_;
    std::unique_ptr<SimWorkspace> workspace_;
    std::unique_ptr<SimWindows> windows_;
    std::unique_ptr<SimDragging> dragging_;
    std::unique_ptr<SimAppleEvents> appleEvents_;
    std::unique_ptr<SimSystemPreferences> systemPreferences_;
    std::unique_ptr<SimPrivacy> privacy_;
    std::unique_ptr<SimFileSystem> fileSystem_;
    std::unique_ptr<SimServices> services_;
    std::unique_ptr<HostProcess> process_;
    std::function<void()> hostQuits_;
    std::function<void()> hostReopened_;
};

}  // namespace vantro::sim
