#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Guide/Vantro.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::tool {

// Exit statuses of vantro-sim.
inline constexpr int ExitOK = 0;       // the story was told
inline constexpr int ExitFailure = 1;  // the story could not be told
inline constexpr int ExitUsage = 2;    // the command line is wrong

// Where a command writes: its answer, and the warnings and errors about it.
struct Streams {
    std::ostream& out;
    std::ostream& err;
    // One line on the error stream: "vantro-sim: warning: TEXT".
    void warn(std::string_view text) const;
};

// The arguments of one command, consumed left to right.
class Arguments {
public:
    explicit Arguments(std::vector<std::string> args) : args_(std::move(args)) {}
    bool empty() const { return position_ >= args_.size(); }
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

// A usage error: one line saying what is wrong, then a pointer to the
// command's help.
struct UsageError {
    std::string message;
};

// A command that cannot go on (pictures that cannot be written): the
// message goes to standard error, and the tool exits with ExitFailure.
struct ToolError {
    std::string message;
};

// Runs vantro-sim with the arguments that follow the program's name;
// answers its exit status. Every failure ends as one line on `err`.
int runTool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

// The options every command takes: "--macos VERSION", "--language CODE",
// "--newer-categories", "--json", and "--sandboxed" where the command has it.
struct MacOptions {
    sim::MacConfiguration configuration;
    bool newer = false;
    bool json = false;
    // Reads one of them; returns false when the argument is none of them.
    bool read(const std::string& option, Arguments& args);
    // What a host does with one line to have the newer categories (Screen
    // Recording, Input Monitoring, Camera, Microphone, Bluetooth) served.
    void serveNewerCategories() const;
};

// The user's decisions given with --grant, --deny and --restricted, in order.
struct Decisions {
    std::vector<std::pair<std::string, sim::Consent>> list;
    // Reads one of the options in `names` ("--grant", "--deny",
    // "--restricted"); returns false for any other argument.
    bool read(const std::string& option, Arguments& args, std::initializer_list<std::string_view> names);
    // Records them on `mac`: a usage error for an identifier the privacy
    // database does not take, a warning for each one that changes nothing.
    void apply(sim::SimulatedMac& mac, const MacOptions& options, const Streams& io) const;
};

int runStatus(Arguments args, const Streams& io);
int runList(Arguments args, const Streams& io);
int runGuide(Arguments args, const Streams& io);
int runRoad(Arguments args, const Streams& io);

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

}  // namespace vantro::tool
