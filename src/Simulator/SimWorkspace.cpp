#include "Simulator/SimWorkspace.h"

#include <algorithm>
#include <cctype>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {
// The host's main thread waiting for a synchronous launch: it runs none of
// its own work.
constexpr std::string_view blockedOnLaunchMode = "SimBlockedOnLaunch";
}  // namespace

SimRunningApplication::SimRunningApplication(SimWorkspace& workspace, std::string bundleIdentifier, int pid, std::string name)
    : workspace_(workspace), bundleIdentifier_(std::move(bundleIdentifier)), pid_(pid), name_(std::move(name)) {}

std::optional<std::string> SimRunningApplication::bundleIdentifier() const {
    if (bundleIdentifier_.empty()) return std::nullopt;
    return bundleIdentifier_;
}

bool SimRunningApplication::activateWithOptions(unsigned options) {
    if (terminated_) return false;
    return workspace_.requestActivation(*this, options);
}

void SimRunningApplication::setHidden(bool hidden) {
    if (hidden_ == hidden) return;
    hidden_ = hidden;
    workspace_.recordHidden(*this);
    didChangeValueForKey("hidden");
}

bool SimWorkspace::isValidURL(std::string_view text) {
    auto colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !std::isalpha(static_cast<unsigned char>(text[0]))) return false;
    for (char c : text.substr(0, colon))
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.') return false;
    for (unsigned char c : text) {
        if (c <= 0x20 || c >= 0x7F) return false;
        if (std::string_view("\"<>\\^`{|}").find(static_cast<char>(c)) != std::string_view::npos) return false;
    }
    return true;
}

std::string SimWorkspace::directoryURL(std::string_view path) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string url = "file://";
    for (unsigned char c : path) {
        const bool plain = std::isalnum(c) || std::string_view("/-._~!$&'()*+,;=:@").find(static_cast<char>(c)) != std::string_view::npos;
        if (plain) {
            url += static_cast<char>(c);
        } else {
            url += '%';
            url += hex[c >> 4];
            url += hex[c & 0xF];
        }
    }
    if (!url.ends_with('/')) url += '/';
    return url;
}

bool SimWorkspace::openURL(std::string_view urlText) {
    std::string url(urlText);
    if (!isValidURL(url)) {
        mac_.record("system", "no URL can be made of \"" + url + "\"");
        return false;
    }
    if (refusesURLs_) {
        mac_.record("system", "refuses to open " + url);
        return false;
    }
    auto handler = urlHandlers_.find(url.substr(0, url.find(':')));
    if (handler == urlHandlers_.end() || !handler->second(url)) {
        mac_.record("system", "no application opens " + url);
        return false;
    }
    openedURLs_.push_back(url);
    return true;
}

RunningApplicationPtr SimWorkspace::currentApplication() { return host_; }

RunningApplicationPtr SimWorkspace::frontmostApplication() { return frontSeenByHost_; }

std::vector<RunningApplicationPtr> SimWorkspace::runningApplicationsWithBundleIdentifier(std::string_view bundleIdentifier) {
    std::vector<RunningApplicationPtr> found;
    for (const auto& app : running_)
        if (!app->isTerminated() && app->bundleIdentifier() == bundleIdentifier) found.push_back(app);
    return found;
}

std::optional<std::string> SimWorkspace::URLForApplicationWithBundleIdentifier(std::string_view bundleIdentifier) {
    for (const auto& app : installed_)
        if (app.bundleIdentifier == bundleIdentifier) return app.url;
    return std::nullopt;
}

RunningApplicationPtr SimWorkspace::launchApplicationAtURL(std::string_view url, unsigned options) {
    auto it = std::find_if(installed_.begin(), installed_.end(), [&](const Installed& a) { return a.url == url; });
    if (it == installed_.end()) return nullptr;
    const bool activates = !(options & NSWorkspaceLaunchWithoutActivation);
    if (auto running = application(it->bundleIdentifier)) {
        if (activates) mac_.runLoop().scheduleUserEvent(0, [this, running] { activate(running); });
        return running;
    }
    const bool waits = !(options & NSWorkspaceLaunchAsync);
    auto app = start(it->bundleIdentifier);
    app->setFinishedLaunching(false);
    mac_.record("system", "launches " + it->name + (activates ? "" : " without activating it") +
                              (waits ? ", the host waiting until it has started" : ""));
    auto finished = std::make_shared<bool>(false);
    mac_.runLoop().scheduleUserEvent(it->launchDelay, [this, app, activates, finished] {
        *finished = true;
        if (app->isTerminated()) return;
        app->setFinishedLaunching(true);
        mac_.record("system", app->localizedName() + " has finished launching");
        if (activates) activate(app);
    });
    // A launch that is not asynchronous holds the host's main thread: only
    // the rest of the world goes on meanwhile.
    if (waits) mac_.runLoop().runModeUntil(blockedOnLaunchMode, [finished] { return *finished; }, it->launchDelay + 1.0);
    return app;
}

void SimWorkspace::addActivationObserver(const void* observer, std::function<void(RunningApplicationPtr)> handler) {
    observers_.push_back({nextRegistration_++, observer, std::move(handler)});
}

