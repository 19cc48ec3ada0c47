#include <algorithm>
#include <exception>
#include <ostream>

#include "Command.h"
#include "Output.h"
#include "Simulator/SimDiagnostics.h"

namespace vantro::tool {

namespace {

struct OptionHelp {
    std::string_view synopsis;
    std::string_view text;
};

// One command: what it is called with, what it does, its options (each one
// line here), an example, and the function that runs it.
struct CommandHelp {
    std::string_view name;
    std::string_view synopsis;
    std::string_view summary;
    std::vector<OptionHelp> options;
    std::string_view example;
    int (*run)(Arguments, const Streams&);
};

constexpr OptionHelp macosOption{"--macos VERSION",
                                 "the simulated release: 10.9 10.10 10.11 10.12 10.13 10.14 10.15 11 12 13 14 15 26 27 "
                                 "(default 10.15); System Settings replaces System Preferences from 13"};
constexpr OptionHelp languageOption{"--language CODE",
                                    "the user's preferred language (default en). Vantro speaks en, de, fr and ja; a code "
                                    "with a region (fr-CA) is served by its language, any other falls back to English"};
constexpr OptionHelp sandboxedOption{"--sandboxed",
                                     "signs the host with the App Sandbox entitlement: the status center then counts Full "
                                     "Disk Access as held without looking, and the list never offers it"};
constexpr OptionHelp appStoreOption{"--app-store",
                                    "the framework as built for the Mac App Store, naming no private interface of the "
                                    "system: on 10.14 the Photos status is PHPhotoLibrary's own, and the overlay keeps "
                                    "the host behind as a non-activating panel"};
constexpr OptionHelp newerOption{"--newer-categories",
                                 "turns on the newer categories, as a host does with one line: Privacy_ScreenCapture, "
                                 "Privacy_ListenEvent, Privacy_Camera, Privacy_Microphone, Privacy_Bluetooth"};
constexpr OptionHelp jsonOption{"--json", "prints one JSON object instead (tools/vantro-sim.schema.json describes it)"};
constexpr OptionHelp framesOption{"--frames DIR",
                                  "writes a PNG picture of the screen at each visible change, frame-01.png on, with "
                                  "frames.json listing each picture's time and the event it shows. DIR is made when "
                                  "missing; pictures and an index left there by an earlier run are replaced, other "
                                  "files are left alone"};
constexpr OptionHelp grantOption{"--grant IDENTIFIER",
                                 "records that the user granted the category before the story starts (repeatable): "
                                 "Privacy_AllFiles, a folder, Privacy_Accessibility, or a service the system asks for"};
constexpr OptionHelp denyOption{"--deny IDENTIFIER", "records that the user refused it (repeatable); the last word counts"};
constexpr OptionHelp restrictedOption{"--restricted IDENTIFIER",
                                      "records that a policy restricts it (repeatable): Privacy_Calendars, "
                                      "Privacy_Reminders, Privacy_Contacts, Privacy_Photos, and the newer services"};
constexpr OptionHelp reasonOption{"--reason IDENTIFIER=TEXT", "the host's reason for a category, shown in its row (repeatable)"};
constexpr OptionHelp reopenOption{"--reopen later|now",
                                  "what the user answers when the settings offer \"Quit & Reopen\" after the host is "
                                  "let in (macOS 11 and later): later (the default) closes the sheet, now quits the "
                                  "host and opens it again"};
constexpr OptionHelp helpOption{"--help", "prints this text"};

const std::vector<CommandHelp>& commands() {
    static const std::vector<CommandHelp> all = {
        {"road", "[OPTIONS]",
         "Vantro's main job, end to end: a host's permission list shows Full Disk Access with \"Grant Permission\"; the "
         "user clicks, System Preferences opens with the overlay over it, the user unlocks the pane, drags the icon into "
         "the list (on System Settings then turns the host's switch on and types the password) and comes back; the row "
         "reads \"Permission Granted\". Prints the list before and after and the timeline. Needs macOS 10.14 or later, "
         "where Full Disk Access exists, and a host without the App Sandbox.",
         {macosOption, languageOption, newerOption, appStoreOption, reopenOption, framesOption, jsonOption, helpOption},
         "vantro-sim road --macos 15 --frames out",
         runRoad},
        {"status", "[OPTIONS]",
         "Prints every privacy category's identifier, status and request type as the status center answers them on a "
         "fresh simulated Mac, after the user's decisions given with --grant, --deny and --restricted. The newer "
         "categories follow the sixteen with --newer-categories. The language changes only the JSON's labels.",
         {macosOption, languageOption, sandboxedOption, newerOption, appStoreOption, grantOption, denyOption, restrictedOption, jsonOption,
          helpOption},
         "vantro-sim status --macos 10.15 --grant Privacy_Calendars --deny Privacy_Photos",
         runStatus},
        {"list", "[OPTIONS] [IDENTIFIER...]",
         "Shows the permission list as a host embeds it: each row's label, reason, button title and whether the button "
         "is enabled. Without identifiers the list asks for Privacy_AllFiles only. Categories the list does not offer "
         "on this system are left out, each with a warning saying why.",
         {macosOption, languageOption, sandboxedOption, newerOption, appStoreOption, reasonOption, grantOption, denyOption, jsonOption,
          helpOption},
         "vantro-sim list --language fr Privacy_AllFiles Privacy_Calendars Privacy_DesktopFolder",
         runList},
        {"guide", "IDENTIFIER [OPTIONS]",
         "Plays one guide session for IDENTIFIER with a scripted user: System Preferences comes forward with the "
         "overlay over it, the user unlocks the pane where it has a lock, drags the icon into the list (on System "
         "Settings turns the host's switch on and types the password) and comes back to the host. Prints the overlay's "
         "message and the timeline. An identifier that cannot be part of the URL that opens the settings is refused.",
         {macosOption, languageOption, sandboxedOption, newerOption, appStoreOption, framesOption, jsonOption, helpOption},
         "vantro-sim guide Privacy_Camera --macos 14 --newer-categories",
         runGuide},
    };
    return all;
}

constexpr std::string_view exitStatuses =
    "Exit status: 0 the story was told; 1 it could not be told (the simulated Mac could not be set up, pictures could "
    "not be written, the framework's assertion stopped it); 2 the command line is wrong.";

// `text` in lines of at most `width` columns, each after `indent` spaces
// (the first after `first` characters already written).
void writeWrapped(std::ostream& out, std::string_view text, std::size_t indent, std::size_t first, std::size_t width = 79) {
    std::size_t column = first;
    bool lineStart = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        const std::string_view word = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!lineStart && column + 1 + word.size() > width) {
            out << "\n" << std::string(indent, ' ');
            column = indent;
            lineStart = true;
        }
        out << (lineStart ? "" : " ") << word;
        column += word.size() + (lineStart ? 0 : 1);
        lineStart = false;
    }
    out << "\n";
}

