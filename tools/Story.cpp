#include "Story.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <sstream>

#include "Command.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimPermissionList.h"

namespace vantro::tool {

namespace {
constexpr double step = 0.05;
}

Story::Story(sim::SimulatedMac& mac, std::optional<std::string> framesDirectory) : mac_(mac), directory_(std::move(framesDirectory)) {
    if (directory_) {
        std::error_code ec;
        std::filesystem::create_directories(*directory_, ec);
        if (ec || !std::filesystem::is_directory(*directory_) || access(directory_->c_str(), W_OK) != 0)
            throw ToolError{"cannot write pictures into " + *directory_ + (ec ? ": " + ec.message() : "")};
    }
}

std::string Story::signature() {
    std::ostringstream s;
    auto front = mac_.workspace().front();
    s << (front ? front->localizedName() : "-") << '|' << mac_.workspace().host()->isHidden();
    auto& preferences = mac_.systemPreferences();
    s << '|' << preferences.isRunning() << preferences.currentPane() << preferences.anchor() << preferences.isLocked()
      << preferences.grantedByDrop().size() << preferences.listsHost(preferences.anchor())
      << preferences.hostSwitchedOn(preferences.anchor()) << preferences.asksForPassword() << preferences.showsReopenSheet() << preferences.windowFrame().origin.x << ',' << preferences.windowFrame().origin.y;
    if (contents_.overlay && contents_.overlay->window()) {
        auto* w = contents_.overlay->window();
        s << "|overlay " << w->isVisible() << ' ' << w->frame().origin.x << ',' << w->frame().origin.y;
    }
    if (auto& session = mac_.dragging().session()) s << "|drag " << session->location().x << ',' << session->location().y;
    if (contents_.permissionList) s << '|' << sim::SimPermissionList::describe(contents_.permissionList->rows());
    return s.str();
}

void Story::captureIfChanged() {
    std::string now = signature();
    if (now == lastSignature_) return;
    lastSignature_ = now;
    if (!directory_) return;
    char name[32];
    std::snprintf(name, sizeof name, "frame-%02zu.png", frames_.size() + 1);
    std::string path = (std::filesystem::path(*directory_) / name).string();
    if (!sim::renderScreen(mac_, contents_, path)) throw ToolError{"could not write the picture " + path};
    frames_.push_back(path);
    mac_.record("picture", "writes " + path);
}

void Story::runUntil(double time) {
    captureIfChanged();
    while (mac_.now() + 1e-9 < time) {
        mac_.runFor(std::min(step, time - mac_.now()));
        captureIfChanged();
    }
}

}  // namespace vantro::tool
