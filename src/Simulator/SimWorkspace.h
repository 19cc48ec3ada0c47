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
    bool activateWithOptions(unsigned options) override;

    // Hiding announces "hidden" to its observers, as the platform does.
    void setHidden(bool hidden);
    void markTerminated() { terminated_ = true; }

private:
    SimWorkspace& workspace_;
    std::string bundleIdentifier_;
    int pid_;
    std::string name_;
    bool hidden_ = false;
    bool terminated_ = false;
};

using SimApplicationPtr = std::shared_ptr<SimRunningApplication>;

// The shared workspace: running applications, the front one, activation and
// its notifications (delivered on the main queue, after the activation, to
// every registration — duplicates included), launching and opening URLs.
class SimWorkspace : public Workspace {
public:
    explicit SimWorkspace(SimulatedMac& mac) : mac_(mac) {}

    bool openURL(std::string_view urlText) override;
    RunningApplicationPtr currentApplication() override;
    RunningApplicationPtr frontmostApplication() override;
    std::vector<RunningApplicationPtr> runningApplicationsWithBundleIdentifier(std::string_view bundleIdentifier) override;
    std::optional<std::string> URLForApplicationWithBundleIdentifier(std::string_view bundleIdentifier) override;
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
    // Makes `app` the front application and posts the activation notification.
    void activate(const SimApplicationPtr& app);
    void activate(std::string_view bundleIdentifier);
    void quit(std::string_view bundleIdentifier);
    SimApplicationPtr host() const { return host_; }
    SimApplicationPtr application(std::string_view bundleIdentifier) const;
    SimApplicationPtr front() const { return front_; }

    // Who handles a URL scheme; the handler answers whether it took the URL.
    void setURLHandler(std::string scheme, std::function<bool(const std::string& url)> handler);
    // Makes every openURL fail, as when no application takes the URL.
    void setRefusesURLs(bool refuses) { refusesURLs_ = refuses; }
    const std::vector<std::string>& openedURLs() const { return openedURLs_; }
    // NSURL URLWithString:'s test: a scheme and only characters a URL may hold.
    static bool isValidURL(std::string_view text);

    std::size_t activationObserverCount() const { return observers_.size(); }

    // Called by SimRunningApplication.
    void applicationActivated(SimRunningApplication& app);
    void recordHidden(SimRunningApplication& app);

private:
    struct Registration {
        std::uint64_t id;
        const void* observer;
        std::function<void(RunningApplicationPtr)> handler;
    };
    void postActivation(SimApplicationPtr app);

    SimulatedMac& mac_;
    std::vector<Installed> installed_;
    std::vector<SimApplicationPtr> running_;
    SimApplicationPtr host_;
    SimApplicationPtr front_;
    int nextPid_ = 400;
    std::vector<Registration> observers_;
    std::uint64_t nextRegistration_ = 1;
    std::map<std::string, std::function<bool(const std::string&)>> urlHandlers_;
    bool refusesURLs_ = false;
    std::vector<std::string> openedURLs_;

    friend class SimulatedMac;
};

}  // namespace vantro::sim
