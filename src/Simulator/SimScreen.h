#pragma once

#include <cairo.h>

#include <string>

namespace vantro {
class Vantro;
class VantroWindowController;
}  // namespace vantro

namespace vantro::sim {

class SimulatedMac;
class SimPermissionList;

// What the simulated Mac's screen shows, as a picture: the desktop and menu
// bar, the host's window (with its permission list when it has one), the
// settings window of the release's generation with its pane and privacy list,
// the overlay over it and the icon under the pointer during a drag. Every
// text is in the Mac's preferred language where the simulated system has it.
struct ScreenContents {
    // The overlay shown: `overlay` when set, else the guide's window
    // controller as it is at the moment of the picture, so that a picture
    // taken the moment the guide first shows its overlay has it.
    const VantroWindowController* overlay = nullptr;
    const Vantro* guide = nullptr;
    const SimPermissionList* permissionList = nullptr;

    const VantroWindowController* overlayController() const;
};

// Draws the screen into a new picture the size of the main screen; the
// caller destroys it.
cairo_surface_t* drawScreen(SimulatedMac& mac, const ScreenContents& contents);

// Writes the screen as a PNG; answers whether the file was written.
bool renderScreen(SimulatedMac& mac, const ScreenContents& contents, const std::string& pngPath);

}  // namespace vantro::sim
