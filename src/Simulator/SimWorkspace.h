#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Workspace.h"

namespace vantro::sim {

class SimulatedMac;
class SimWorkspace;

// An application of the simulated Mac, running or not.
class SimRunningApplication : public RunningApplication {
public:
    SimRunningApplication(SimWorkspace& workspace, std::string bundleIdentifier, int pid, std::string name);

    std::optional<std::string> bundleIdentifier() const override;
    int processIdentifier() const override { return pid_; }
    std::string localizedName() const override { return name_; }
    bool isHidden() const override { return hidden_; }
    bool isTerminated() const override { return terminated_; }
    // activateWithOptions: as the host asks it of another application (see
    // SimWorkspace::requestActivation): the options decide whether it takes
    // effect and which windows come forward.
    bool activateWithOptions(unsigned options) override;

    // Hiding announces "hidden" to its observers, as the platform does.
    void setHidden(bool hidden);
    void markTerminated() { terminated_ = true; }
    // isFinishedLaunching: false from an asynchronous launch until the
    // application has started.
    bool isFinishedLaunching() const { return finishedLaunching_; }
    void setFinishedLaunching(bool finished) { finishedLaunching_ = finished; }

private:
    SimWorkspace& workspace_;
    std::string bundleIdentifier_;
    int pid_;
    std::string name_;
    bool hidden_ = false;
    bool terminated_ = false;
    bool finishedLaunching_ = true;
};

using SimApplicationPtr = std::shared_ptr<SimRunningApplication>;

// The shared workspace: running applications, the front one, activation and
// its notifications (delivered on the main queue, after the activation, to
// every registration — duplicates included), launching and opening URLs.
//
// The system's active application changes at once; the host learns of it
// when its main thread handles the activation: frontmostApplication, like
// every NSWorkspace and NSRunningApplication property, changes only when the
// host's main run loop runs. So between the user's switch and that moment
// the host still sees the former front application.
class SimWorkspace : public Workspace {
public:
    explicit SimWorkspace(SimulatedMac& mac) : mac_(mac) {}

    bool openURL(std::string_view urlText) override;
    RunningApplicationPtr currentApplication() override;
    RunningApplicationPtr frontmostApplication() override;
    std::vector<RunningApplicationPtr> runningApplicationsWithBundleIdentifier(std::string_view bundleIdentifier) override;
    std::optional<std::string> URLForApplicationWithBundleIdentifier(std::string_view bundleIdentifier) override;
    // NSWorkspaceLaunchWithoutActivation keeps the launched application in
    // the background; without it the application becomes active once it has
    // started (an activation notification follows). NSWorkspaceLaunchAsync
    // returns at once, the application listed as running but not finished
    // launching; without it the call blocks the host's main thread until the
    // application has started. An application already running is returned
    // as it is, and brought forward unless launched without activation.
    RunningApplicationPtr launchApplicationAtURL(std::string_view url, unsigned options) override;
    void addActivationObserver(const void* observer, std::function<void(RunningApplicationPtr)> handler) override;
    void removeActivationObserver(const void* observer) override;
    void removeObserver(const void* observer) override;

    // An installed application; `launchDelay` is how long it takes to start.
    struct Installed {
        std::string bundleIdentifier;
        std::string name;
        std::string url;
        double launchDelay = 0.8;
    };
    void install(Installed application);
    // Starts an application at once (already running when the story begins).
    SimApplicationPtr start(std::string_view bundleIdentifier);
    // The user (or the system on the user's behalf: the Dock, the application
    // switcher, an opened URL) makes `app` the active application: it always
    // takes effect, brings all its windows forward unless `allWindows` is
    // false (a click on one window brings only that one), and posts the
    // activation notification.
    void activate(const SimApplicationPtr& app, bool allWindows = true);
    void activate(std::string_view bundleIdentifier);
    void quit(std::string_view bundleIdentifier);
    // The host asks to be quit and opened again: the Mac does it at the next
    // turn of the world outside the process (SimulatedMac::relaunchHost).
    void relaunchCurrentApplication() override;
    SimApplicationPtr host() const { return host_; }
    SimApplicationPtr application(std::string_view bundleIdentifier) const;
    // The system's active application, as it is now.
    SimApplicationPtr front() const { return front_; }

    // Who handles a URL scheme; the handler answers whether it took the URL.
    void setURLHandler(std::string scheme, std::function<bool(const std::string& url)> handler);
    // Makes every openURL fail, as when no application takes the URL.
    void setRefusesURLs(bool refuses) { refusesURLs_ = refuses; }
    const std::vector<std::string>& openedURLs() const { return openedURLs_; }
    // NSURL URLWithString:'s test: a scheme and only characters a URL may hold.
    static bool isValidURL(std::string_view text);
    // NSURL fileURLWithPath:isDirectory:YES's absoluteString: "file://", the
    // path with every byte a URL path may not hold percent-encoded (spaces,
    // '%', '#', '?', non-ASCII UTF-8 …), and a closing '/'.
    static std::string directoryURL(std::string_view path);

    std::size_t activationObserverCount() const { return observers_.size(); }
    // Posts the activation notification on the workspace's notification
    // center from the host's main thread, as code in the host may: every
    // registration receives `application` (nullptr: a notification without
    // NSWorkspaceApplicationKey) before this returns. Nothing becomes active.
    void postActivationNotification(const RunningApplicationPtr& application);

    // Called by SimRunningApplication. requestActivation is activateWithOptions:
    // sent by the host: an application already active only brings its windows
    // forward (all of them with NSApplicationActivateAllWindows, else its
    // frontmost one). Another becomes active when the host itself is active
    // (it hands activation over), or, before macOS 14, when the request
    // carries NSApplicationActivateIgnoringOtherApps; otherwise the request
    // does not take effect, as Apple documents: the new application is
    // activated only if there is no currently active application. From macOS
    // 14 activation is cooperative and the flag has no effect (deprecated in
    // 14; that it is ignored is reported, not documented).
    bool requestActivation(SimRunningApplication& app, unsigned options);
    void recordHidden(SimRunningApplication& app);

private:
    struct Registration {
        std::uint64_t id;
        const void* observer;
        std::function<void(RunningApplicationPtr)> handler;
    };
    void makeActive(const SimApplicationPtr& app, bool allWindows);
    void postActivation(SimApplicationPtr app);
    void deliverActivation(const RunningApplicationPtr& application);
    SimApplicationPtr running(const SimRunningApplication& app) const;

    SimulatedMac& mac_;
    std::vector<Installed> installed_;
    std::vector<SimApplicationPtr> running_;
    SimApplicationPtr host_;
    SimApplicationPtr front_;
    // The front application as the host's main thread last learnt it.
    SimApplicationPtr frontSeenByHost_;
    int nextPid_ = 400;
    std::vector<Registration> observers_;
    std::uint64_t nextRegistration_ = 1;
    std::map<std::string, std::function<bool(const std::string&)>> urlHandlers_;
    bool refusesURLs_ = false;
    std::vector<std::string> openedURLs_;

    friend class SimulatedMac;
};

}  // namespace vantro::sim
