// The cost of asking the status center, on a simulated Catalina Mac whose
// directories are real folders on disk: one status query per category, the
// refresh a permission list makes of all fifteen categories it can show
// within one pass of the run loop, where the Full Disk Access probe is shared,
// and a fifteen-row list's rebuild.
#include <benchmark/benchmark.h>

#include <array>

#include "PermissionList/VantroViewController.h"
#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"

namespace {

using namespace vantro;

// The categories a list shows on 10.15 and later.
constexpr std::array<PrivacyCategoryIdentifier, 15> listableCategories = {
    VantroPrivacyFullDiskAccess,   VantroPrivacyAutomation,      VantroPrivacyAccessibility,   VantroPrivacyAssistive,
    VantroPrivacyLocationServices, VantroPrivacyContacts,        VantroPrivacyDiagnostics,     VantroPrivacyCalendars,
    VantroPrivacyReminders,        VantroPrivacyPhotos,          VantroPrivacyDesktopFolder,   VantroPrivacyDocumentsFolder,
    VantroPrivacyDownloadsFolder,  VantroPrivacyNetworkVolume,   VantroPrivacyRemovableVolume,
};

// A Mac whose user has answered everything, and whose host has asked for
// every folder once, so that every query runs its checks without a prompt.
void decideEverything(sim::SimulatedMac& mac, bool fullDiskAccess) {
    auto& privacy = mac.privacy();
    privacy.setFullDiskAccess(fullDiskAccess);
    privacy.setConsent(sim::PromptedService::Calendars, sim::Consent::Authorized);
    privacy.setConsent(sim::PromptedService::Reminders, sim::Consent::Denied);
    privacy.setConsent(sim::PromptedService::Contacts, sim::Consent::Authorized);
    privacy.setConsent(sim::PromptedService::Photos, sim::Consent::Authorized);
    privacy.setFolderConsent(sim::ProtectedFolder::Desktop, sim::Consent::Authorized);
    privacy.setFolderConsent(sim::ProtectedFolder::Documents, sim::Consent::Denied);
    privacy.setFolderConsent(sim::ProtectedFolder::Downloads, sim::Consent::Authorized);
    for (auto flag : {kDesktopFolderAccessRequested, kDocumentsFolderAccessRequested, kDownloadsFolderAccessRequested})
        mac.defaults().setBool(true, flag);
}

// One query of one category, each in a pass of its own so that the Full Disk
// Access verdict is probed afresh, as for a host that asks now and then.
void BM_StatusQuery(benchmark::State& state) {
    const auto identifier = listableCategories[static_cast<std::size_t>(state.range(0))];
    sim::SimulatedMac mac;
    decideEverything(mac, state.range(1) != 0);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    const std::size_t listedBefore = mac.fileSystem().listingCount();
    for (auto _ : state) {
        mac.runOnePass();
        benchmark::DoNotOptimize(center->privacyAuthorizationStatusForIdentifier(identifier));
    }
    state.SetLabel(std::string(identifier) + (state.range(1) ? ", Full Disk Access" : ""));
    state.counters["directories_listed"] = benchmark::Counter(
        static_cast<double>(mac.fileSystem().listingCount() - listedBefore), benchmark::Counter::kAvgIterations);
}

void statusQueryArguments(benchmark::internal::Benchmark* b) {
    for (std::int64_t i = 0; i < static_cast<std::int64_t>(listableCategories.size()); ++i) b->Args({i, 0});
    for (std::int64_t i : {0, 10}) b->Args({i, 1});
}
BENCHMARK(BM_StatusQuery)->Apply(statusQueryArguments);

// A list's refresh: every listable category asked within one pass, then the
// pass ends.
void BM_RefreshAllListableCategories(benchmark::State& state) {
    sim::SimulatedMac mac;
    decideEverything(mac, state.range(0) != 0);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    const std::size_t listedBefore = mac.fileSystem().listingCount();
    for (auto _ : state) {
        for (auto identifier : listableCategories)
            benchmark::DoNotOptimize(center->privacyAuthorizationStatusForIdentifier(identifier));
        mac.runOnePass();
    }
    state.SetLabel(state.range(0) ? "with Full Disk Access" : "without Full Disk Access");
    state.counters["directories_listed_per_pass"] = benchmark::Counter(
        static_cast<double>(mac.fileSystem().listingCount() - listedBefore), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_RefreshAllListableCategories)->Arg(0)->Arg(1);

// A permission list of the fifteen listable categories rebuilding its rows:
// a label (from the strings table), a status and a request type per row,
// then the pass ends.
void BM_ListRebuildOfFifteenRows(benchmark::State& state) {
    sim::SimulatedMac mac;
    decideEverything(mac, false);
    auto list = VantroViewController::create();
    list->setRequestedPrivacyCategoryIdentifiers({listableCategories.begin(), listableCategories.end()});
    for (auto _ : state) {
        list->updatePrivacyCategories();
        mac.runOnePass();
    }
    state.counters["rows"] = static_cast<double>(list->privacyCategories().size());
    state.counters["strings_tables_read"] = mac.bundles().reads("PrivacyCategoryLabels.strings");
}
BENCHMARK(BM_ListRebuildOfFifteenRows);

}  // namespace

BENCHMARK_MAIN();
