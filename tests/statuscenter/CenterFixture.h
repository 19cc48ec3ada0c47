#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Simulator/SimulatedMac.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "support/TemporaryResources.h"

namespace vantro::test {

// A status center whose refusal alert only records the identifier it was
// shown for, and whether on the main thread. The record outlives the center.
class AlertRecordingCenter : public VantroRequestStatusCenter {
public:
    using VantroRequestStatusCenter::VantroRequestStatusCenter;
    struct Record {
        std::vector<std::string> alerts;
        bool allOnMainThread = true;
    };
    std::shared_ptr<Record> record = std::make_shared<Record>();
    const std::vector<std::string>& alerts() const { return record->alerts; }
    void alertOpenPrivacyPreferences(std::string_view identifier) override {
        record->alerts.emplace_back(identifier);
        record->allOnMainThread = record->allOnMainThread && HostProcess::current().platform().runLoop().isMainThread();
    }
};

// The privacy settings at `anchor` as System Preferences (up to 12) opens them.
inline std::string securityPane(std::string_view anchor) {
    return "x-apple.systempreferences:com.apple.preference.security?" + std::string(anchor);
}

// The privacy settings at `anchor` as System Settings (13 on) opens them.
inline std::string settingsPane(std::string_view anchor) {
    return "x-apple.systempreferences:com.apple.settings.PrivacySecurity.extension?" + std::string(anchor);
}

// How often `url` was opened.
inline std::size_t opened(sim::SimulatedMac& mac, const std::string& url) {
    const auto& urls = mac.workspace().openedURLs();
    return static_cast<std::size_t>(std::count(urls.begin(), urls.end(), url));
}

}  // namespace vantro::test
