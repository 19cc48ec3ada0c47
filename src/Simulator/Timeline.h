#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantro::sim {

// One thing that happened on the simulated Mac, at a virtual time, by an
// actor ("user", "host", "system", "framework", "System Preferences", …).
struct TimelineEntry {
    double time = 0;
    std::string actor;
    std::string text;
};

// Everything that happened, in order. Tests read it; vantro-sim prints it.
class Timeline {
public:
    void record(double time, std::string_view actor, std::string_view text);
    const std::vector<TimelineEntry>& entries() const { return entries_; }
    // Entries whose text contains `fragment`, optionally of one actor only.
    std::vector<TimelineEntry> matching(std::string_view fragment, std::string_view actor = {}) const;
    bool contains(std::string_view fragment, std::string_view actor = {}) const { return !matching(fragment, actor).empty(); }
    // "  1.500 s  user       drags the icon" lines.
    std::string format() const;
    static std::string formatEntry(const TimelineEntry& entry);

private:
    std::vector<TimelineEntry> entries_;
};

}  // namespace vantro::sim
