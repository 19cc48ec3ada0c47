#include "Story.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Command.h"
#include "Output.h"
#include "Overlay/VantroWindowController.h"
#include "Simulator/SimPermissionList.h"
#include "Vocabulary/VantroVersion.h"

namespace vantro::tool {

namespace {

constexpr double step = 0.05;

namespace fs = std::filesystem;

constexpr const char* indexName = "frames.json";

// A picture of an earlier story, or its index: "frame-" digits ".png".
bool isOwnFile(const std::string& name) {
    if (name == indexName) return true;
    if (!name.starts_with("frame-") || !name.ends_with(".png") || name.size() <= 10) return false;
    return std::all_of(name.begin() + 6, name.end() - 4, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

Story::Story(sim::SimulatedMac& mac, std::optional<std::string> framesDirectory) : mac_(mac), directory_(std::move(framesDirectory)) {
    if (!directory_) return;
    std::error_code ec;
    fs::create_directories(*directory_, ec);
    if (ec || !fs::is_directory(*directory_) || access(directory_->c_str(), W_OK) != 0)
        throw ToolError{"cannot write pictures into " + *directory_ + (ec ? ": " + ec.message() : "")};
    // The pictures of an earlier, longer story would pass for this one's:
    // they go, and nothing else in the folder is touched.
    std::vector<fs::path> earlier;
    for (fs::directory_iterator it(*directory_, ec), end; !ec && it != end; it.increment(ec))
        if (it->is_regular_file() && isOwnFile(it->path().filename().string())) earlier.push_back(it->path());
    for (const auto& path : earlier) {
        std::error_code removal;
        if (!fs::remove(path, removal))
            throw ToolError{"cannot replace " + path.string() + (removal ? ": " + removal.message() : "")};
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
    if (auto* overlay = contents_.overlayController(); overlay && overlay->window()) {
        auto* w = overlay->window();
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
    // The picture shows the last thing that happened, its own kind aside.
    const auto& entries = mac_.timeline().entries();
    auto shown = std::find_if(entries.rbegin(), entries.rend(), [](const sim::TimelineEntry& e) { return e.actor != "picture"; });
    shown_.push_back({mac_.now(), shown == entries.rend() ? std::nullopt : std::optional(*shown)});
    char name[32];
    std::snprintf(name, sizeof name, "frame-%02zu.png", frames_.size() + 1);
    std::string path = (fs::path(*directory_) / name).string();
    if (!sim::renderScreen(mac_, contents_, path)) throw ToolError{"could not write the picture " + path};
    frames_.push_back(path);
    mac_.record("picture", "writes " + path);
}

void Story::finish() {
    if (!directory_) return;
    const std::string path = (fs::path(*directory_) / indexName).string();
    std::ofstream index(path);
    index << "{\n  \"version\": " << jsonString(kVersionString) << ",\n  \"frames\": [";
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        char time[32];
        std::snprintf(time, sizeof time, "%.3f", shown_[i].time);
        index << (i ? ",\n" : "\n") << "    {\"file\": " << jsonString(fs::path(frames_[i]).filename().string())
              << ", \"time\": " << time << ", \"event\": ";
        if (const auto& event = shown_[i].event) {
            std::snprintf(time, sizeof time, "%.3f", event->time);
            index << "{\"time\": " << time << ", \"actor\": " << jsonString(event->actor)
                  << ", \"text\": " << jsonString(event->text) << "}}";
        } else {
            index << "null}";
        }
    }
    index << (frames_.empty() ? "]\n}\n" : "\n  ]\n}\n");
    index.close();
    if (!index) throw ToolError{"could not write the index " + path};
}

void Story::runUntil(double time) {
    captureIfChanged();
    while (mac_.now() + 1e-9 < time) {
        mac_.runFor(std::min(step, time - mac_.now()));
        captureIfChanged();
    }
}

}  // namespace vantro::tool
