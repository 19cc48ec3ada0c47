// What watching statuses costs a host, on a simulated Catalina Mac whose
// directories are real folders on disk: the C interface's status call (the
// floor under the Node package's, see bindings/node/bench/status.js), and a
// watch of every category the framework reads: the reading one activation of
// the host makes, with its directory listings counted, and the listings while
// the host simply stays active (the goal: none, and one Full Disk Access
// probe per activation).
#include <benchmark/benchmark.h>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/PrivacyStatusWatcher.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "vantro.h"
#include "vantro_simulator.h"

namespace {

using namespace vantro;

// The C call of a status the Node benchmark also asks for.
void BM_CStatusCall(benchmark::State& state) {
    vantro_simulated_mac* mac = vantro_sim_create("10.15", nullptr, nullptr);
    for (auto _ : state) benchmark::DoNotOptimize(vantro_status("Privacy_Calendars"));
    vantro_sim_destroy(mac);
}
BENCHMARK(BM_CStatusCall);

std::vector<std::string> everyServedCategory() {
    std::vector<std::string> identifiers;
    for (auto identifier : VantroPrivacyAllIdentifiers)
        if (VantroRequestStatusCenter::servesPrivacyAuthorizationStatusForIdentifier(identifier))
            identifiers.emplace_back(identifier);
    return identifiers;
}

// One activation of the host and the reading 0.1 s after it, all categories
// watched; listings per activation, and per probe of Full Disk Access alone.
void BM_WatchAllReadingPerActivation(benchmark::State& state) {
    sim::SimulatedMac mac;
    for (auto flag : {kDesktopFolderAccessRequested, kDocumentsFolderAccessRequested, kDownloadsFolderAccessRequested})
        mac.defaults().setBool(true, flag);
    mac.privacy().setFolderConsent(sim::ProtectedFolder::Desktop, sim::Consent::Authorized);
    auto watcher = PrivacyStatusWatcher::sharedWatcher();
    watcher->setWatchedIdentifiers(everyServedCategory());
    mac.runOnePass();
    auto before = mac.fileSystem().listingCount();
    VantroRequestStatusCenter::checkHasFullDiskAccess();
    const double probe = static_cast<double>(mac.fileSystem().listingCount() - before);
    mac.workspace().install({"com.example.Other", "Other", "file:///Applications/Other.app/", 0.3});
    auto other = mac.workspace().start("com.example.Other");
    std::size_t activations = 0;
    before = mac.fileSystem().listingCount();
    for (auto _ : state) {
        mac.workspace().activate(other);
        mac.workspace().activate(mac.workspace().host());
        mac.runFor(0.2);
        ++activations;
    }
    const double listings = static_cast<double>(mac.fileSystem().listingCount() - before);
    state.counters["listings/activation"] = listings / static_cast<double>(activations);
    state.counters["listings/FDA probe"] = probe;
    // Ten minutes of an active host: the watch reads nothing.
    before = mac.fileSystem().listingCount();
    mac.runFor(600);
    state.counters["listings while active"] = static_cast<double>(mac.fileSystem().listingCount() - before);
}
BENCHMARK(BM_WatchAllReadingPerActivation)->Unit(benchmark::kMicrosecond);

}  // namespace
