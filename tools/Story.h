#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Simulator/SimScreen.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::tool {

// Plays a scripted story on a simulated Mac in small steps of virtual time,
// writing a picture of the screen each time what it shows changes.
class Story {
public:
    Story(sim::SimulatedMac& mac, std::optional<std::string> framesDirectory);

    // What the pictures show besides the Mac itself.
    sim::ScreenContents& contents() { return contents_; }
    // Runs the Mac until virtual time `time`.
    void runUntil(double time);
    // Writes a picture now if the screen changed since the last one.
    void captureIfChanged();
    // Writes the index of the pictures, frames.json: each picture's file,
    // its time and the last event before it, which it shows.
    void finish();
    const std::vector<std::string>& frames() const { return frames_; }

private:
    std::string signature();

    sim::SimulatedMac& mac_;
    std::optional<std::string> directory_;
    sim::ScreenContents contents_;
    std::string lastSignature_;
    std::vector<std::string> frames_;
    // Per picture, its time and the timeline entry it shows (none before
    // the first event).
    struct Shown {
        double time;
        std::optional<sim::TimelineEntry> event;
    };
    std::vector<Shown> shown_;
};

}  // namespace vantro::tool
