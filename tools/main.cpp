#include <iostream>
#include <string>
#include <vector>

#include "Command.h"
#include "Simulator/SimDiagnostics.h"

namespace {

const char* usage =
    "usage: vantro-sim COMMAND [OPTIONS]\n"
    "\n"
    "Runs Vantro on a simulated Mac.\n"
    "\n"
    "Commands:\n"
    "  road [--macos VERSION] [--language CODE] [--frames DIR] [--newer-categories]\n"
    "      Vantro's main job, end to end: a host's permission list shows Full\n"
    "      Disk Access with \"Grant Permission\"; the user clicks, System\n"
    "      Preferences opens with the overlay over it, the user drags the icon\n"
    "      into the list (on System Settings, macOS 13 and later, then turns\n"
    "      the host's switch on and types the password) and comes back; the\n"
    "      row reads \"Permission Granted\".\n"
    "      Prints the list before and after and the timeline; with --frames,\n"
    "      writes a PNG picture of the screen into DIR at each visible change.\n"
    "      VERSION must be 10.14 or later. With --newer-categories the list also\n"
    "      asks for the newer categories this release has.\n"
    "\n"
    "  status [--macos VERSION] [--language CODE] [--sandboxed] [--json]\n"
    "         [--newer-categories]\n"
    "         [--grant IDENTIFIER] [--deny IDENTIFIER] [--restricted IDENTIFIER]\n"
    "      Prints every privacy category's identifier, status and request type\n"
    "      as the status center answers them on a fresh simulated Mac. --grant,\n"
    "      --deny and --restricted (each repeatable) first record the user's\n"
    "      decision for Privacy_AllFiles, Privacy_DesktopFolder,\n"
    "      Privacy_DocumentsFolder, Privacy_DownloadsFolder, Privacy_Accessibility,\n"
    "      Privacy_Calendars, Privacy_Reminders, Privacy_Contacts or Privacy_Photos\n"
    "      (only the last four can be restricted). --newer-categories turns on\n"
    "      the newer categories, as a host does with one line, and lists them\n"
    "      after the sixteen: Privacy_ScreenCapture, Privacy_ListenEvent,\n"
    "      Privacy_Camera, Privacy_Microphone and Privacy_Bluetooth, which\n"
    "      --grant, --deny and --restricted then also take.\n"
    "\n"
    "  list [--macos VERSION] [--language CODE] [--sandboxed] [--newer-categories]\n"
    "       [--reason IDENTIFIER=TEXT] [--grant IDENTIFIER] [--deny IDENTIFIER]\n"
    "       [IDENTIFIER...]\n"
    "      Shows the permission list as a host would embed it: each row's label,\n"
    "      reason, button title and whether the button is enabled. Without\n"
    "      identifiers the list asks for Privacy_AllFiles only; categories the\n"
    "      system does not have are left out. --reason, --grant and --deny may\n"
    "      be repeated; --grant and --deny take the identifiers status takes.\n"
    "      The newer categories are listed only with --newer-categories.\n"
    "\n"
    "  guide IDENTIFIER [--macos VERSION] [--language CODE] [--frames DIR]\n"
    "        [--newer-categories]\n"
    "      Plays a guide session for IDENTIFIER with a scripted user: System\n"
    "      Preferences comes forward with the overlay over it, the user unlocks\n"
    "      the pane where it has a lock, drags the icon into the list, turns\n"
    "      the host's switch on and types the password on System Settings\n"
    "      (macOS 13 and later), and comes back to the host. Prints the\n"
    "      overlay's message and the timeline; with --frames, writes a PNG\n"
    "      picture of the screen into DIR at each visible change. The newer\n"
    "      categories get their own prompt only with --newer-categories.\n"
    "\n"
    "  --help    prints this text\n"
    "\n"
    "VERSION is one of 10.9 10.10 10.11 10.12 10.13 10.14 10.15 11 12 13 14 15\n"
    "26 27 "
    "(default 10.15).\n"
    "\n"
    "CODE is the user's preferred language on the simulated Mac (default en).\n"
    "Vantro speaks en, de, fr and ja: the list's labels and buttons and the\n"
    "overlay's message follow it, and so do System Preferences' window title\n"
    "and the host's alert. A code with a region (fr-CA) is served by its\n"
    "language; any other code falls back to English, as on a Mac. status\n"
    "prints no texts, so the language changes nothing there.\n"
    "\n"
    "Every command also takes --app-store: the framework as built for the Mac\n"
    "App Store, which names no private interface of the system. On 10.14 the\n"
    "Photos status is then PHPhotoLibrary's own, and the overlay keeps the host\n"
    "behind as a non-activating panel.\n";

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    if (args.empty()) {
        std::cerr << usage;
        return vantro::tool::ExitUsage;
    }
    std::string command = args.front();
    vantro::tool::Arguments rest(std::vector<std::string>(args.begin() + 1, args.end()));
    try {
        if (command == "--help" || command == "-h" || command == "help") {
            std::cout << usage;
            return vantro::tool::ExitOK;
        }
        if (command == "status") return vantro::tool::runStatus(std::move(rest), std::cout);
        if (command == "list") return vantro::tool::runList(std::move(rest), std::cout);
        if (command == "road") return vantro::tool::runRoad(std::move(rest), std::cout);
        if (command == "guide") return vantro::tool::runGuide(std::move(rest), std::cout);
        throw vantro::tool::UsageError{"unknown command \"" + command + "\""};
    } catch (const vantro::tool::UsageError& error) {
        std::cerr << "vantro-sim: " << error.message << "\n\n" << usage;
        return vantro::tool::ExitUsage;
    } catch (const vantro::tool::ToolError& error) {
        std::cerr << "vantro-sim: " << error.message << "\n";
        return vantro::tool::ExitFailure;
    } catch (const vantro::sim::AssertionFailure& failure) {
        // The framework asserts where a Mac's assertion handler would stop
        // the host (a URL that cannot be made, for one): the story ends there.
        std::cerr << "vantro-sim: the framework's assertion failed in " << failure.method << " (" << failure.file << ", line "
                  << failure.line << "): " << failure.description << "\n";
        return vantro::tool::ExitFailure;
    }
}
