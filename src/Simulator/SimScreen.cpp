#include "Simulator/SimScreen.h"

#include <cairo.h>

#include <cstdio>
#include <numbers>

#include "Simulator/SimCanvas.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimReopenSheet.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

// Picture coordinates: origin top left, y downwards, like the window list.
constexpr Rect hostWindow = SimWindows::hostWindowFrame;
constexpr double titleBarHeight = 28;

void roundedRect(cairo_t* cr, const Rect& r, double radius) {
    double x = r.origin.x, y = r.origin.y, w = r.size.width, h = r.size.height;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - radius, y + radius, radius, -std::numbers::pi / 2, 0);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, std::numbers::pi / 2);
    cairo_arc(cr, x + radius, y + h - radius, radius, std::numbers::pi / 2, std::numbers::pi);
    cairo_arc(cr, x + radius, y + radius, radius, std::numbers::pi, 3 * std::numbers::pi / 2);
    cairo_close_path(cr);
}

void setColor(cairo_t* cr, double r, double g, double b, double a = 1) { cairo_set_source_rgba(cr, r, g, b, a); }

void text(cairo_t* cr, double x, double y, const std::string& s, double size, bool bold = false) {
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    cairo_move_to(cr, x, y);
    cairo_show_text(cr, s.c_str());
}

// One row of a list or sidebar: its label dark, or white on a blue highlight
// (with rounded corners when `radius` is not 0) when selected.
void listRow(cairo_t* cr, const std::string& label, double textX, double y, bool selected, const Rect& highlight,
             double radius = 0) {
    if (selected) {
        setColor(cr, 0.16, 0.48, 0.98);
        if (radius > 0) roundedRect(cr, highlight, radius);
        else cairo_rectangle(cr, highlight.origin.x, highlight.origin.y, highlight.size.width, highlight.size.height);
        cairo_fill(cr);
        setColor(cr, 1, 1, 1);
    } else {
        setColor(cr, 0.15, 0.15, 0.15);
    }
    text(cr, textX, y, label, 12);
}

// A window with a shadow, a title bar with its three buttons and a title.
// The close, minimise and zoom buttons, the first centred on `first`; faded
// in a window that is not active.
void drawWindowButtons(cairo_t* cr, Point first, bool active) {
    const double buttons[3][3] = {{1, 0.37, 0.34}, {1, 0.74, 0.18}, {0.16, 0.79, 0.25}};
    for (int i = 0; i < 3; ++i) {
        setColor(cr, buttons[i][0], buttons[i][1], buttons[i][2], active ? 1 : 0.35);
        cairo_arc(cr, first.x + 20 * i, first.y, 6, 0, 2 * std::numbers::pi);
        cairo_fill(cr);
    }
}

// A rounded panel of grey `face` over its shadow, which falls `drop` points
// below it and 2 to the right.
void drawShadowedPanel(cairo_t* cr, const Rect& frame, double radius, double face, double drop, double shadowAlpha) {
    setColor(cr, 0, 0, 0, shadowAlpha);
    roundedRect(cr, {{frame.origin.x + 2, frame.origin.y + drop}, frame.size}, radius);
    cairo_fill(cr);
    setColor(cr, face, face, face);
    roundedRect(cr, frame, radius);
    cairo_fill(cr);
}

void drawWindow(cairo_t* cr, const Rect& frame, const std::string& title, bool active) {
    drawShadowedPanel(cr, frame, 10, 0.96, 6, 0.25);
    setColor(cr, active ? 0.88 : 0.93, active ? 0.88 : 0.93, active ? 0.88 : 0.93);
    cairo_rectangle(cr, frame.origin.x, frame.origin.y + 8, frame.size.width, titleBarHeight - 8);
    cairo_fill(cr);
    drawWindowButtons(cr, {frame.origin.x + 16, frame.origin.y + 14}, active);
    setColor(cr, 0.2, 0.2, 0.2);
    cairo_text_extents_t extents;
    cairo_select_font_face(cr, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cr, 13);
    cairo_text_extents(cr, title.c_str(), &extents);
    text(cr, frame.origin.x + (frame.size.width - extents.width) / 2, frame.origin.y + 19, title, 13, true);
}

