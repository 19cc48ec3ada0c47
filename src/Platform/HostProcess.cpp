#include "Platform/HostProcess.h"

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <mutex>
#include <vector>

namespace vantro {

namespace {

// Guards the installed processes, the default process and its maker. The
// maker runs under it, so concurrent first calls make one default process.
std::recursive_mutex& processesMutex() {
    static std::recursive_mutex mutex;
    return mutex;
}

// Installed processes, most recent last: a simulated Mac made while another
// exists is current until it goes, and then the earlier one is again.
std::vector<HostProcess*>& installedProcesses() {
    static std::vector<HostProcess*> processes;
    return processes;
}
// The default process lasts as long as the real one: it is not torn down by
// exit-time destructors, which run when the platform's own objects (AppKit's,
// on a Mac) may already be gone.
std::unique_ptr<HostProcess>& defaultProcess() {
    static auto* process = new std::unique_ptr<HostProcess>();
    return *process;
}
std::function<std::unique_ptr<HostProcess>()>& defaultFactory() {
    static std::function<std::unique_ptr<HostProcess>()> factory;
    return factory;
}

}  // namespace

HostProcess::HostProcess(std::unique_ptr<Platform> platform) : platform_(std::move(platform)) {}

HostProcess::~HostProcess() {
    // Later values may refer to earlier ones (a list controller to the guide),
    // so they go first. A value's destructor may still ask for the current
    // process, so this one stays installed until every value is gone.
    for (;;) {
        std::shared_ptr<void> object;
        {
            std::lock_guard lock(valuesMutex_);
            if (values_.empty()) break;
            object = std::move(values_.back().object);
            values_.pop_back();
        }
        object.reset();
    }
    uninstall(this);
    platform_.reset();
}

HostProcess& HostProcess::current() {
    if (auto* process = currentOrNull()) return *process;
    std::lock_guard lock(processesMutex());
    // Another thread may have made the default process while this one waited.
    if (auto* process = currentOrNull()) return *process;
    if (defaultFactory()) {
        defaultProcess() = defaultFactory()();
        install(defaultProcess().get());
        if (auto* process = currentOrNull()) return *process;
    }
    std::fputs("Vantro: no host process is installed; create a simulated Mac or link the macOS shell\n", stderr);
    std::abort();
}

HostProcess* HostProcess::currentOrNull() {
    std::lock_guard lock(processesMutex());
    auto& processes = installedProcesses();
    return processes.empty() ? nullptr : processes.back();
}

void HostProcess::install(HostProcess* process) {
    if (!process) return;
    std::lock_guard lock(processesMutex());
    uninstall(process);
    installedProcesses().push_back(process);
}

void HostProcess::uninstall(HostProcess* process) {
    std::lock_guard lock(processesMutex());
    std::erase(installedProcesses(), process);
}

void HostProcess::setDefaultFactory(std::function<std::unique_ptr<HostProcess>()> factory) {
    std::unique_ptr<HostProcess> previous;
    {
        std::lock_guard lock(processesMutex());
        previous = std::move(defaultProcess());
        defaultFactory() = std::move(factory);
    }
    // The previous maker's process ends with it, outside the lock: its
    // values may ask for the current process while they go.
    previous.reset();
}

}  // namespace vantro
