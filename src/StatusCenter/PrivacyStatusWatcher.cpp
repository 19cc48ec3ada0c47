#include "StatusCenter/PrivacyStatusWatcher.h"

#include <algorithm>
#include <mutex>

#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace vantro {

namespace {

constexpr std::string_view IsSessionRunningKeyPath = "isSessionRunning";
// Recognised by its address.
constexpr char GuideSessionContext[] = "PrivacyStatusWatcher.isSessionRunning";

struct PrivacyStatusWatcherProcessState {
    std::once_flag sharedOnce;
    std::shared_ptr<PrivacyStatusWatcher> shared;
};

}  // namespace

PrivacyStatusWatcher::PrivacyStatusWatcher() : platform_(&HostProcess::current().platform()) {}

PrivacyStatusWatcher::~PrivacyStatusWatcher() {
    // The platform outlives every value of its process; the guide may already
    // be gone, and then so is the observation.
    if (watching_) stopWatching();
}

std::shared_ptr<PrivacyStatusWatcher> PrivacyStatusWatcher::sharedWatcher() {
    auto& state = HostProcess::current().value<PrivacyStatusWatcherProcessState>();
    std::call_once(state.sharedOnce, [&] { state.shared = std::make_shared<PrivacyStatusWatcher>(); });
    return state.shared;
}

void PrivacyStatusWatcher::setWatchedIdentifiers(std::vector<std::string> identifiers) {
    std::vector<std::string> watched;
    for (auto& identifier : identifiers)
        if (std::find(watched.begin(), watched.end(), identifier) == watched.end()) watched.push_back(std::move(identifier));
    std::erase_if(statuses_, [&](const auto& entry) {
        return std::find(watched.begin(), watched.end(), entry.first) == watched.end();
    });
    watched_ = std::move(watched);
    // Read within this one call, so that the new categories share one probe.
    for (const auto& identifier : watched_)
        if (!statuses_.contains(identifier)) statuses_[identifier] = read(identifier);
    if (watched_.empty() && watching_) stopWatching();
    if (!watched_.empty() && !watching_) startWatching();
}

PrivacyAuthorizationStatus PrivacyStatusWatcher::lastStatus(std::string_view identifier) const {
    auto it = statuses_.find(identifier);
    return it == statuses_.end() ? PrivacyAuthorizationStatusNotDetermined : it->second;
}

PrivacyStatusWatcher::HandlerToken PrivacyStatusWatcher::addChangeHandler(ChangeHandler handler) {
    HandlerToken token = nextToken_++;
    handlers_.emplace_back(token, std::make_shared<ChangeHandler>(std::move(handler)));
    return token;
}

void PrivacyStatusWatcher::removeChangeHandler(HandlerToken token) {
    std::erase_if(handlers_, [&](const auto& entry) { return entry.first == token; });
}

PrivacyAuthorizationStatus PrivacyStatusWatcher::read(std::string_view identifier) {
    // An identifier the status center does not serve is never asked for: its
    // answer would be a line in the system log at every reading.
    if (!VantroRequestStatusCenter::servesPrivacyAuthorizationStatusForIdentifier(identifier))
        return PrivacyAuthorizationStatusNotDetermined;
    return VantroRequestStatusCenter::sharedRequestStatusCenter()->privacyAuthorizationStatusForIdentifier(identifier);
}

void PrivacyStatusWatcher::recheckPrivacyStatuses() {
    if (watched_.empty()) return;
    std::vector<PrivacyStatusChange> changes;
    // A copy: the list may change while the handlers are told.
    const auto watched = watched_;
    for (const auto& identifier : watched) {
        auto status = read(identifier);
        auto& last = statuses_[identifier];
        if (status != last) changes.push_back({identifier, last, status});
        last = status;
    }
    if (changes.empty()) return;
    const auto handlers = handlers_;
    for (const auto& change : changes)
        for (const auto& [token, handler] : handlers) (*handler)(change);
}

void PrivacyStatusWatcher::scheduleRecheck() {
    platform_->runLoop().cancelPreviousPerformRequests(this, RecheckSelector);
    std::weak_ptr<PrivacyStatusWatcher> weakSelf = weak_from_this();
    platform_->runLoop().performAfterDelay(this, RecheckSelector, RecheckDelay, [weakSelf] {
        if (auto self = weakSelf.lock()) self->recheckPrivacyStatuses();
    });
}

void PrivacyStatusWatcher::startWatching() {
    watching_ = true;
    std::weak_ptr<PrivacyStatusWatcher> weakSelf = weak_from_this();
    platform_->workspace().addActivationObserver(this, [weakSelf](RunningApplicationPtr activated) {
        auto self = weakSelf.lock();
        if (!self || !activated) return;
        // Only the host's own return is a moment the user may have changed
        // something in the settings.
        auto host = self->platform_->workspace().currentApplication();
        if (host && activated->isEqual(*host)) self->scheduleRecheck();
    });
    auto guide = Vantro::sharedKit();
    guide_ = guide;
    guide->addObserver(*this, IsSessionRunningKeyPath, ObservingOptionNone, GuideSessionContext);
    updateSessionTimer();
}

void PrivacyStatusWatcher::stopWatching() {
    watching_ = false;
    platform_->workspace().removeActivationObserver(this);
    if (auto guide = guide_.lock()) guide->removeObserver(*this, IsSessionRunningKeyPath, GuideSessionContext);
    guide_.reset();
    if (auto timer = sessionTimer_.lock()) timer->invalidate();
    sessionTimer_.reset();
    platform_->runLoop().cancelPreviousPerformRequests(this, RecheckSelector);
}

void PrivacyStatusWatcher::observeValueForKeyPath(std::string_view, Observable&, ObservationContext context) {
    if (context != GuideSessionContext) return;
    auto guide = guide_.lock();
    // The end of a session is when the user is most likely to have granted.
    if (guide && !guide->isSessionRunning()) scheduleRecheck();
    updateSessionTimer();
}

void PrivacyStatusWatcher::updateSessionTimer() {
    auto guide = guide_.lock();
    const bool running = guide && guide->isSessionRunning();
    auto timer = sessionTimer_.lock();
    if (running == static_cast<bool>(timer)) return;
    if (timer) {
        timer->invalidate();
        sessionTimer_.reset();
        return;
    }
    std::weak_ptr<PrivacyStatusWatcher> weakSelf = weak_from_this();
    sessionTimer_ = platform_->runLoop().scheduledTimer(SessionInterval, true, [weakSelf](Timer&) {
        if (auto self = weakSelf.lock()) self->recheckPrivacyStatuses();
    });
}

}  // namespace vantro
