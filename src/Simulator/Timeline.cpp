#include "Simulator/Timeline.h"

#include <cstdio>

namespace vantro::sim {

void Timeline::record(double time, std::string_view actor, std::string_view text) {
    entries_.push_back({time, std::string(actor), std::string(text)});
}

std::vector<TimelineEntry> Timeline::matching(std::string_view fragment, std::string_view actor) const {
    std::vector<TimelineEntry> found;
    for (const auto& e : entries_)
        if ((actor.empty() || e.actor == actor) && e.text.find(fragment) != std::string::npos) found.push_back(e);
    return found;
}

std::string Timeline::formatEntry(const TimelineEntry& entry) {
    char prefix[64];
    std::snprintf(prefix, sizeof prefix, "%8.3f s  %-18s ", entry.time, entry.actor.c_str());
    return prefix + entry.text;
}

std::string Timeline::format() const {
    std::string out;
    for (const auto& e : entries_) out += formatEntry(e) + "\n";
    return out;
}

}  // namespace vantro::sim
