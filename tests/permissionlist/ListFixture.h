#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "PermissionList/VantroViewController.h"
#include "Platform/Observation.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

inline void PrintTo(const SimPermissionList::Row& row, std::ostream* os) {
    *os << "{" << row.label << " | " << row.reason << " | " << row.buttonTitle << (row.buttonEnabled ? "" : " (disabled)")
        << "}";
}

}  // namespace vantro::sim

namespace vantro::test {

// Writes down when an object announced a key, and what the controller's rows
// looked like at that moment.
class AnnouncementProbe : public Observer {
public:
    AnnouncementProbe(sim::SimulatedMac& mac, Observable& object, std::string key)
        : mac_(mac), object_(&object), key_(std::move(key)) {
        object.addObserver(*this, key_, ObservingOptionNone, this);
    }
    ~AnnouncementProbe() override { stop(); }
    void stop() {
        if (object_) object_->removeObserver(*this, key_, this);
        object_ = nullptr;
    }
    void observeValueForKeyPath(std::string_view, Observable& object, ObservationContext) override {
        times.push_back(mac_.now());
        if (auto* list = dynamic_cast<VantroViewController*>(&object)) {
            bool complete = true;
            for (const auto& row : list->privacyCategories()) complete = complete && row->hasKey(PrivacyCategoryStatusKey);
            allRowsHadStatus = allRowsHadStatus && complete;
        }
        if (auto* row = dynamic_cast<PrivacyCategoryRecord*>(&object)) {
            const Value* status = row->valueForKey(PrivacyCategoryStatusKey);
            statuses.push_back(status ? status->integerValue() : -100);
        }
    }

    std::vector<double> times;
    std::vector<long> statuses;
    bool allRowsHadStatus = true;

private:
    sim::SimulatedMac& mac_;
    Observable* object_;
    std::string key_;
};

// A permission list asking for `identifiers` (the default when none are
// given), in a window of its own that is loaded, or shown on screen.
struct ListOnMac {
    ListOnMac(sim::SimulatedMac& mac, std::optional<std::vector<std::string>> identifiers = std::nullopt, bool show = false)
        : list(mac, controller) {
        if (identifiers) controller->setRequestedPrivacyCategoryIdentifiers(std::move(*identifiers));
        if (show) list.show();
        else list.loadView();
    }
    std::shared_ptr<VantroViewController> controller = VantroViewController::create();
    sim::SimPermissionList list;
};

inline std::vector<std::string> identifiersOf(const std::vector<PrivacyCategoryRecordPtr>& rows) {
    std::vector<std::string> identifiers;
    for (const auto& row : rows) identifiers.push_back(row->valueForKey(PrivacyCategoryIdentifierKey)->string().value_or("?"));
    return identifiers;
}

inline std::vector<std::string> strings(std::initializer_list<std::string_view> list) {
    return std::vector<std::string>(list.begin(), list.end());
}

}  // namespace vantro::test
