#include "Platform/HostProcess.h"

#include <cstdio>
#include <cstdlib>

namespace vantro {

namespace {

HostProcess* installedProcess = nullptr;
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
    if (installedProcess == this) installedProcess = nullptr;
    platform_.reset();
}

HostProcess& HostProcess::current() {
    if (installedProcess) return *installedProcess;
    if (defaultFactory()) {
        defaultProcess() = defaultFactory()();
        installedProcess = defaultProcess().get();
        if (installedProcess) return *installedProcess;
    }
    std::fputs("Vantro: no host process is installed; create a simulated Mac or link the macOS shell\n", stderr);
    std::abort();
}

HostProcess* HostProcess::currentOrNull() { return installedProcess; }

void HostProcess::install(HostProcess* process) { installedProcess = process; }

void HostProcess::uninstall(HostProcess* process) {
    if (installedProcess == process) installedProcess = nullptr;
}

void HostProcess::setDefaultFactory(std::function<std::unique_ptr<HostProcess>()> factory) {
    defaultFactory() = std::move(factory);
}

}  // namespace vantro
