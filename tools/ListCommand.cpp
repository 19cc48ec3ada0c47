#include <algorithm>
#include <iomanip>
#include <ostream>

#include "Command.h"
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

// One of the sixteen identifiers, or of the newer categories.
bool isKnownIdentifier(std::string_view identifier) {
    auto in = [&](const auto& all) { return std::find(all.begin(), all.end(), identifier) != all.end(); };
    return in(VantroPrivacyAllIdentifiers) || in(VantroPrivacyNewerIdentifiers);
}

}  // namespace

int runList(Arguments args, std::ostream& out) {
    sim::MacConfiguration configuration;
    std::vector<std::string> identifiers;
    VantroViewController::ReasonStrings reasons;
    // What the user has already decided, in the order given.
    std::vector<std::pair<std::string, sim::Consent>> decisions;
    bool newer = false;
    while (!args.empty()) {
        std::string argument = args.next();
        if (readMacOption(argument, args, configuration) || readNewerCategoriesOption(argument, newer)) continue;
        if (argument == "--reason") {
            auto pair = args.value();
            auto equals = pair ? pair->find('=') : std::string::npos;
            if (equals == std::string::npos || equals == 0) throw UsageError{"--reason needs IDENTIFIER=TEXT"};
            reasons.insert_or_assign(pair->substr(0, equals), pair->substr(equals + 1));
            continue;
        }
        if (argument == "--grant" || argument == "--deny") {
            auto identifier = args.value();
            if (!identifier) throw UsageError{argument + " needs an IDENTIFIER"};
            decisions.emplace_back(*identifier, argument == "--grant" ? sim::Consent::Authorized : sim::Consent::Denied);
            continue;
        }
        if (argument.rfind("--", 0) == 0) throw UsageError{"unknown option \"" + argument + "\" for list"};
        identifiers.push_back(argument);
    }

    sim::SimulatedMac mac(configuration);
    for (const auto& [identifier, consent] : decisions) {
        if (!mac.privacy().setConsentForIdentifier(identifier, consent))
            throw UsageError{"\"" + identifier + "\" is not Full Disk Access, a folder, Accessibility, or a service the system asks for"};
    }
    serveNewerCategories(newer);
    auto controller = VantroViewController::create();
    if (!identifiers.empty()) controller->setRequestedPrivacyCategoryIdentifiers(identifiers);
    if (!reasons.empty()) controller->setReasonStrings(reasons);
    sim::SimPermissionList list(mac, controller);
    list.show();
    auto rows = list.rows();

    out << mac.release().title() << ", AppKit " << std::fixed
        << std::setprecision(2) << mac.configuration().appKitVersionNumber()
        << (configuration.sandboxed ? ", sandboxed host" : "") << "\n";
    out << "requested: ";
    const auto& requested = controller->requestedPrivacyCategoryIdentifiers();
    for (std::size_t i = 0; i < requested.size(); ++i) out << (i ? " " : "") << requested[i];
    out << "\n\n";
    // Identifiers the framework does not know are left out of the list, as
    // are categories this release does not have: the two are told apart.
    bool unknownRequested = false;
    for (const auto& identifier : requested) {
        if (isKnownIdentifier(identifier)) continue;
        out << "(" << identifier << " is not a privacy category identifier: the list leaves it out)\n";
        unknownRequested = true;
    }
    if (unknownRequested) out << "\n";
    if (rows.empty()) {
        out << (unknownRequested && std::all_of(requested.begin(), requested.end(), [](const std::string& i) { return !isKnownIdentifier(i); })
                    ? "(the list is empty)\n"
                    : "(the list is empty: no requested category exists on this system)\n");
        return ExitOK;
    }

    std::size_t labelWidth = 8, reasonWidth = 6, titleWidth = 6;
    for (const auto& row : rows) {
        labelWidth = std::max(labelWidth, displayWidth(row.label));
        reasonWidth = std::max(reasonWidth, displayWidth(row.reason));
        titleWidth = std::max(titleWidth, displayWidth(row.buttonTitle));
    }
    auto cell = [&](const std::string& text, std::size_t width) {
        out << text << std::string(width + 2 - std::min(width + 2, displayWidth(text)), ' ');
    };
    cell("CATEGORY", labelWidth);
    cell("REASON", reasonWidth);
    cell("BUTTON", titleWidth);
    out << "ENABLED\n";
    for (const auto& row : rows) {
        cell(row.label, labelWidth);
        cell(row.reason.empty() ? "-" : row.reason, reasonWidth);
        cell(row.buttonTitle, titleWidth);
        out << (row.buttonEnabled ? "yes" : "no") << "\n";
    }
    return ExitOK;
}

}  // namespace vantro::tool
