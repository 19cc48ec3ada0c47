#include <iomanip>
#include <map>
#include <ostream>
#include <sstream>

#include "Command.h"
#include "Output.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

namespace {

const std::pair<std::string_view, sim::Consent> decisionOptions[] = {
    {"--grant", sim::Consent::Authorized},
    {"--deny", sim::Consent::Denied},
    {"--restricted", sim::Consent::Restricted},
};

std::string_view optionOf(sim::Consent consent) {
    for (const auto& [name, value] : decisionOptions)
        if (value == consent) return name;
    return "--grant";
}

}  // namespace

bool MacOptions::read(const std::string& option, Arguments& args) {
    if (option == "--macos") {
        auto version = args.value();
        if (!version) throw UsageError{"--macos needs a VERSION, such as 10.15 or 14"};
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
        if (!language || language->empty() || language->starts_with("--"))
            throw UsageError{"--language needs a CODE, such as fr or ja"};
        configuration.languages = {*language};
        return true;
    }
    if (option == "--newer-categories") {
        newer = true;
        return true;
    }
    if (option == "--json") {
        json = true;
        return true;
    }
    return false;
}

void MacOptions::serveNewerCategories() const {
    if (newer) VantroRequestStatusCenter::setServesNewerPrivacyCategories(true);
}

bool Decisions::read(const std::string& option, Arguments& args, std::initializer_list<std::string_view> names) {
    if (std::find(names.begin(), names.end(), option) == names.end()) return false;
    auto identifier = args.value();
    if (!identifier || identifier->empty()) throw UsageError{option + " needs an IDENTIFIER, such as Privacy_AllFiles"};
    for (const auto& [name, consent] : decisionOptions)
        if (name == option) list.emplace_back(*identifier, consent);
    return true;
}

void Decisions::apply(sim::SimulatedMac& mac, const MacOptions& options, const Streams& io) const {
    // Warnings wait until every decision is taken: a usage error stays the
    // only thing said.
    std::vector<std::string> warnings;
    std::map<std::string, sim::Consent, std::less<>> earlier;
    for (const auto& [identifier, consent] : list) {
        if (auto before = earlier.find(identifier); before != earlier.end() && before->second != consent)
            warnings.push_back(std::string(optionOf(consent)) + " " + identifier + " overrides the earlier " +
                               std::string(optionOf(before->second)) + " " + identifier + ": the last decision counts");
        earlier.insert_or_assign(identifier, consent);
        if (!mac.privacy().setConsentForIdentifier(identifier, consent)) {
            if (consent == sim::Consent::Restricted && mac.privacy().setConsentForIdentifier(identifier, sim::Consent::Denied))
                throw UsageError{"\"" + identifier + "\" cannot be restricted; only the services the system asks for can"};
            throw UsageError{"\"" + identifier +
                             "\" is not Full Disk Access, a folder, Accessibility, or a service the system asks for"};
        }
        if (isNewerPrivacyCategory(identifier) && !options.newer)
            warnings.push_back(std::string(optionOf(consent)) + " " + identifier +
                               " is recorded but changes nothing: the status center serves " + identifier +
                               " only with --newer-categories");
    }
    for (const auto& warning : warnings) io.warn(warning);
}

int runStatus(Arguments args, const Streams& io) {
    MacOptions options;
    Decisions decisions;
    while (!args.empty()) {
        std::string option = args.next();
        if (options.read(option, args) || decisions.read(option, args, {"--grant", "--deny", "--restricted"})) continue;
        throw UsageError{"unknown option \"" + option + "\""};
    }

    sim::SimulatedMac mac(options.configuration);
    decisions.apply(mac, options, io);
    options.serveNewerCategories();
    std::vector<std::string> identifiers(VantroPrivacyAllIdentifiers.begin(), VantroPrivacyAllIdentifiers.end());
    if (options.newer) identifiers.insert(identifiers.end(), VantroPrivacyNewerIdentifiers.begin(), VantroPrivacyNewerIdentifiers.end());
    const auto categories = reportCategories(mac, identifiers);

    if (options.json) {
        io.out << "{\n";
        writeJsonContext(io.out, "status", mac, options.newer);
        writeJsonCategories(io.out, "categories", categories);
        io.out << "\n}\n";
        return ExitOK;
    }
    io.out << mac.release().title() << ", AppKit " << std::fixed << std::setprecision(2)
           << mac.configuration().appKitVersionNumber() << (options.configuration.sandboxed ? ", sandboxed host" : "") << "\n\n";
    io.out << std::left << std::setw(28) << "IDENTIFIER" << std::setw(20) << "STATUS" << "REQUEST TYPE\n";
    for (const auto& category : categories) {
        std::ostringstream status;
        status << category.status << " " << statusName(category.status);
        std::ostringstream type;
        type << category.requestType << " " << requestTypeName(category.requestType);
        io.out << std::setw(28) << category.identifier << std::setw(20) << status.str() << type.str() << "\n";
    }
    return ExitOK;
}

}  // namespace vantro::tool