void drawHostWindow(SimulatedMac& mac, cairo_t* cr, const SimPermissionList* list, bool active) {
    drawWindow(cr, hostWindow, mac.configuration().hostName, active);
    if (!list) return;
    double y = hostWindow.origin.y + titleBarHeight + 24;
    setColor(cr, 0.1, 0.1, 0.1);
    text(cr, hostWindow.origin.x + 20, y, "Permissions", 15, true);
    y += 16;
    for (const auto& row : list->rows()) {
        setColor(cr, 1, 1, 1);
        roundedRect(cr, {{hostWindow.origin.x + 16, y}, {hostWindow.size.width - 32, 52}}, 6);
        cairo_fill(cr);
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, hostWindow.origin.x + 28, y + 21, row.label, 13, true);
        setColor(cr, 0.45, 0.45, 0.45);
        text(cr, hostWindow.origin.x + 28, y + 39, row.reason, 11);
        Rect button{{hostWindow.maxX() - 190, y + 13}, {160, 26}};
        setColor(cr, row.buttonEnabled ? 0.16 : 0.85, row.buttonEnabled ? 0.48 : 0.85, row.buttonEnabled ? 0.98 : 0.85);
        roundedRect(cr, button, 6);
        cairo_fill(cr);
        if (row.buttonEnabled) setColor(cr, 1, 1, 1);
        else setColor(cr, 0.5, 0.5, 0.5);
        text(cr, button.origin.x + 12, button.origin.y + 18, row.buttonTitle, 12);
        y += 60;
    }
}

void drawSystemPreferences(SimulatedMac& mac, cairo_t* cr, bool active) {
    auto& preferences = mac.systemPreferences();
    Rect frame = preferences.windowFrame();
    drawWindow(cr, frame, preferences.windowTitle(), active);
    double screenHeight = mac.windows().mainScreenFrame().size.height;
    if (preferences.currentPane() != SimSystemPreferences::securityPane) {
        setColor(cr, 0.4, 0.4, 0.4);
        text(cr, frame.origin.x + 30, frame.origin.y + 80, "General settings", 14);
        return;
    }
    // The category column and the list, as the pane shows them.
    Rect list = preferences.listFrameOnScreen();
    Rect listInPicture{{list.origin.x, screenHeight - list.maxY()}, list.size};
    setColor(cr, 0.9, 0.9, 0.92);
    cairo_rectangle(cr, frame.origin.x + 12, listInPicture.origin.y - 40, 176, list.size.height + 40);
    cairo_fill(cr);
    const char* categories[] = {"Location Services", "Contacts", "Calendars", "Reminders", "Photos",
                                "Accessibility", "Full Disk Access", "Files and Folders", "Automation"};
    std::string anchor = preferences.anchor();
    std::string selected = anchor == "Privacy_AllFiles" ? "Full Disk Access"
                           : anchor == "Privacy_Accessibility" ? "Accessibility"
                           : anchor == "Privacy_Photos" ? "Photos" : "";
    double y = listInPicture.origin.y - 28;
    for (const char* category : categories) {
        listRow(cr, category, frame.origin.x + 22, y, selected == category, {{frame.origin.x + 14, y - 14}, {172, 20}});
        y += 24;
    }
    setColor(cr, 0.15, 0.15, 0.15);
    text(cr, listInPicture.origin.x, listInPicture.origin.y - 16,
         selected.empty() ? "Privacy" : "Allow the apps below to use " + selected + ":", 12);
    setColor(cr, 1, 1, 1);
    cairo_rectangle(cr, listInPicture.origin.x, listInPicture.origin.y, list.size.width, list.size.height);
    cairo_fill(cr);
    setColor(cr, 0.75, 0.75, 0.75);
    cairo_set_line_width(cr, 1);
    cairo_rectangle(cr, listInPicture.origin.x + 0.5, listInPicture.origin.y + 0.5, list.size.width - 1, list.size.height - 1);
    cairo_stroke(cr);
    double rowY = listInPicture.origin.y + 6;
    for (const auto& granted : preferences.grantedByDrop()) {
        if (granted != anchor) continue;
        drawApplicationIcon(cr, {{listInPicture.origin.x + 8, rowY}, {22, 22}}, applicationIconImageName(mac));
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, listInPicture.origin.x + 38, rowY + 16, "\xE2\x98\x91 " + mac.configuration().hostName, 12);
        rowY += 28;
    }
    if (preferences.hasLock()) {
        setColor(cr, 0.3, 0.3, 0.3);
        text(cr, frame.origin.x + 20, frame.maxY() - 14,
             preferences.isLocked() ? "Locked: click the lock to make changes." : "Unlocked: click the lock to prevent further changes.", 11);
    }
}

// A switch as System Settings draws it: a pill with a knob, blue when on.
void drawSwitch(cairo_t* cr, double x, double y, bool on) {
    if (on) setColor(cr, 0.16, 0.48, 0.98);
    else setColor(cr, 0.82, 0.82, 0.84);
    roundedRect(cr, {{x, y}, {32, 18}}, 9);
    cairo_fill(cr);
    setColor(cr, 1, 1, 1);
    cairo_arc(cr, on ? x + 23 : x + 9, y + 9, 7.5, 0, 2 * std::numbers::pi);
    cairo_fill(cr);
}