void SimWorkspace::removeActivationObserver(const void* observer) {
    std::erase_if(observers_, [&](const Registration& r) { return r.observer == observer; });
}

void SimWorkspace::removeObserver(const void* observer) { removeActivationObserver(observer); }

void SimWorkspace::install(Installed application) {
    std::erase_if(installed_, [&](const Installed& a) { return a.bundleIdentifier == application.bundleIdentifier; });
    installed_.push_back(std::move(application));
}

SimApplicationPtr SimWorkspace::start(std::string_view bundleIdentifier) {
    if (auto running = application(bundleIdentifier)) return running;
    auto it = std::find_if(installed_.begin(), installed_.end(),
                           [&](const Installed& a) { return a.bundleIdentifier == bundleIdentifier; });
    std::string name = it == installed_.end() ? std::string(bundleIdentifier) : it->name;
    auto app = std::make_shared<SimRunningApplication>(*this, std::string(bundleIdentifier), nextPid_++, name);
    running_.push_back(app);
    return app;
}

SimApplicationPtr SimWorkspace::application(std::string_view bundleIdentifier) const {
    for (const auto& app : running_)
        if (!app->isTerminated() && app->bundleIdentifier() == bundleIdentifier) return app;
    return nullptr;
}

void SimWorkspace::activate(const SimApplicationPtr& app, bool allWindows) {
    if (app && !app->isTerminated()) makeActive(app, allWindows);
}

void SimWorkspace::activate(std::string_view bundleIdentifier) { activate(application(bundleIdentifier)); }

SimApplicationPtr SimWorkspace::running(const SimRunningApplication& app) const {
    auto it = std::find_if(running_.begin(), running_.end(), [&](const SimApplicationPtr& a) { return a.get() == &app; });
    return it == running_.end() ? nullptr : *it;
}

bool SimWorkspace::requestActivation(SimRunningApplication& requested, unsigned options) {
    auto app = running(requested);
    if (!app) return false;
    const bool allWindows = options & NSApplicationActivateAllWindows;
    if (app == front_) {
        mac_.windows().bringForward(app->processIdentifier(), allWindows);
        return true;
    }
    const bool hostActive = !front_ || front_ == host_;
    const bool ignoringOtherApps =
        (options & NSApplicationActivateIgnoringOtherApps) && mac_.release().systemVersion.majorVersion < 14;
    if (!hostActive && !ignoringOtherApps) {
        // What the return value is for a request that does not take effect is
        // not documented; false is the plausible answer.
        mac_.record("system", "does not activate " + app->localizedName() + ": " + front_->localizedName() + " is active");
        return false;
    }
    makeActive(app, allWindows);
    return true;
}

void SimWorkspace::makeActive(const SimApplicationPtr& app, bool allWindows) {
    bool wasFront = front_ == app;
    front_ = app;
    if (app->isHidden()) app->setHidden(false);
    mac_.windows().bringForward(app->processIdentifier(), allWindows);
    if (wasFront) return;  // activating the front application posts nothing
    mac_.record("system", app->localizedName() + " becomes the active application");
    postActivation(app);
}

void SimWorkspace::postActivation(SimApplicationPtr app) {
    mac_.runLoop().dispatchAsyncMain([this, app] {
        frontSeenByHost_ = app;
        deliverActivation(app);
    });
}

void SimWorkspace::postActivationNotification(const RunningApplicationPtr& application) { deliverActivation(application); }

void SimWorkspace::deliverActivation(const RunningApplicationPtr& application) {
    // Registrations removed while the notification is delivered get nothing more.
    auto snapshot = observers_;
    for (const auto& r : snapshot) {
        bool stillRegistered =
            std::any_of(observers_.begin(), observers_.end(), [&](const Registration& live) { return live.id == r.id; });
        if (stillRegistered) r.handler(application);
    }
}

void SimWorkspace::quit(std::string_view bundleIdentifier) {
    auto app = application(bundleIdentifier);
    if (!app || app == host_) return;
    app->markTerminated();
    mac_.record("system", app->localizedName() + " quits");
    std::erase(running_, app);
    if (front_ == app) {
        // The next application in line comes forward: the most recently started other one.
        front_ = nullptr;
        if (!running_.empty()) activate(running_.back());
    }
}

void SimWorkspace::relaunchCurrentApplication() {
    mac_.record("host", "asks to be quit and opened again");
    mac_.runLoop().scheduleUserEvent(0, [this] { mac_.relaunchHost(); });
}

void SimWorkspace::recordHidden(SimRunningApplication& app) {
    mac_.record("system", app.localizedName() + (app.isHidden() ? " is hidden" : " is shown again"));
    if (app.isHidden() && front_.get() == &app) {
        // A hidden application gives up the front: the next one comes forward.
        for (auto it = running_.rbegin(); it != running_.rend(); ++it) {
            if (it->get() != &app && !(*it)->isHidden()) {
                activate(*it);
                break;
            }
        }
    }
}

void SimWorkspace::setURLHandler(std::string scheme, std::function<bool(const std::string&)> handler) {
    urlHandlers_[std::move(scheme)] = std::move(handler);
}

}  // namespace vantro::sim
