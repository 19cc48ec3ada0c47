#include <ostream>

#include "Command.h"
#include "Guide/GuideProcessState.h"
#include "Guide/Vantro.h"
#include "Output.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimWorkspace.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Story.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

bool readFramesOption(const std::string& option, Arguments& args, std::optional<std::string>& frames) {
    if (option != "--frames") return false;
    frames = args.value();
    if (!frames || frames->empty()) throw UsageError{"--frames needs a DIR"};
    return true;
}

void scriptDragIntoList(sim::SimulatedMac& mac, Vantro& guide, double startAt) {
    mac.userDoes(startAt, "presses on the icon in the overlay and starts dragging it", [&mac, &guide] {
        if (guide.windowController()) sim::userStartsDraggingIcon(mac, *guide.windowController());
    });
    mac.userDoes(startAt + 0.5, "carries the icon over the list", [&mac] {
        mac.dragging().moveTo(mac.systemPreferences().listPoint());
    });
    mac.userDoes(startAt + 1.0, "drops the icon into the list", [&mac] { mac.dragging().dropAt(mac.systemPreferences().listPoint()); });
}

double scriptSwitchOnInSettings(sim::SimulatedMac& mac, double at) {
    if (!mac.systemPreferences().isSystemSettings()) return 0;
    mac.systemPreferences().setUnlockAnswerDelay(1.0);
    mac.userDoes(at, "turns on the switch of " + mac.configuration().hostName,
                 [&mac] { mac.systemPreferences().userSwitchesOnHost(); });
    return 2.0;
}

int runGuide(Arguments args, const Streams& io) {
    MacOptions options;
    std::optional<std::string> frames;
    std::optional<std::string> identifier;
    while (!args.empty()) {
        std::string option = args.next();
        if (options.read(option, args) || readFramesOption(option, args, frames)) continue;
        if (option.starts_with("--")) throw UsageError{"unknown option \"" + option + "\""};
        if (identifier) throw UsageError{"guide takes one IDENTIFIER, and " + *identifier + " came first"};
        identifier = option;
    }
    if (!identifier) throw UsageError{"guide needs an IDENTIFIER, such as Privacy_AllFiles"};
    // The guide opens the settings at a URL that ends with the identifier:
    // one the system would make no URL of is the argument's fault.
    for (auto prefix : {SystemPreferencesPrivacyURLPrefix, SystemSettingsPrivacyURLPrefix}) {
        if (!sim::SimWorkspace::isValidURL(std::string(prefix) + *identifier))
            throw UsageError{"\"" + *identifier +
                             "\" cannot be put in the URL that opens the settings: spaces, control bytes, bytes "
                             "beyond ASCII and \"<>\\^`{|} are not allowed there"};
    }
    if (!privacyCategoryIdentifierNamed(*identifier))
        io.warn(*identifier + " is not a privacy category identifier: the guide opens the settings at it all the same");
    else if (isNewerPrivacyCategory(*identifier) && !options.newer)
        io.warn(*identifier + " gets the guide's default prompt: the newer categories have their own only with --newer-categories");

    sim::SimulatedMac mac(options.configuration);
    options.serveNewerCategories();
    Story story(mac, frames);
    auto guide = Vantro::sharedKit();
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    const auto before = center->privacyAuthorizationStatusForIdentifier(*identifier);

    mac.record("host", "asks the guide for access to " + *identifier);
    guide->askAccessForPanelIdentifier(*identifier);
    const std::string message = guide->message().value_or("");
    story.contents().guide = guide.get();
    story.runUntil(1.5);
    if (mac.systemPreferences().hasLock())
        mac.userDoes(1.0, "clicks the lock and types the password", [&mac] { mac.systemPreferences().userUnlocks(); });
    scriptDragIntoList(mac, *guide, 2.0);
    const double switching = scriptSwitchOnInSettings(mac, 3.5);
    mac.userDoes(5.0 + switching, "switches back to " + options.configuration.hostName,
                 [&mac] { mac.workspace().activate(mac.workspace().host()); });
    story.runUntil(7.0 + switching);
    story.finish();
    const auto after = center->privacyAuthorizationStatusForIdentifier(*identifier);

    if (options.json) {
        io.out << "{\n";
        writeJsonContext(io.out, "guide", mac, options.newer);
        io.out << "  \"identifier\": " << jsonString(*identifier) << ",\n";
        io.out << "  \"overlayMessage\": " << jsonString(message) << ",\n";
        io.out << "  \"statusBefore\": {\"number\": " << before << ", \"name\": " << jsonString(statusName(before)) << "},\n";
        writeJsonTimeline(io.out, mac);
        io.out << ",\n";
        writeJsonCategories(io.out, "categories", reportCategories(mac, {*identifier}));
        io.out << "\n}\n";
        return ExitOK;
    }
    io.out << "Status of " << printable(*identifier) << " before: " << before << "\n";
    io.out << "Overlay message: " << printable(message) << "\n";
    io.out << "\nTimeline:\n";
    writeTimeline(io.out, mac);
    io.out << "\nStatus of " << printable(*identifier) << " after: " << after << "\n";
    if (frames) io.out << story.frames().size() << " pictures written to " << printable(*frames) << "\n";
    return ExitOK;
}

}  // namespace vantro::tool
