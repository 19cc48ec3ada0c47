#include <algorithm>
#include <iomanip>
#include <ostream>
#include <set>

#include "Command.h"
#include "Output.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

namespace {

// The columns a text takes on a terminal: one per character, two for the
// wide characters of Chinese, Japanese and Korean, none for UTF-8's
// continuation bytes.
std::size_t displayWidth(const std::string& text) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < text.size();) {
        auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        char32_t code = length == 1 ? lead : lead & (0x3F >> (length - 1));
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k)
            code = (code << 6) | (static_cast<unsigned char>(text[i + k]) & 0x3F);
        bool wide = (code >= 0x1100 && code <= 0x115F) || (code >= 0x2E80 && code <= 0xA4CF) ||
                    (code >= 0xAC00 && code <= 0xD7A3) || (code >= 0xF900 && code <= 0xFAFF) ||
                    (code >= 0xFE30 && code <= 0xFE4F) || (code >= 0xFF00 && code <= 0xFF60) ||
                    (code >= 0xFFE0 && code <= 0xFFE6) || (code >= 0x20000 && code <= 0x3FFFD);
        width += wide ? 2 : 1;
        i += length;
    }
    return width;
}

// Why the list leaves out `identifier`, which was requested.
std::string whyLeftOut(std::string_view identifier, const MacOptions& options, const sim::SimulatedMac& mac) {
    if (!privacyCategoryIdentifierNamed(identifier)) return "it is not a privacy category identifier";
    if (isNewerPrivacyCategory(identifier) && !options.newer) return "the newer categories are listed only with --newer-categories";
    if (identifier == VantroPrivacyFilesAndFolders) return "the list offers the folders and volumes one by one, never all of them at once";
    if (identifier == VantroPrivacyFullDiskAccess && options.configuration.sandboxed)
        return "a sandboxed host is never offered Full Disk Access";
    return mac.release().title() + " does not have it";
}

}  // namespace

int runList(Arguments args, const Streams& io) {
    MacOptions options;
    Decisions decisions;
    std::vector<std::string> identifiers;
    VantroViewController::ReasonStrings reasons;
    std::vector<std::string> replacedReasons;
    while (!args.empty()) {
        std::string argument = args.next();
        if (options.read(argument, args) || decisions.read(argument, args, {"--grant", "--deny"})) continue;
        if (argument == "--reason") {
            auto pair = args.value();
            auto equals = pair ? pair->find('=') : std::string::npos;
            if (equals == std::string::npos || equals == 0) throw UsageError{"--reason needs IDENTIFIER=TEXT"};
            std::string identifier = pair->substr(0, equals);
            if (reasons.contains(identifier)) replacedReasons.push_back(identifier);
            reasons.insert_or_assign(std::move(identifier), pair->substr(equals + 1));
            continue;
        }
        if (argument.starts_with("--")) throw UsageError{"unknown option \"" + argument + "\""};
        identifiers.push_back(argument);
    }

    sim::SimulatedMac mac(options.configuration);
    decisions.apply(mac, options, io);
    for (const auto& identifier : replacedReasons) io.warn("--reason " + identifier + " replaces the earlier reason for it");
    options.serveNewerCategories();
    auto controller = VantroViewController::create();
    if (!identifiers.empty()) controller->setRequestedPrivacyCategoryIdentifiers(identifiers);
    if (!reasons.empty()) controller->setReasonStrings(reasons);
    sim::SimPermissionList list(mac, controller);
    list.show();
    const auto rows = reportRows(*controller, list);
    const auto& requested = controller->requestedPrivacyCategoryIdentifiers();
    auto shown = [&](std::string_view identifier) {
        return std::any_of(rows.begin(), rows.end(), [&](const CategoryReport& row) { return row.identifier == identifier; });
    };
    // Everything asked for that the list does not show is told, once.
    std::set<std::string, std::less<>> told;
    for (const auto& identifier : requested) {
        if (shown(identifier) || !told.insert(identifier).second) continue;
        io.warn(identifier + " is left out of the list: " + whyLeftOut(identifier, options, mac));
    }
    for (const auto& [identifier, reason] : reasons) {
        if (!shown(identifier)) io.warn("--reason " + identifier + " is not shown: " + identifier + " is not a row of the list");
    }

    if (options.json) {
        io.out << "{\n";
        writeJsonContext(io.out, "list", mac, options.newer);
        io.out << "  \"requested\": [";
        for (std::size_t i = 0; i < requested.size(); ++i) io.out << (i ? ", " : "") << jsonString(requested[i]);
        io.out << "],\n";
        writeJsonCategories(io.out, "categories", rows);
        io.out << "\n}\n";
        return ExitOK;
    }
    io.out << mac.release().title() << ", AppKit " << std::fixed << std::setprecision(2)
           << mac.configuration().appKitVersionNumber() << (options.configuration.sandboxed ? ", sandboxed host" : "") << "\n";
    io.out << "requested:";
    for (const auto& identifier : requested) io.out << " " << printable(identifier);
    io.out << "\n\n";
    if (rows.empty()) {
        io.out << "(the list is empty)\n";
        return ExitOK;
    }

    std::size_t labelWidth = 8, reasonWidth = 6, titleWidth = 6;
    std::vector<std::string> reasonTexts;
    for (const auto& row : rows) {
        reasonTexts.push_back(row.reason ? printable(*row.reason) : "-");
        labelWidth = std::max(labelWidth, displayWidth(row.label.value_or("")));
        reasonWidth = std::max(reasonWidth, displayWidth(reasonTexts.back()));
        titleWidth = std::max(titleWidth, displayWidth(row.buttonTitle.value_or("")));
    }
    auto cell = [&](const std::string& text, std::size_t width) {
        io.out << text << std::string(width + 2 - std::min(width + 2, displayWidth(text)), ' ');
    };
    cell("CATEGORY", labelWidth);
    cell("REASON", reasonWidth);
    cell("BUTTON", titleWidth);
    io.out << "ENABLED\n";
    for (std::size_t i = 0; i < rows.size(); ++i) {
        cell(rows[i].label.value_or(""), labelWidth);
        cell(reasonTexts[i], reasonWidth);
        cell(rows[i].buttonTitle.value_or(""), titleWidth);
        io.out << (rows[i].buttonEnabled ? "yes" : "no") << "\n";
    }
    return ExitOK;
}

}  // namespace vantro::tool
