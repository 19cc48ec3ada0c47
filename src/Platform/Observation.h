#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vantro {

// A context of a key-value observation. Contexts are compared by identity (the
// address), never by what they point to: two equal strings at two addresses
// are two contexts.
using ObservationContext = const void*;

enum ObservingOptions : unsigned {
    ObservingOptionNone = 0,
    // Deliver one notification at once, from within addObserver.
    ObservingOptionInitial = 1u << 0,
};

class Observable;

// Receives change notifications for the key paths it registered for.
// Notifications are delivered on the thread that made the change (the main
// thread, for everything the framework observes).
class Observer {
public:
    virtual ~Observer() = default;
    virtual void observeValueForKeyPath(std::string_view keyPath, Observable& object, ObservationContext context) = 0;
};

// An object whose keys can be observed, modelled on key-value observing.
// Registrations are not reference-counted: an observer must remove each
// registration before it is destroyed. Registering the same observer, key path
// and context twice delivers every change twice; one removal removes one
// registration (the most recent match).
class Observable {
public:
    Observable() = default;
    Observable(const Observable&) = delete;
    Observable& operator=(const Observable&) = delete;
    virtual ~Observable() = default;

    void addObserver(Observer& observer, std::string_view keyPath, unsigned options, ObservationContext context);

    // Removes the most recent matching registration. Removing a registration
    // that does not exist is a programming error that the platform objects to;
    // since removal happens in teardown, where nothing may throw, the objection
    // is reported to the current process's log as the platform's complaint and
    // false is returned.
    bool removeObserver(Observer& observer, std::string_view keyPath, ObservationContext context);

    // Tells every observer of `key` that it changed, whether or not the value
    // differs from the previous one.
    void didChangeValueForKey(std::string_view key);

    std::size_t observationCount() const;

    // The name used in the platform's complaints ("<VantroViewController>").
    virtual std::string observableName() const { return "object"; }

private:
    struct Registration {
        Observer* observer;
        std::string keyPath;
        ObservationContext context;
        std::shared_ptr<bool> active;
    };
    std::vector<Registration> registrations_;
};

}  // namespace vantro