// System Settings: the sidebar with the window's buttons on the left, the
// page on the right under a toolbar with the back and forward arrows and the
// title; on a privacy sub-pane, its list with a switch per application and
// the "+" and "−" buttons under it.
void drawSystemSettings(SimulatedMac& mac, cairo_t* cr, bool active) {
    auto& settings = mac.systemPreferences();
    const Rect frame = settings.windowFrame();
    const double sidebarWidth = SimSystemPreferences::settingsSidebarWidth;
    drawShadowedPanel(cr, frame, 12, 0.98, 6, 0.25);
    setColor(cr, 0.91, 0.91, 0.93);
    roundedRect(cr, {{frame.origin.x + 6, frame.origin.y + 6}, {sidebarWidth - 12, frame.size.height - 12}}, 9);
    cairo_fill(cr);
    drawWindowButtons(cr, {frame.origin.x + 24, frame.origin.y + 24}, active);
    setColor(cr, 0.84, 0.84, 0.86);
    roundedRect(cr, {{frame.origin.x + 16, frame.origin.y + 44}, {sidebarWidth - 32, 24}}, 6);
    cairo_fill(cr);
    setColor(cr, 0.5, 0.5, 0.5);
    text(cr, frame.origin.x + 26, frame.origin.y + 60, "Search", 12);
    const bool privacy = settings.currentPane() == SimSystemPreferences::securityPane;
    const char* sidebar[] = {"Wi-Fi", "Bluetooth", "Network", "Notifications", "Sound", "Focus", "Screen Time",
                             "General", "Appearance", "Accessibility", "Control Centre", "Desktop & Dock", "Displays",
                             "Privacy & Security", "Touch ID & Password", "Users & Groups"};
    double y = frame.origin.y + 96;
    for (const char* item : sidebar) {
        if (y > frame.maxY() - 16) break;
        const bool selected = privacy ? std::string(item) == "Privacy & Security" : std::string(item) == "General";
        listRow(cr, item, frame.origin.x + 24, y, selected, {{frame.origin.x + 12, y - 15}, {sidebarWidth - 24, 22}}, 5);
        y += 26;
    }
    const double pageX = frame.origin.x + sidebarWidth;
    setColor(cr, 0.55, 0.55, 0.55);
    text(cr, pageX + 14, frame.origin.y + 30, "\xE2\x80\xB9  \xE2\x80\xBA", 16, true);
    setColor(cr, 0.1, 0.1, 0.1);
    text(cr, pageX + 60, frame.origin.y + 30, settings.windowTitle(), 14, true);
    setColor(cr, 0.88, 0.88, 0.88);
    cairo_rectangle(cr, pageX, frame.origin.y + 50, frame.size.width - sidebarWidth, 1);
    cairo_fill(cr);
    if (!privacy) {
        setColor(cr, 0.4, 0.4, 0.4);
        text(cr, pageX + 20, frame.origin.y + 90, "General settings", 14);
        return;
    }
    const double screenHeight = mac.windows().mainScreenFrame().size.height;
    const Rect list = settings.listFrameOnScreen();
    const Rect listInPicture{{list.origin.x, screenHeight - list.maxY()}, list.size};
    setColor(cr, 1, 1, 1);
    roundedRect(cr, listInPicture, 8);
    cairo_fill(cr);
    setColor(cr, 0.82, 0.82, 0.84);
    cairo_set_line_width(cr, 1);
    roundedRect(cr, listInPicture, 8);
    cairo_stroke(cr);
    if (!settings.showsSubPane()) {
        // The page: one row per privacy sub-pane.
        const char* rows[] = {"Location Services", "Contacts", "Calendars", "Reminders", "Photos", "Bluetooth",
                              "Camera", "Microphone", "Accessibility", "Input Monitoring", "Full Disk Access",
                              "Files and Folders", "Screen Recording", "Automation"};
        double rowY = listInPicture.origin.y + 22;
        for (const char* row : rows) {
            if (rowY > listInPicture.maxY() - 6) break;
            setColor(cr, 0.15, 0.15, 0.15);
            text(cr, listInPicture.origin.x + 14, rowY, row, 12);
            setColor(cr, 0.6, 0.6, 0.6);
            text(cr, listInPicture.maxX() - 20, rowY, "\xE2\x80\xBA", 14, true);
            rowY += 28;
        }
        return;
    }
    setColor(cr, 0.3, 0.3, 0.3);
    text(cr, pageX + 20, frame.origin.y + 80, "Allow the applications below to use " + settings.windowTitle() + ".", 12);
    const std::string anchor = settings.anchor();
    if (settings.listsHost(anchor)) {
        const double rowY = listInPicture.origin.y + 8;
        drawApplicationIcon(cr, {{listInPicture.origin.x + 12, rowY}, {24, 24}}, applicationIconImageName(mac));
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, listInPicture.origin.x + 46, rowY + 17, mac.configuration().hostName, 13);
        drawSwitch(cr, listInPicture.maxX() - 46, rowY + 3, settings.hostSwitchedOn(anchor));
    }
    // "+" and "−" under the list.
    const Rect plus = settings.plusButtonOnScreen();
    const Rect plusInPicture{{plus.origin.x, screenHeight - plus.maxY()}, plus.size};
    setColor(cr, 0.93, 0.93, 0.94);
    roundedRect(cr, {plusInPicture.origin, {plus.size.width * 2, plus.size.height}}, 5);
    cairo_fill(cr);
    setColor(cr, 0.2, 0.2, 0.2);
    text(cr, plusInPicture.origin.x + 7, plusInPicture.origin.y + 16, "+", 14, true);
    text(cr, plusInPicture.origin.x + 31, plusInPicture.origin.y + 16, "\xE2\x88\x92", 14, true);
    if (settings.asksForPassword()) {
        // The authorization dialog, over the page.
        const Rect dialog{{pageX + 60, frame.origin.y + 290}, {frame.size.width - sidebarWidth - 120, 150}};
        drawShadowedPanel(cr, dialog, 12, 0.97, 5, 0.3);
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, dialog.origin.x + 20, dialog.origin.y + 32, "System Settings", 13, true);
        setColor(cr, 0.25, 0.25, 0.25);
        text(cr, dialog.origin.x + 20, dialog.origin.y + 56, "Enter your password to allow this.", 12);
        setColor(cr, 1, 1, 1);
        roundedRect(cr, {{dialog.origin.x + 20, dialog.origin.y + 76}, {dialog.size.width - 40, 24}}, 5);
        cairo_fill(cr);
        setColor(cr, 0.5, 0.5, 0.5);
        text(cr, dialog.origin.x + 28, dialog.origin.y + 93, mac.configuration().userName, 12);
    }
}

}  // namespace

