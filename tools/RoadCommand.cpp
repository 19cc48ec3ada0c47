#include <memory>
#include <ostream>

#include "Command.h"
#include "Guide/Vantro.h"
#include "Output.h"
#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Story.h"
#include "Vocabulary/NewerPrivacyCategories.h"

namespace vantro::tool {

namespace {

void printRows(std::ostream& out, const char* heading, const std::vector<CategoryReport>& rows) {
    out << heading << "\n";
    for (const auto& row : rows) {
        out << "  " << row.label.value_or("") << (row.reason ? " — " + *row.reason : "") << "  ["
            << row.buttonTitle.value_or("") << (row.buttonEnabled ? "" : ", disabled") << "]\n";
    }
}

// The demo host's reason for Full Disk Access, in the user's language as a
// host would give it.
std::string demoReason(const std::string& language) {
    const std::string code = language.substr(0, 2);
    if (code == "de") return "Wird gebraucht, um jede Datei auf deinem Mac zu sichern.";
    if (code == "fr") return "Nécessaire pour sauvegarder chaque fichier de votre Mac.";
    if (code == "ja") return "Mac 上のすべてのファイルをバックアップするために必要です。";
    return "Needed to back up every file on your Mac.";
}

}  // namespace

int runRoad(Arguments args, const Streams& io) {
    MacOptions options;
    std::optional<std::string> frames;
    bool reopenNow = false;
    while (!args.empty()) {
        std::string option = args.next();
        if (option == "--sandboxed") throw UsageError{"road needs Full Disk Access in the list; a sandboxed host never lists it"};
        if (option == "--reopen") {
            // What the user answers System Settings' "Quit & Reopen" sheet.
            if (args.empty()) throw UsageError{"--reopen needs later or now"};
            const std::string answer = args.next();
            if (answer != "later" && answer != "now")
                throw UsageError{"--reopen takes later or now, not \"" + printable(answer) + "\""};
            reopenNow = answer == "now";
            continue;
        }
        if (options.read(option, args) || readFramesOption(option, args, frames)) continue;
        throw UsageError{"unknown option \"" + option + "\""};
    }
    if (options.configuration.appKitVersionNumber() <= 1561.0 + 0.999)
        throw UsageError{"road needs macOS 10.14 or later, where Full Disk Access exists"};

    sim::SimulatedMac mac(options.configuration);
    options.serveNewerCategories();
    // The host's permission list, made again when the host reopens.
    std::shared_ptr<VantroViewController> controller;
    std::unique_ptr<sim::SimPermissionList> list;
    auto showList = [&] {
        controller = VantroViewController::create();
        // With the newer categories on, the list asks for them too, below Full
        // Disk Access; the ones this release lacks are left out.
        if (options.newer) {
            std::vector<std::string> identifiers{std::string(VantroPrivacyFullDiskAccess)};
            for (auto identifier : VantroPrivacyNewerIdentifiers) identifiers.emplace_back(identifier);
            controller->setRequestedPrivacyCategoryIdentifiers(std::move(identifiers));
        }
        controller->setReasonStrings(VantroViewController::ReasonStrings{
            {std::string(VantroPrivacyFullDiskAccess), demoReason(options.configuration.languages.front())}});
        list = std::make_unique<sim::SimPermissionList>(mac, controller);
        mac.record("host", "shows its permission list");
        list->show();
    };
    showList();
    Story story(mac, frames);
    story.contents().permissionList = list.get();
    story.contents().guide = Vantro::sharedKit().get();
    const auto before = reportRows(*controller, *list);

    auto guide = Vantro::sharedKit();
    // The process ends with what it made; the reopened host shows its list anew.
    mac.setHostRelaunchHandlers(
        [&] {
            story.contents() = {};
            list.reset();
            controller.reset();
            guide.reset();
        },
        [&] {
            options.serveNewerCategories();
            showList();
            story.contents().permissionList = list.get();
            story.contents().guide = Vantro::sharedKit().get();
        });
    list->userClicks(1.0, 0);
    story.runUntil(2.0);
    if (mac.systemPreferences().hasLock())
        mac.userDoes(1.0, "clicks the lock and types the password", [&mac] { mac.systemPreferences().userUnlocks(); });
    scriptDragIntoList(mac, *guide, 2.0);
    const double switching = scriptSwitchOnInSettings(mac, 3.5);
    mac.userDoes(3.2 + switching, reopenNow ? "chooses Quit & Reopen" : "chooses Later", [&mac, reopenNow] {
        mac.systemPreferences().userAnswersReopenSheet(reopenNow);
    });
    mac.userDoes(3.5 + switching, "switches back to " + options.configuration.hostName,
                 [&mac] { mac.workspace().activate(mac.workspace().host()); });
    story.runUntil(6.5 + switching);
    story.finish();
    const auto after = reportRows(*controller, *list);

    if (options.json) {
        io.out << "{\n";
        writeJsonContext(io.out, "road", mac, options.newer);
        writeJsonCategories(io.out, "before", before);
        io.out << ",\n";
        writeJsonTimeline(io.out, mac);
        io.out << ",\n";
        writeJsonCategories(io.out, "categories", after);
        io.out << "\n}\n";
        return ExitOK;
    }
    printRows(io.out, "The list before:", before);
    io.out << "\nTimeline:\n";
    writeTimeline(io.out, mac);
    io.out << "\n";
    printRows(io.out, "The list after:", after);
    if (frames) io.out << story.frames().size() << " pictures written to " << printable(*frames) << "\n";
    return ExitOK;
}

}  // namespace vantro::tool
