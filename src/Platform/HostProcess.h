#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <typeindex>
#include <utility>
#include <vector>

#include "Platform/Platform.h"

namespace vantro {

// The process the framework runs in: its platform and everything the framework
// keeps once per process (shared instances, dispatch tables, resource tables,
// probe lists, cached verdicts). Each such value is a default-constructible
// struct of its owner, made on first use by `value<T>()` and kept until the
// process ends; values are destroyed in the reverse order of their creation,
// before the platform.
//
// On a Mac the shell installs the real process on first use. Elsewhere a
// simulated Mac installs its own when created and removes it when destroyed,
// so each test runs in a process of its own.
class HostProcess {
public:
    explicit HostProcess(std::unique_ptr<Platform> platform);
    HostProcess(const HostProcess&) = delete;
    HostProcess& operator=(const HostProcess&) = delete;
    ~HostProcess();

    // The process the framework runs in. Installs the default process (see
    // setDefaultFactory) when none is installed; without either, the call is a
    // programming error and ends the program with a message. Safe from any
    // thread: when several threads make the first call at once, one default
    // process is made and all of them get it.
    static HostProcess& current();
    static HostProcess* currentOrNull();
    // Makes `process` the current one. Processes installed while another is
    // current stack above it: uninstalling one makes the one installed before
    // it current again.
    static void install(HostProcess* process);
    static void uninstall(HostProcess* process);
    // The maker of the process used when nothing is installed (the Mac shell).
    // A new maker ends the process the previous one made.
    static void setDefaultFactory(std::function<std::unique_ptr<HostProcess>()> factory);

    Platform& platform() { return *platform_; }

    // The once-per-process value of type T, made on first use. Safe from any
    // thread: concurrent first calls make one value, and every caller gets
    // that one. T's constructor may ask for other values. What T holds is
    // its own to guard.
    template <class T>
    T& value() {
        std::lock_guard lock(valuesMutex_);
        for (auto& slot : values_)
            if (slot.type == std::type_index(typeid(T))) return *static_cast<T*>(slot.object.get());
        auto object = std::make_shared<T>();
        T& ref = *object;
        values_.push_back({std::type_index(typeid(T)), std::move(object)});
        return ref;
    }

private:
    struct Slot {
        std::type_index type;
        std::shared_ptr<void> object;
    };
    std::unique_ptr<Platform> platform_;
    // Recursive: a value's constructor may ask for another value.
    std::recursive_mutex valuesMutex_;
    std::vector<Slot> values_;
};

}  // namespace vantro
