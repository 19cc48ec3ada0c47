#include <ostream>

#include "Command.h"
#include "Guide/Vantro.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Story.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

namespace {

void printRows(std::ostream& out, const char* heading, const sim::SimPermissionList& list) {
    out << heading << "\n";
    for (const auto& row : list.rows()) {
        out << "  " << row.label << (row.reason.empty() ? "" : " — " + row.reason) << "  [" << row.buttonTitle
            << (row.buttonEnabled ? "" : ", disabled") << "]\n";
    }
}

}  // namespace

int runRoad(Arguments args, std::ostream& out) {
    sim::MacConfiguration configuration;
    std::optional<std::string> frames;
    bool newer = false;
    bool reopenNow = false;
    while (!args.empty()) {
        std::string option = args.next();
        if (option == "--sandboxed") throw UsageError{"road needs Full Disk Access in the list; a sandboxed host never lists it"};
        if (option == "--reopen") {
            // What the user answers System Settings' "Quit & Reopen" sheet.
            if (args.empty()) throw UsageError{"--reopen needs later or now"};
            const std::string answer = args.next();
            if (answer != "later" && answer != "now") throw UsageError{"--reopen takes later or now, not \"" + answer + "\""};
            reopenNow = answer == "now";
            continue;
        }
        if (readMacOption(option, args, configuration) || readFramesOption(option, args, frames) ||
            readNewerCategoriesOption(option, newer))
            continue;
        throw UsageError{"unknown option \"" + option + "\" for road"};
    }
    if (configuration.appKitVersionNumber() <= 1561.0 + 0.999)
        throw UsageError{"road needs macOS 10.14 or later, where Full Disk Access exists"};

    sim::SimulatedMac mac(configuration);
    serveNewerCategories(newer);
    // The host's permission list, made again when the host reopens.
    auto makeList = [&mac, newer] {
        auto controller = VantroViewController::create();
        // With the newer categories on, the list asks for them too, below Full
        // Disk Access; the ones this release lacks are left out.
        if (newer) {
            std::vector<std::string> identifiers{std::string(VantroPrivacyFullDiskAccess)};
            for (auto identifier : VantroPrivacyNewerIdentifiers) identifiers.emplace_back(identifier);
            controller->setRequestedPrivacyCategoryIdentifiers(std::move(identifiers));
        }
        controller->setReasonStrings(VantroViewController::ReasonStrings{
            {std::string(VantroPrivacyFullDiskAccess), "Needed to back up every file on your Mac."}});
        auto list = std::make_unique<sim::SimPermissionList>(mac, controller);
        mac.record("host", "shows its permission list");
        list->show();
        return list;
    };
    auto list = makeList();
    Story story(mac, frames);
    story.contents().permissionList = list.get();
    printRows(out, "The list before:", *list);

    auto guide = Vantro::sharedKit();
    // The process ends with what it made; the reopened host shows its list anew.
    mac.setHostRelaunchHandlers(
        [&] {
            story.contents() = {};
            list.reset();
            guide.reset();
        },
        [&] {
            serveNewerCategories(newer);
            list = makeList();
            story.contents().permissionList = list.get();
        });
    list->userClicks(1.0, 0);
    story.runUntil(2.0);
    story.contents().overlay = guide->windowController().get();
    if (mac.systemPreferences().hasLock())
        mac.userDoes(1.0, "clicks the lock and types the password", [&mac] { mac.systemPreferences().userUnlocks(); });
    scriptDragIntoList(mac, *guide, 2.0);
    const double switching = scriptSwitchOnInSettings(mac, 3.5);
    mac.userDoes(3.2 + switching, reopenNow ? "chooses Quit & Reopen" : "chooses Later", [&mac, reopenNow] {
        mac.systemPreferences().userAnswersReopenSheet(reopenNow);
    });
    mac.userDoes(3.5 + switching, "switches back to " + configuration.hostName,
                 [&mac] { mac.workspace().activate(mac.workspace().host()); });
    story.runUntil(6.5 + switching);

    out << "\nTimeline:\n" << mac.timeline().format() << "\n";
    printRows(out, "The list after:", *list);
    if (frames) out << story.frames().size() << " pictures written to " << *frames << "\n";
    return ExitOK;
}

}  // namespace vantro::tool
