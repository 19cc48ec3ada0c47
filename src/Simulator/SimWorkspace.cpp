#include "Simulator/SimWorkspace.h"

#include <algorithm>
#include <cctype>

#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

SimRunningApplication::SimRunningApplication(SimWorkspace& workspace, std::string bundleIdentifier, int pid, std::string name)
    : workspace_(workspace), bundleIdentifier_(std::move(bundleIdentifier)), pid_(pid), name_(std::move(name)) {}

std::optional<std::string> SimRunningApplication::bundleIdentifier() const {
    if (bundleIdentifier_.empty()) return std::nullopt;
    return bundleIdentifier_;
}

bool SimRunningApplication::activateWithOptions(unsigned) {
    if (terminated_) return false;
    workspace_.applicationActivated(*this);
    return true;
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

RunningApplicationPtr SimWorkspace::frontmostApplication() { return front_; }

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
    if (auto running = application(it->bundleIdentifier)) return running;
    auto app = start(it->bundleIdentifier);
    mac_.record("system", "launches " + it->name + ((options & NSWorkspaceLaunchWithoutActivation) ? " without activating it" : ""));
    if (!(options & NSWorkspaceLaunchWithoutActivation)) {
        auto delay = it->launchDelay;
        mac_.runLoop().scheduleUserEvent(delay, [this, app] { activate(app); });
    }
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

void SimWorkspace::activate(const SimApplicationPtr& app) {
    if (app) app->activateWithOptions(NSApplicationActivateIgnoringOtherApps);
}

void SimWorkspace::activate(std::string_view bundleIdentifier) { activate(application(bundleIdentifier)); }

void SimWorkspace::applicationActivated(SimRunningApplication& app) {
    auto it = std::find_if(running_.begin(), running_.end(), [&](const SimApplicationPtr& a) { return a.get() == &app; });
    if (it == running_.end()) return;
    bool wasFront = front_ == *it;
    front_ = *it;
    if (front_->isHidden()) front_->setHidden(false);
    if (wasFront) return;  // activating the front application posts nothing
    mac_.record("system", front_->localizedName() + " becomes the active application");
    postActivation(front_);
}

void SimWorkspace::postActivation(SimApplicationPtr app) {
    mac_.runLoop().dispatchAsyncMain([this, app] {
        // Registrations removed while the notification is delivered get nothing more.
        auto snapshot = observers_;
        for (const auto& r : snapshot) {
            bool stillRegistered = std::any_of(observers_.begin(), observers_.end(),
                                               [&](const Registration& live) { return live.id == r.id; });
            if (stillRegistered) r.handler(app);
        }
    });
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
