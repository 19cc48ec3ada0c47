#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "Guide/Vantro.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::tool {

// Exit codes of vantro-sim.
inline constexpr int ExitOK = 0;
inline constexpr int ExitFailure = 1;
inline constexpr int ExitUsage = 2;

// The arguments of one command, consumed left to right.
class Arguments {
public:
    explicit Arguments(std::vector<std::string> args) : args_(std::move(args)) {}
    bool empty() const { return position_ >= args_.size(); }
    const std::string& peek() const { return args_[position_]; }
    std::string next() { return args_[position_++]; }
    // The value after an option; nullopt when it is missing.
    std::optional<std::string> value() {
        if (empty()) return std::nullopt;
        return next();
    }

private:
    std::vector<std::string> args_;
    std::size_t position_ = 0;
};

// A usage error: the message goes to standard error with the usage text.
struct UsageError {
    std::string message;
};

// A command that cannot go on (pictures that cannot be written): the
// message goes to standard error, and the tool exits with ExitFailure.
struct ToolError {
    std::string message;
};

// Reads "--macos VERSION", "--sandboxed" and "--language CODE" into a
// configuration; returns false when the argument is none of them.
bool readMacOption(const std::string& option, Arguments& args, sim::MacConfiguration& configuration);

// Reads "--newer-categories"; returns false when the argument is something else.
bool readNewerCategoriesOption(const std::string& option, bool& newer);
// What a host does with one line to have the newer categories (Screen
// Recording, Input Monitoring, Camera, Microphone, Bluetooth) served.
void serveNewerCategories(bool newer);

int runStatus(Arguments args, std::ostream& out);
int runGuide(Arguments args, std::ostream& out);
int runRoad(Arguments args, std::ostream& out);

// Reads "--frames DIR"; returns false when the argument is something else.
bool readFramesOption(const std::string& option, Arguments& args, std::optional<std::string>& frames);
// The scripted user's drag of the overlay's icon into System Preferences'
// list, starting `startAt` seconds from now and dropping a second later.
void scriptDragIntoList(sim::SimulatedMac& mac, Vantro& guide, double startAt);
// System Settings (macOS 13 and later) lists the dropped host switched off:
// the scripted user turns its switch on `at` seconds from now and types the
// password when asked. Answers how many seconds this adds to the story: none
// before macOS 13.
double scriptSwitchOnInSettings(sim::SimulatedMac& mac, double at);
int runList(Arguments args, std::ostream& out);

}  // namespace vantro::tool
