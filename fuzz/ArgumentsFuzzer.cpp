// vantro-sim's command line of any words, run in this process as the tool
// runs it. Whatever the words, the tool answers with status 0, 1 or 2, a
// usage error is two lines and prints no answer, and no byte that moves a
// terminal's cursor or changes its colours reaches either stream.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "Command.h"
#include "FuzzInput.h"

using namespace vantro;
using namespace std::literals;

namespace {

// The words of one command line, separated by NUL bytes. --frames is left
// out, so that the fuzzer writes no pictures into folders it names.
std::vector<std::string> words(std::string_view bytes) {
    std::vector<std::string> args;
    while (true) {
        auto end = bytes.find('\0');
        std::string word(bytes.substr(0, end));
        if (word != "--frames") args.push_back(std::move(word));
        if (end == std::string_view::npos) break;
        bytes.remove_prefix(end + 1);
    }
    return args;
}

bool hasControlBytes(const std::string& text) {
    for (unsigned char c : text)
        if ((c < 0x20 && c != '\n') || c == 0x7F) return true;
    return false;
}

}  // namespace

// Seeds: each command with the options it takes, and each command's help.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    fuzz::writeSeedsWhenAsked([](auto write) {
        const std::string_view lines[] = {
            "status"sv,
            "status\0--macos\0" "14\0--newer-categories\0--grant\0Privacy_Camera\0--deny\0Privacy_Photos\0--json"sv,
            "status\0--sandboxed\0--restricted\0Privacy_Contacts\0--language\0ja"sv,
            "list\0Privacy_AllFiles\0Privacy_FilesAndFolders\0--reason\0Privacy_AllFiles=why\0--json"sv,
            "list\0--macos\0" "10.13\0--newer-categories\0Privacy_Camera\0--grant\0Privacy_Calendars"sv,
            "guide\0Privacy_AllFiles\0--macos\0" "15\0--json"sv,
            "guide\0Privacy_Assistive\0--macos\0" "10.9\0--language\0fr"sv,
            "road\0--macos\0" "13\0--newer-categories"sv,
            "road\0--json"sv,
            "help\0road"sv,
            "list\0--help"sv,
        };
        for (auto line : lines) write(line);
    });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 512) return -1;
    std::ostringstream out, err;
    const int status = tool::runTool(words(std::string_view(reinterpret_cast<const char*>(data), size)), out, err);
    if (status != tool::ExitOK && status != tool::ExitFailure && status != tool::ExitUsage) __builtin_trap();
    if (status == tool::ExitUsage) {
        const std::string text = err.str();
        if (!out.str().empty() || std::count(text.begin(), text.end(), '\n') != 2) __builtin_trap();
    }
    if (hasControlBytes(out.str()) || hasControlBytes(err.str())) __builtin_trap();
    return 0;
}