void writeCommandHelp(std::ostream& out, const CommandHelp& command) {
    out << "usage: vantro-sim " << command.name << " " << command.synopsis << "\n\n";
    writeWrapped(out, command.summary, 0, 0);
    out << "\nOptions:\n";
    constexpr std::size_t column = 28;
    for (const auto& option : command.options) {
        out << "  " << option.synopsis;
        std::size_t written = 2 + option.synopsis.size();
        if (written + 2 > column) {
            out << "\n";
            written = 0;
        }
        out << std::string(column - written, ' ');
        writeWrapped(out, option.text, column, column);
    }
    out << "\nExample:\n  " << command.example << "\n\n";
    writeWrapped(out, exitStatuses, 0, 0);
}

void writeGeneralHelp(std::ostream& out) {
    out << "usage: vantro-sim COMMAND [OPTIONS]\n"
           "       vantro-sim help COMMAND\n\n"
           "Runs Vantro on a simulated Mac.\n\n"
           "Commands:\n"
           "  road      a host's request for Full Disk Access, from the click to \"Permission Granted\"\n"
           "  status    every category's status and request type\n"
           "  list      the permission list as a host shows it\n"
           "  guide     one guide session for one category\n"
           "  help      a command's options, an example and its exit statuses\n\n"
           "Every command takes --macos VERSION, --language CODE, --newer-categories and\n"
           "--json; 'vantro-sim COMMAND --help' tells the rest.\n\n";
    writeWrapped(out, exitStatuses, 0, 0);
}

const CommandHelp* findCommand(std::string_view name) {
    for (const auto& command : commands())
        if (command.name == name) return &command;
    return nullptr;
}

// What is wrong, and where to read how it is done: two lines.
int usageError(std::ostream& err, std::string_view command, std::string_view message) {
    const std::string prefix = command.empty() ? std::string("vantro-sim") : "vantro-sim " + std::string(command);
    err << prefix << ": " << printable(message) << "\n" << "see '" << prefix << " --help'\n";
    return ExitUsage;
}

int failure(std::ostream& err, std::string_view command, std::string_view message) {
    err << "vantro-sim " << command << ": " << printable(message) << "\n";
    return ExitFailure;
}

}  // namespace

void Streams::warn(std::string_view text) const { err << "vantro-sim: warning: " << printable(text) << "\n"; }

int runTool(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) return usageError(err, "", "no command given: road, status, list or guide");
    const std::string& name = args.front();
    if (name == "--help" || name == "-h" || (name == "help" && args.size() == 1)) {
        writeGeneralHelp(out);
        return ExitOK;
    }
    if (name == "help") {
        if (args.size() > 2) return usageError(err, "", "help takes one COMMAND");
        const CommandHelp* command = findCommand(args[1]);
        if (!command) return usageError(err, "", "no command \"" + args[1] + "\": road, status, list or guide");
        writeCommandHelp(out, *command);
        return ExitOK;
    }
    const CommandHelp* command = findCommand(name);
    if (!command) return usageError(err, "", "unknown command \"" + name + "\": road, status, list or guide");
    std::vector<std::string> rest(args.begin() + 1, args.end());
    if (std::any_of(rest.begin(), rest.end(), [](const std::string& a) { return a == "--help" || a == "-h"; })) {
        writeCommandHelp(out, *command);
        return ExitOK;
    }
    try {
        return command->run(Arguments(std::move(rest)), Streams{out, err});
    } catch (const UsageError& error) {
        return usageError(err, command->name, error.message);
    } catch (const ToolError& error) {
        return failure(err, command->name, error.message);
    } catch (const sim::AssertionFailure& assertion) {
        // The framework asserts where a Mac's assertion handler would stop
        // the host: the story ends there.
        return failure(err, command->name,
                       "the framework's assertion failed in " + assertion.method + " (" + assertion.file + ", line " +
                           std::to_string(assertion.line) + "): " + assertion.description);
    } catch (const std::exception& error) {
        return failure(err, command->name, error.what());
    } catch (...) {
        return failure(err, command->name, "the story ended on an unexpected error");
    }
}

}  // namespace vantro::tool
