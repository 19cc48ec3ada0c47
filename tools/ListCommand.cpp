#include <algorithm>
#include <iomanip>
#include <ostream>

#include "Command.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"

namespace vantro::tool {

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
    if (rows.empty()) {
        out << "(the list is empty: no requested category exists on this system)\n";
        return ExitOK;
    }

    std::size_t labelWidth = 8, reasonWidth = 6, titleWidth = 6;
    for (const auto& row : rows) {
        labelWidth = std::max(labelWidth, row.label.size());
        reasonWidth = std::max(reasonWidth, row.reason.size());
        titleWidth = std::max(titleWidth, row.buttonTitle.size());
    }
    auto cell = [&](const std::string& text, std::size_t width) { out << std::left << std::setw(int(width + 2)) << text; };
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
