#include <ostream>

#include "Command.h"
#include "Guide/Vantro.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimOverlay.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Story.h"

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

int runGuide(Arguments args, std::ostream& out) {
    sim::MacConfiguration configuration;
    std::optional<std::string> frames;
    std::optional<std::string> identifier;
    bool newer = false;
    while (!args.empty()) {
        std::string option = args.next();
        if (readMacOption(option, args, configuration) || readFramesOption(option, args, frames) ||
            readNewerCategoriesOption(option, newer))
            continue;
        if (option.rfind("--", 0) == 0) throw UsageError{"unknown option \"" + option + "\" for guide"};
        if (identifier) throw UsageError{"guide takes one IDENTIFIER"};
        identifier = option;
    }
    if (!identifier) throw UsageError{"guide needs an IDENTIFIER, such as Privacy_AllFiles"};

    sim::SimulatedMac mac(configuration);
    serveNewerCategories(newer);
    Story story(mac, frames);
    auto guide = Vantro::sharedKit();
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    auto status = [&] { return center->privacyAuthorizationStatusForIdentifier(*identifier); };
    out << "Status of " << *identifier << " before: " << status() << "\n";

    mac.record("host", "asks the guide for access to " + *identifier);
    guide->askAccessForPanelIdentifier(*identifier);
    out << "Overlay message: " << guide->message().value_or("") << "\n";
    story.contents().guide = guide.get();
    story.runUntil(1.5);
    if (mac.systemPreferences().hasLock())
        mac.userDoes(1.0, "clicks the lock and types the password", [&mac] { mac.systemPreferences().userUnlocks(); });
    scriptDragIntoList(mac, *guide, 2.0);
    const double switching = scriptSwitchOnInSettings(mac, 3.5);
    mac.userDoes(5.0 + switching, "switches back to " + configuration.hostName,
                 [&mac] { mac.workspace().activate(mac.workspace().host()); });
    story.runUntil(7.0 + switching);

    out << "\nTimeline:\n" << mac.timeline().format();
    out << "\nStatus of " << *identifier << " after: " << status() << "\n";
    if (frames) out << story.frames().size() << " pictures written to " << *frames << "\n";
    return ExitOK;
}

}  // namespace vantro::tool
