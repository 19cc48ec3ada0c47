#include "Platform/HostProcess.h"

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <vector>

namespace vantro {

namespace {

// Installed processes, most recent last: a simulated Mac made while another
// exists is current until it goes, and then the earlier one is again.
std::vector<HostProcess*>& installedProcesses() {
    static std::vector<HostProcess*> processes;
    return processes;
}
std::unique_ptr<HostProcess>& defaultProcess() {
    static std::unique_ptr<HostProcess> process;
    return process;
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
    while (!values_.empty()) {
        auto object = std::move(values_.back().object);
        values_.pop_back();
        object.reset();
    }
    uninstall(this);
    platform_.reset();
}

HostProcess& HostProcess::current() {
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
    auto& processes = installedProcesses();
    return processes.empty() ? nullptr : processes.back();
}

void HostProcess::install(HostProcess* process) {
    if (!process) return;
    uninstall(process);
    installedProcesses().push_back(process);
}

void HostProcess::uninstall(HostProcess* process) { std::erase(installedProcesses(), process); }

void HostProcess::setDefaultFactory(std::function<std::unique_ptr<HostProcess>()> factory) {
    defaultFactory() = std::move(factory);
}

}  // namespace vantro
