#include "Platform/Observation.h"

#include "Platform/HostProcess.h"

namespace vantro {

void Observable::addObserver(Observer& observer, std::string_view keyPath, unsigned options, ObservationContext context) {
    registrations_.push_back({&observer, std::string(keyPath), context, std::make_shared<bool>(true)});
    if (options & ObservingOptionInitial) observer.observeValueForKeyPath(keyPath, *this, context);
}

bool Observable::removeObserver(Observer& observer, std::string_view keyPath, ObservationContext context) {
    for (auto it = registrations_.rbegin(); it != registrations_.rend(); ++it) {
        if (it->observer == &observer && it->keyPath == keyPath && it->context == context) {
            *it->active = false;
            registrations_.erase(std::next(it).base());
            return true;
        }
    }
    if (auto* process = HostProcess::currentOrNull()) {
        process->platform().log().platformObjection("Cannot remove an observer for the key path \"" + std::string(keyPath) +
                                                    "\" from <" + observableName() +
                                                    "> because it is not registered as an observer.");
    }
    return false;
}

void Observable::didChangeValueForKey(std::string_view key) {
    // Observers may add or remove registrations while being told; work on a
    // snapshot and skip registrations removed in the meantime.
    auto snapshot = registrations_;
    for (const auto& r : snapshot) {
        if (*r.active && r.keyPath == key) r.observer->observeValueForKeyPath(r.keyPath, *this, r.context);
    }
}

std::size_t Observable::observationCount() const { return registrations_.size(); }

}  // namespace vantro
