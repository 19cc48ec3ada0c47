#include <iomanip>
#include <ostream>
#include <sstream>

#include "Command.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

namespace {

const char* statusName(PrivacyAuthorizationStatus status) {
    switch (status) {
    case PrivacyAuthorizationStatusNotDetermined: return "not determined";
    case PrivacyAuthorizationStatusDenied: return "denied";
    case PrivacyAuthorizationStatusAuthorized: return "authorized";
    default: return "?";
    }
}

const char* requestTypeName(PrivacyAuthorizationRequestType type) {
    switch (type) {
    case PrivacyAuthorizationRequestTypeGrant: return "grant";
    case PrivacyAuthorizationRequestTypeCheck: return "check";
    default: return "request";
    }
}

std::string jsonString(std::string_view s) {
    std::string out = "\"";
    for (char c : s) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + "\"";
}

}  // namespace

bool readMacOption(const std::string& option, Arguments& args, sim::MacConfiguration& configuration) {
    if (option == "--macos") {
        auto version = args.value();
        if (!version) throw UsageError{"--macos needs a VERSION"};
        if (!sim::MacRelease::named(*version)) throw UsageError{"unknown macOS version \"" + *version + "\""};
        configuration.release = *version;
        return true;
    }
    if (option == "--sandboxed") {
        configuration.sandboxed = true;
        return true;
    }
    if (option == "--app-store") {
        configuration.appStoreBuild = true;
        return true;
    }
    if (option == "--language") {
        // The user's one preferred language (AppleLanguages). Any code is
        // taken: one that no bundle has a localization for falls back as on
        // a Mac, to English, the framework's development language.
        auto language = args.value();
        if (!language || language->empty() || language->rfind("--", 0) == 0)
            throw UsageError{"--language needs a CODE, such as fr or ja"};
        configuration.languages = {*language};
        return true;
    }
    return false;
}

bool readNewerCategoriesOption(const std::string& option, bool& newer) {
    if (option != "--newer-categories") return false;
    newer = true;
    return true;
}

void serveNewerCategories(bool newer) {
    if (newer) VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
}

int runStatus(Arguments args, std::ostream& out) {
    sim::MacConfiguration configuration;
    bool json = false;
    bool newer = false;
    // What the user has already decided, in the order given.
    std::vector<std::pair<std::string, sim::Consent>> decisions;
    const std::pair<std::string_view, sim::Consent> decisionOptions[] = {
        {"--grant", sim::Consent::Authorized},
        {"--deny", sim::Consent::Denied},
        {"--restricted", sim::Consent::Restricted},
    };
    while (!args.empty()) {
        std::string option = args.next();
        if (readMacOption(option, args, configuration) || readNewerCategoriesOption(option, newer)) continue;
        if (option == "--json") {
            json = true;
            continue;
        }
        bool decided = false;
        for (const auto& [name, consent] : decisionOptions) {
            if (option != name) continue;
            auto identifier = args.value();
            if (!identifier) throw UsageError{option + " needs an IDENTIFIER"};
            decisions.emplace_back(*identifier, consent);
            decided = true;
        }
        if (decided) continue;
        throw UsageError{"unknown option \"" + option + "\" for status"};
    }

    sim::SimulatedMac mac(configuration);
    for (const auto& [identifier, consent] : decisions) {
        if (mac.privacy().setConsentForIdentifier(identifier, consent)) continue;
        if (consent == sim::Consent::Restricted && mac.privacy().setConsentForIdentifier(identifier, sim::Consent::Denied))
            throw UsageError{"\"" + identifier + "\" cannot be restricted; only the services the system asks for can"};
        throw UsageError{"\"" + identifier + "\" is not Full Disk Access, a folder, Accessibility, or a service the system asks for"};
    }
    serveNewerCategories(newer);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    struct Row {
        std::string identifier;
        PrivacyAuthorizationStatus status;
        PrivacyAuthorizationRequestType type;
    };
    std::vector<Row> rows;
    auto addRow = [&](PrivacyCategoryIdentifier identifier) {
        rows.push_back({std::string(identifier), center->privacyAuthorizationStatusForIdentifier(identifier),
                        center->authorizationRequestTypeForIdentifier(identifier)});
    };
    for (auto identifier : VantroPrivacyAllIdentifiers) addRow(identifier);
    if (newer) {
        for (auto identifier : VantroPrivacyNewerIdentifiers) addRow(identifier);
    }

    if (json) {
        out << "[\n";
        for (std::size_t i = 0; i < rows.size(); ++i) {
            out << "  {\"identifier\": " << jsonString(rows[i].identifier) << ", \"status\": " << rows[i].status
                << ", \"requestType\": " << rows[i].type << "}" << (i + 1 < rows.size() ? "," : "") << "\n";
        }
        out << "]\n";
        return ExitOK;
    }
    out << mac.release().title() << ", AppKit "
        << std::fixed << std::setprecision(2) << mac.configuration().appKitVersionNumber()
        << (configuration.sandboxed ? ", sandboxed host" : "") << "\n\n";
    out << std::left << std::setw(28) << "IDENTIFIER" << std::setw(20) << "STATUS" << "REQUEST TYPE\n";
    for (const auto& row : rows) {
        std::ostringstream status;
        status << row.status << " " << statusName(row.status);
        std::ostringstream type;
        type << row.type << " " << requestTypeName(row.type);
        out << std::setw(28) << row.identifier << std::setw(20) << status.str() << type.str() << "\n";
    }
    return ExitOK;
}

}  // namespace vantro::tool
