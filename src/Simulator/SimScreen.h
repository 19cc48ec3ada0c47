#pragma once

#include <string>

namespace vantro {
class VantroWindowController;
}

namespace vantro::sim {

class SimulatedMac;
class SimPermissionList;

// What the simulated Mac's screen shows, as a picture: the desktop and menu
// bar, the host's window (with its permission list when it has one), System
// Preferences' window with its title, pane and privacy list, the overlay over
// it and the icon under the pointer during a drag.
struct ScreenContents {
    const VantroWindowController* overlay = nullptr;
    const SimPermissionList* permissionList = nullptr;
};

// Writes the screen as a PNG; answers whether the file was written.
bool renderScreen(SimulatedMac& mac, const ScreenContents& contents, const std::string& pngPath);

}  // namespace vantro::sim