bool renderScreen(SimulatedMac& mac, const ScreenContents& contents, const std::string& pngPath) {
    Rect screen = mac.windows().mainScreenFrame();
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(screen.size.width),
                                                          static_cast<int>(screen.size.height));
    cairo_t* cr = cairo_create(surface);

    cairo_pattern_t* desktop = cairo_pattern_create_linear(0, 0, 0, screen.size.height);
    cairo_pattern_add_color_stop_rgb(desktop, 0, 0.20, 0.33, 0.58);
    cairo_pattern_add_color_stop_rgb(desktop, 1, 0.45, 0.30, 0.55);
    cairo_set_source(cr, desktop);
    cairo_paint(cr);
    cairo_pattern_destroy(desktop);

    auto front = mac.workspace().front();
    setColor(cr, 1, 1, 1, 0.8);
    cairo_rectangle(cr, 0, 0, screen.size.width, 24);
    cairo_fill(cr);
    setColor(cr, 0.1, 0.1, 0.1);
    text(cr, 16, 17, front ? front->localizedName() : std::string(), 13, true);
    char clock[32];
    std::snprintf(clock, sizeof clock, "t = %.1f s", mac.now());
    text(cr, screen.size.width - 110, 17, clock, 12);

    // The ordinary windows as the window server stacks them, back to front.
    const auto stack = mac.windows().windows();
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if (it->layer != 0) continue;
        const bool active = front && front->processIdentifier() == it->ownerPID;
        if (it->number == SimWindows::hostWindowNumber) drawHostWindow(mac, cr, contents.permissionList, active);
        else if (it->number == SimWindows::preferencesWindowNumber && mac.systemPreferences().isSystemSettings())
            drawSystemSettings(mac, cr, active);
        else if (it->number == SimWindows::preferencesWindowNumber) drawSystemPreferences(mac, cr, active);
        else if (!drawReopenSheet(mac, cr, it->bounds)) drawWindow(cr, it->bounds, it->title.value_or(std::string()), active);
    }
    if (contents.overlay) {
        if (auto* window = simOverlayWindow(*contents.overlay); window && window->isVisible()) {
            Rect f = window->displayedFrame();
            renderOverlay(cr, *window, *contents.overlay, {f.origin.x, screen.size.height - f.maxY()});
        }
    }
    renderDraggedImage(cr, mac.dragging(), screen.size.height);

    cairo_destroy(cr);
    bool written = cairo_surface_write_to_png(surface, pngPath.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return written;
}

}  // namespace vantro::sim
