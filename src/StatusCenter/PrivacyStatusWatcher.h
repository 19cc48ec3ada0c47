#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Observation.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro {

class Platform;
class Timer;
class Vantro;

// One status that changed between two readings.
struct PrivacyStatusChange {
    std::string identifier;
    PrivacyAuthorizationStatus oldStatus = PrivacyAuthorizationStatusNotDetermined;
    PrivacyAuthorizationStatus newStatus = PrivacyAuthorizationStatusNotDetermined;
};

// Tells the host when the status of a category it watches changes, so that
// no host has to poll. The watched statuses are read afresh, all in one pass
// of the run loop (so Full Disk Access is probed once however many categories
// depend on it):
//
//  - 0.1 seconds after the host becomes active again (activations in quick
//    succession make one reading), and as long after a guide session ends;
//  - once a second while a guide session runs.
//
// Each reading compares with the one before and tells every change, in the
// order the categories are watched. Reading goes through the status center,
// so it prompts for nothing: a folder never asked for is not listed. Nothing
// is read, observed or scheduled while the watch list is empty.
//
// One per process (sharedWatcher), kept as long as the process. Main thread.
class PrivacyStatusWatcher : public Observer, public std::enable_shared_from_this<PrivacyStatusWatcher> {
public:
    using ChangeHandler = std::function<void(const PrivacyStatusChange&)>;
    using HandlerToken = std::uint64_t;

    // The selector under which the delayed reading is scheduled.
    static constexpr std::string_view RecheckSelector = "recheckPrivacyStatuses";
    static constexpr double RecheckDelay = 0.1;
    static constexpr double SessionInterval = 1.0;

    PrivacyStatusWatcher();
    PrivacyStatusWatcher(const PrivacyStatusWatcher&) = delete;
    PrivacyStatusWatcher& operator=(const PrivacyStatusWatcher&) = delete;
    ~PrivacyStatusWatcher() override;

    // The current process's watcher, made on first use.
    static std::shared_ptr<PrivacyStatusWatcher> sharedWatcher();

    // The categories watched, each once, in the order first given.
    const std::vector<std::string>& watchedIdentifiers() const { return watched_; }
    // Replaces the watch list. A category newly watched is read at once, and
    // that first reading tells nothing; a category no longer watched is
    // forgotten. Duplicates are dropped. An empty list stops every reading.
    void setWatchedIdentifiers(std::vector<std::string> identifiers);
    // The last status read of a watched category; 0 for any other.
    PrivacyAuthorizationStatus lastStatus(std::string_view identifier) const;

    // Handlers receive every change, in the order they were added. A handler
    // may change the watch list or the handlers; the changes of the reading
    // under way are still told to the handlers that were there when it began.
    HandlerToken addChangeHandler(ChangeHandler handler);
    void removeChangeHandler(HandlerToken token);

    // Reads every watched status now and tells the changes.
    void recheckPrivacyStatuses();
    // Replaces any pending delayed reading by one RecheckDelay from now.
    void scheduleRecheck();

    void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) override;

private:
    void startWatching();
    void stopWatching();
    void updateSessionTimer();
    PrivacyAuthorizationStatus read(std::string_view identifier);

    Platform* platform_ = nullptr;
    bool watching_ = false;
    std::weak_ptr<Vantro> guide_;
    std::weak_ptr<Timer> sessionTimer_;
    std::vector<std::string> watched_;
    std::map<std::string, PrivacyAuthorizationStatus, std::less<>> statuses_;
    std::vector<std::pair<HandlerToken, std::shared_ptr<ChangeHandler>>> handlers_;
    HandlerToken nextToken_ = 1;
};

}  // namespace vantro
