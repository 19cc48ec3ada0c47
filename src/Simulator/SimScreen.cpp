#include "Simulator/SimScreen.h"

#include <algorithm>
#include <cstdio>
#include <numbers>

#include "Guide/Vantro.h"
#include "Simulator/SimCanvas.h"
#include "Simulator/SimOverlay.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimReopenSheet.h"
#include "Simulator/SimScreenTexts.h"
#include "Simulator/SimText.h"
#include "Simulator/SimulatedMac.h"

namespace vantro::sim {

namespace {

// Picture coordinates: origin top left, y downwards, like the window list.
constexpr Rect hostWindow = SimWindows::hostWindowFrame;
constexpr double titleBarHeight = 28;
constexpr double pi = std::numbers::pi;

void roundedRect(cairo_t* cr, const Rect& r, double radius) {
    double x = r.origin.x, y = r.origin.y, w = r.size.width, h = r.size.height;
    if (radius <= 0) {
        cairo_rectangle(cr, x, y, w, h);
        return;
    }
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - radius, y + radius, radius, -pi / 2, 0);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, pi / 2);
    cairo_arc(cr, x + radius, y + h - radius, radius, pi / 2, pi);
    cairo_arc(cr, x + radius, y + radius, radius, pi, 3 * pi / 2);
    cairo_close_path(cr);
}

void fillRounded(cairo_t* cr, const Rect& r, double radius) {
    roundedRect(cr, r, radius);
    cairo_fill(cr);
}

void setColor(cairo_t* cr, double r, double g, double b, double a = 1) { cairo_set_source_rgba(cr, r, g, b, a); }

void text(cairo_t* cr, double x, double y, const std::string& s, double size, bool bold = false) {
    showText(cr, {x, y}, s, size, bold);
}

double textWidth(cairo_t* cr, const std::string& s, double size, bool bold = false) {
    selectFont(cr, s, size, bold);
    return textAdvance(cr, s);
}

// A screen rectangle (origin bottom left) in picture coordinates.
Rect inPicture(SimulatedMac& mac, const Rect& onScreen) {
    const double screenHeight = mac.windows().mainScreenFrame().size.height;
    return {{onScreen.origin.x, screenHeight - onScreen.maxY()}, onScreen.size};
}

// What the screen is drawn for: the Mac, its language and its settings'
// generation.
struct Scene {
    SimulatedMac& mac;
    std::string language;
    SettingsFamily family;
    const SettingsLook& look;
    int major;

    std::string tr(std::string_view english) const { return screenText(english, language); }
    std::string categoryName(const std::string& anchor) const {
        return SimSystemPreferences::settingsSubPaneTitle(language, anchor, major).value_or(anchor);
    }
};

// A category's icon: a rounded square of its colour with a white mark.
void categoryIcon(cairo_t* cr, const Rect& r, const CategoryEntry& entry) {
    setColor(cr, entry.red, entry.green, entry.blue);
    fillRounded(cr, r, r.size.width / 4);
    setColor(cr, 1, 1, 1, 0.9);
    cairo_arc(cr, r.origin.x + r.size.width / 2, r.origin.y + r.size.height / 2, r.size.width / 5, 0, 2 * pi);
    cairo_fill(cr);
}

// One row of a list or sidebar: its label dark, or white on a blue highlight
// when selected.
void listRow(cairo_t* cr, const std::string& label, double textX, double y, bool selected, const Rect& highlight,
             double radius) {
    if (selected) {
        setColor(cr, 0.16, 0.48, 0.98);
        fillRounded(cr, highlight, radius);
        setColor(cr, 1, 1, 1);
    } else {
        setColor(cr, 0.15, 0.15, 0.15);
    }
    text(cr, textX, y, label, 12);
}

// The close, minimise and zoom buttons, the first centred on `first`; faded
// in a window that is not active.
void drawWindowButtons(cairo_t* cr, Point first, bool active) {
    const double buttons[3][3] = {{1, 0.37, 0.34}, {1, 0.74, 0.18}, {0.16, 0.79, 0.25}};
    for (int i = 0; i < 3; ++i) {
        setColor(cr, buttons[i][0], buttons[i][1], buttons[i][2], active ? 1 : 0.35);
        cairo_arc(cr, first.x + 20 * i, first.y, 6, 0, 2 * pi);
        cairo_fill(cr);
    }
}

// A rounded panel of grey `face` over its shadow, which falls `drop` points
// below it and 2 to the right.
void drawShadowedPanel(cairo_t* cr, const Rect& frame, double radius, double face, double drop, double shadowAlpha) {
    setColor(cr, 0, 0, 0, shadowAlpha);
    fillRounded(cr, {{frame.origin.x + 2, frame.origin.y + drop}, frame.size}, radius);
    setColor(cr, face, face, face);
    fillRounded(cr, frame, radius);
}

// A window with a shadow, a title bar with its three buttons and a title.
void drawWindow(cairo_t* cr, const Rect& frame, const std::string& title, bool active, double radius = 10) {
    drawShadowedPanel(cr, frame, radius, 0.96, 6, 0.25);
    const double bar = active ? 0.88 : 0.93;
    cairo_save(cr);
    roundedRect(cr, frame, radius);
    cairo_clip(cr);
    setColor(cr, bar, bar, bar);
    cairo_rectangle(cr, frame.origin.x, frame.origin.y, frame.size.width, titleBarHeight);
    cairo_fill(cr);
    cairo_restore(cr);
    drawWindowButtons(cr, {frame.origin.x + 16, frame.origin.y + 14}, active);
    setColor(cr, 0.2, 0.2, 0.2);
    const double width = textWidth(cr, title, 13, true);
    text(cr, frame.origin.x + (frame.size.width - width) / 2, frame.origin.y + 19, title, 13, true);
}

// A push button with its title centred; the default button blue.
void drawButton(cairo_t* cr, const Rect& r, const std::string& title, bool isDefault) {
    if (isDefault) setColor(cr, 0.16, 0.48, 0.98);
    else setColor(cr, 1, 1, 1);
    fillRounded(cr, r, 6);
    if (!isDefault) {
        setColor(cr, 0.78, 0.78, 0.8);
        cairo_set_line_width(cr, 1);
        roundedRect(cr, r, 6);
        cairo_stroke(cr);
    }
    const double width = textWidth(cr, title, 12);
    if (isDefault) setColor(cr, 1, 1, 1);
    else setColor(cr, 0.1, 0.1, 0.1);
    text(cr, r.origin.x + (r.size.width - width) / 2, r.origin.y + r.size.height / 2 + 4, title, 12);
}

// A padlock, closed or open, its body's top-left corner at `at`.
void drawPadlock(cairo_t* cr, Point at, bool locked) {
    setColor(cr, 0.45, 0.45, 0.47);
    cairo_set_line_width(cr, 2);
    cairo_new_path(cr);
    const double cx = locked ? at.x + 7 : at.x + 12;
    cairo_arc(cr, cx, at.y - 1, 4.5, pi, 2 * pi);
    cairo_stroke(cr);
    fillRounded(cr, {at, {14, 11}}, 2);
}

// The administrator's password dialog: what asks, the user name and
// password fields, Cancel and the button that goes ahead.
void drawPasswordDialog(const Scene& scene, cairo_t* cr, const Rect& dialog, const std::string& asking,
                        const std::string& goAhead) {
    drawShadowedPanel(cr, dialog, scene.look.windowRadius, 0.97, 5, 0.3);
    drawPadlock(cr, {dialog.origin.x + 24, dialog.origin.y + 30}, true);
    const double textX = dialog.origin.x + 56;
    const double textWidthAvailable = dialog.maxX() - 20 - textX;
    const int lines = drawWrappedText(cr, {{textX, dialog.origin.y + 16}, {textWidthAvailable, 36}}, asking, 12, true,
                                      {0.1, 0.1, 0.1, 1});
    drawWrappedText(cr, {{textX, dialog.origin.y + 18 + 16 * lines}, {textWidthAvailable, 20}},
                    scene.tr("Enter your password to allow this."), 11, false, {0.25, 0.25, 0.25, 1});
    const std::string labels[2] = {scene.tr("User Name:"), scene.tr("Password:")};
    const double fieldX = textX + std::max(textWidth(cr, labels[0], 12), textWidth(cr, labels[1], 12)) + 10;
    double y = dialog.origin.y + 78;
    const std::string values[2] = {scene.mac.configuration().userName, ""};
    for (int i = 0; i < 2; ++i) {
        setColor(cr, 0.2, 0.2, 0.2);
        text(cr, textX, y + 16, labels[i], 12);
        setColor(cr, 1, 1, 1);
        fillRounded(cr, {{fieldX, y}, {dialog.maxX() - 20 - fieldX, 22}}, 4);
        setColor(cr, 0.1, 0.1, 0.1);
        if (!values[i].empty()) text(cr, fieldX + 6, y + 16, values[i], 12);
        y += 30;
    }
    // The buttons at the bottom right, each as wide as its title needs.
    const std::string cancel = scene.tr("Cancel");
    const double goAheadWidth = std::max(110.0, textWidth(cr, goAhead, 12) + 28);
    const double cancelWidth = std::max(90.0, textWidth(cr, cancel, 12) + 28);
    const Rect goAheadButton{{dialog.maxX() - 20 - goAheadWidth, dialog.maxY() - 38}, {goAheadWidth, 24}};
    drawButton(cr, goAheadButton, goAhead, true);
    drawButton(cr, {{goAheadButton.origin.x - 10 - cancelWidth, goAheadButton.origin.y}, {cancelWidth, 24}}, cancel, false);
}

void drawHostWindow(const Scene& scene, cairo_t* cr, const SimPermissionList* list, bool active) {
    drawWindow(cr, hostWindow, scene.mac.configuration().hostName, active);
    if (!list) return;
    double y = hostWindow.origin.y + titleBarHeight + 24;
    setColor(cr, 0.1, 0.1, 0.1);
    text(cr, hostWindow.origin.x + 20, y, scene.tr("Permissions"), 15, true);
    y += 16;
    for (const auto& row : list->rows()) {
        setColor(cr, 1, 1, 1);
        fillRounded(cr, {{hostWindow.origin.x + 16, y}, {hostWindow.size.width - 32, 52}}, 6);
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, hostWindow.origin.x + 28, y + 21, row.label, 13, true);
        setColor(cr, 0.45, 0.45, 0.45);
        if (!row.reason.empty()) text(cr, hostWindow.origin.x + 28, y + 39, row.reason, 11);
        Rect button{{hostWindow.maxX() - 190, y + 13}, {160, 26}};
        setColor(cr, row.buttonEnabled ? 0.16 : 0.85, row.buttonEnabled ? 0.48 : 0.85, row.buttonEnabled ? 0.98 : 0.85);
        fillRounded(cr, button, 6);
        if (row.buttonEnabled) setColor(cr, 1, 1, 1);
        else setColor(cr, 0.5, 0.5, 0.5);
        text(cr, button.origin.x + 12, button.origin.y + 18, row.buttonTitle, 12);
        y += 60;
    }
}

// The privacy list's frame, white with a thin border.
void drawListBox(cairo_t* cr, const Rect& list, double radius) {
    setColor(cr, 1, 1, 1);
    fillRounded(cr, list, radius);
    setColor(cr, 0.78, 0.78, 0.8);
    cairo_set_line_width(cr, 1);
    roundedRect(cr, {{list.origin.x + 0.5, list.origin.y + 0.5}, {list.size.width - 1, list.size.height - 1}}, radius);
    cairo_stroke(cr);
}

// "+" and "−" under a list that takes applications.
void drawPlusMinus(cairo_t* cr, const Rect& plus, double radius) {
    setColor(cr, 0.93, 0.93, 0.94);
    fillRounded(cr, {plus.origin, {plus.size.width * 2, plus.size.height}}, radius);
    setColor(cr, 0.2, 0.2, 0.2);
    text(cr, plus.origin.x + 7, plus.origin.y + 16, "+", 14, true);
    text(cr, plus.origin.x + 31, plus.origin.y + 16, "\xE2\x88\x92", 14, true);
}

// System Preferences' title bar beyond the title: back and forward, the
// "show all" grid and the search field.
void drawPreferencesToolbar(const Scene& scene, cairo_t* cr, const Rect& frame) {
    setColor(cr, 0.5, 0.5, 0.5);
    text(cr, frame.origin.x + 82, frame.origin.y + 20, "\xE2\x80\xB9  \xE2\x80\xBA", 15, true);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            fillRounded(cr, {{frame.origin.x + 116 + column * 4.5, frame.origin.y + 8 + row * 4.5}, {3, 3}}, 0);
    const Rect search{{frame.maxX() - 168, frame.origin.y + 5}, {156, 19}};
    setColor(cr, 1, 1, 1);
    fillRounded(cr, search, scene.family == SettingsFamily::Mojave ? 4 : 6);
    setColor(cr, 0.55, 0.55, 0.55);
    text(cr, search.origin.x + 10, search.origin.y + 14, scene.tr("Search"), 11);
}

// System Preferences up to 12: the Security & Privacy pane with its tabs at
// the top, the Privacy tab's category column on the left, the category's list
// on the right with "+" and "−" under it where the list takes applications,
// and the padlock with its text at the bottom left.
void drawSystemPreferences(const Scene& scene, cairo_t* cr, bool active) {
    auto& preferences = scene.mac.systemPreferences();
    const Rect frame = preferences.windowFrame();
    std::string title = preferences.windowTitle();
    if (preferences.currentPane() != SimSystemPreferences::securityPane) title = scene.tr(title);
    drawWindow(cr, frame, title, active, scene.look.windowRadius);
    drawPreferencesToolbar(scene, cr, frame);
    if (preferences.currentPane() != SimSystemPreferences::securityPane) {
        setColor(cr, 0.4, 0.4, 0.4);
        text(cr, frame.origin.x + 30, frame.origin.y + 80, scene.tr("General settings"), 14);
        return;
    }
    // The tabs, the last one shown.
    const std::string tabs[] = {scene.tr("General"), scene.tr("FileVault"), scene.tr("Firewall"), scene.tr("Privacy")};
    double tabsWidth = 0;
    double widths[4];
    for (int i = 0; i < 4; ++i) tabsWidth += widths[i] = textWidth(cr, tabs[i], 12) + 28;
    double x = frame.origin.x + (frame.size.width - tabsWidth) / 2;
    const double tabsY = frame.origin.y + titleBarHeight + 12;
    setColor(cr, 1, 1, 1);
    fillRounded(cr, {{x, tabsY}, {tabsWidth, 22}}, 5);
    for (int i = 0; i < 4; ++i) {
        const bool shown = i == 3;
        if (shown) {
            setColor(cr, 0.16, 0.48, 0.98);
            fillRounded(cr, {{x, tabsY}, {widths[i], 22}}, 5);
            setColor(cr, 1, 1, 1);
        } else {
            setColor(cr, 0.15, 0.15, 0.15);
        }
        text(cr, x + 14, tabsY + 16, tabs[i], 12);
        x += widths[i];
    }

    const Rect list = inPicture(scene.mac, preferences.listFrameOnScreen());
    const std::string anchor = preferences.anchor();
    // The category column, from under the tabs to the list's bottom.
    const Rect column{{frame.origin.x + 20, tabsY + 36}, {list.origin.x - frame.origin.x - 32, list.maxY() - tabsY - 36}};
    drawListBox(cr, column, 0);
    cairo_save(cr);
    cairo_rectangle(cr, column.origin.x, column.origin.y, column.size.width - 1, column.size.height);
    cairo_clip(cr);
    const CategoryEntry* selected = nullptr;
    double y = column.origin.y + 4;
    for (const auto& entry : preferencesPrivacyColumn(scene.family)) {
        if (y + scene.look.rowPitch > column.maxY()) break;
        const bool isSelected = anchor == entry.anchor || (anchor == "Privacy_Assistive" && std::string(entry.anchor) == "Privacy_Accessibility");
        if (isSelected) selected = &entry;
        listRow(cr, scene.categoryName(entry.anchor), column.origin.x + 32, y + scene.look.rowPitch / 2 + 4, isSelected,
                {{column.origin.x + 2, y}, {column.size.width - 4, scene.look.rowPitch - 2}}, scene.look.selectionRadius);
        categoryIcon(cr, {{column.origin.x + 8, y + (scene.look.rowPitch - 2) / 2 - 9}, {18, 18}}, entry);
        y += scene.look.rowPitch;
    }
    cairo_restore(cr);
    // Above the list: the category's icon and name, and the list's caption.
    if (selected) {
        categoryIcon(cr, {{list.origin.x, list.origin.y - 96}, {40, 40}}, *selected);
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, list.origin.x + 52, list.origin.y - 70, scene.categoryName(selected->anchor), 15, true);
        setColor(cr, 0.15, 0.15, 0.15);
        std::string caption = scene.tr("Allow the apps below to use %@.");
        caption.replace(caption.find("%@"), 2, scene.categoryName(selected->anchor));
        drawWrappedText(cr, {{list.origin.x, list.origin.y - 46}, {list.size.width, 40}}, caption, 12, false, {0.15, 0.15, 0.15, 1});
    }
    drawListBox(cr, list, 0);
    double rowY = list.origin.y + 6;
    for (const auto& granted : preferences.grantedByDrop()) {
        if (granted != anchor) continue;
        drawApplicationIcon(cr, {{list.origin.x + 30, rowY}, {22, 22}}, applicationIconImageName(scene.mac));
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, list.origin.x + 8, rowY + 16, "\xE2\x98\x91", 13);
        text(cr, list.origin.x + 60, rowY + 16, scene.mac.configuration().hostName, 12);
        rowY += 28;
    }
    if (SimSystemPreferences::listTakesApplications(anchor))
        drawPlusMinus(cr, {{list.origin.x, list.maxY()}, {24, 20}}, 0);
    // The padlock and its text at the bottom left, "Advanced…" at the right.
    drawPadlock(cr, {frame.origin.x + 20, frame.maxY() - 20}, preferences.isLocked());
    setColor(cr, 0.3, 0.3, 0.3);
    text(cr, frame.origin.x + 42, frame.maxY() - 9,
         scene.tr(preferences.isLocked() ? "Click the lock to make changes." : "Click the lock to prevent further changes."), 11);
    const std::string advanced = scene.tr("Advanced…");
    const double advancedWidth = std::max(96.0, textWidth(cr, advanced, 12) + 24);
    drawButton(cr, {{frame.maxX() - 14 - advancedWidth, frame.maxY() - 30}, {advancedWidth, 22}}, advanced, false);
    if (preferences.asksForPassword())
        drawPasswordDialog(scene, cr, {{frame.origin.x + (frame.size.width - 420) / 2, frame.origin.y + 150}, {420, 190}},
                           scene.tr("System Preferences is trying to unlock Security & Privacy preferences."), scene.tr("Unlock"));
}

// A switch as System Settings draws it: a pill with a knob, blue when on.
void drawSwitch(cairo_t* cr, double x, double y, bool on) {
    if (on) setColor(cr, 0.16, 0.48, 0.98);
    else setColor(cr, 0.82, 0.82, 0.84);
    fillRounded(cr, {{x, y}, {32, 18}}, 9);
    setColor(cr, 1, 1, 1);
    cairo_arc(cr, on ? x + 23 : x + 9, y + 9, 7.5, 0, 2 * pi);
    cairo_fill(cr);
}

// System Settings: the sidebar with the window's buttons on the left, the
// page on the right under a toolbar with the back and forward arrows and the
// title; on a privacy sub-pane, its list with a switch per application and
// the "+" and "−" buttons under it. The redesign of 26 rounds the window
// more and lets the desktop show through its sidebar.
void drawSystemSettings(const Scene& scene, cairo_t* cr, bool active) {
    auto& settings = scene.mac.systemPreferences();
    const Rect frame = settings.windowFrame();
    const double sidebarWidth = SimSystemPreferences::settingsSidebarWidth;
    const double radius = scene.look.windowRadius;
    const Rect sidebar{{frame.origin.x + 6, frame.origin.y + 6}, {sidebarWidth - 12, frame.size.height - 12}};
    setColor(cr, 0, 0, 0, 0.25);
    fillRounded(cr, {{frame.origin.x + 2, frame.origin.y + 6}, frame.size}, radius);
    if (scene.look.sidebarTranslucency > 0) {
        // The window's face around the sidebar, which is tinted glass: the
        // window's shadow is not seen through it.
        cairo_save(cr);
        roundedRect(cr, frame, radius);
        cairo_clip(cr);
        cairo_pattern_t* desktop = cairo_pattern_create_linear(0, 0, 0, scene.mac.windows().mainScreenFrame().size.height);
        cairo_pattern_add_color_stop_rgb(desktop, 0, 0.20, 0.33, 0.58);
        cairo_pattern_add_color_stop_rgb(desktop, 1, 0.45, 0.30, 0.55);
        cairo_set_source(cr, desktop);
        roundedRect(cr, sidebar, radius - 6);
        cairo_fill(cr);
        cairo_pattern_destroy(desktop);
        cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
        roundedRect(cr, frame, radius);
        roundedRect(cr, sidebar, radius - 6);
        setColor(cr, 0.98, 0.98, 0.98);
        cairo_fill(cr);
        cairo_restore(cr);
        setColor(cr, 0.95, 0.95, 0.97, 1 - scene.look.sidebarTranslucency);
        fillRounded(cr, sidebar, radius - 6);
    } else {
        setColor(cr, 0.98, 0.98, 0.98);
        fillRounded(cr, frame, radius);
        setColor(cr, 0.91, 0.91, 0.93);
        fillRounded(cr, sidebar, 9);
    }
    drawWindowButtons(cr, {frame.origin.x + 24, frame.origin.y + 24}, active);
    setColor(cr, 0.84, 0.84, 0.86, scene.look.sidebarTranslucency > 0 ? 0.7 : 1);
    fillRounded(cr, {{frame.origin.x + 16, frame.origin.y + 44}, {sidebarWidth - 32, 24}}, scene.look.selectionRadius + 1);
    setColor(cr, 0.45, 0.45, 0.45);
    text(cr, frame.origin.x + 26, frame.origin.y + 60, scene.tr("Search"), 12);
    const bool privacy = settings.currentPane() == SimSystemPreferences::securityPane;
    const double pitch = scene.look.rowPitch;
    cairo_save(cr);
    cairo_rectangle(cr, sidebar.origin.x, sidebar.origin.y, sidebar.size.width - 2, sidebar.size.height);
    cairo_clip(cr);
    double y = frame.origin.y + 96;
    for (const char* item : settingsSidebar(scene.family)) {
        if (y > frame.maxY() - 16) break;
        const std::string english = item;
        const bool isPrivacy = english == "Privacy & Security";
        const bool selected = privacy ? isPrivacy : english == "General";
        const std::string label = isPrivacy ? SimSystemPreferences::securityPaneName(scene.language, scene.major) : scene.tr(english);
        listRow(cr, label, frame.origin.x + 46, y, selected, {{frame.origin.x + 12, y - 16}, {sidebarWidth - 24, pitch - 2}},
                scene.look.selectionRadius);
        categoryIcon(cr, {{frame.origin.x + 20, y - 14}, {18, 18}}, {item, 0.55, 0.55, 0.6});
        y += pitch;
    }
    cairo_restore(cr);
    const double pageX = frame.origin.x + sidebarWidth;
    setColor(cr, 0.55, 0.55, 0.55);
    text(cr, pageX + 14, frame.origin.y + 30, "\xE2\x80\xB9  \xE2\x80\xBA", 16, true);
    setColor(cr, 0.1, 0.1, 0.1);
    text(cr, pageX + 60, frame.origin.y + 30, settings.windowTitle(), 14, true);
    setColor(cr, 0.88, 0.88, 0.88);
    cairo_rectangle(cr, pageX, frame.origin.y + 50, frame.size.width - sidebarWidth - 6, 1);
    cairo_fill(cr);
    if (!privacy) {
        setColor(cr, 0.4, 0.4, 0.4);
        text(cr, pageX + 20, frame.origin.y + 90, scene.tr("General settings"), 14);
        return;
    }
    const Rect list = inPicture(scene.mac, settings.listFrameOnScreen());
    const double listRadius = scene.look.selectionRadius + 3;
    drawListBox(cr, list, listRadius);
    if (!settings.showsSubPane()) {
        // The page: one row per privacy sub-pane.
        double rowY = list.origin.y + 6;
        for (const auto& entry : settingsPrivacyRows()) {
            if (rowY + 24 > list.maxY() - 4) break;
            categoryIcon(cr, {{list.origin.x + 12, rowY + 2}, {20, 20}}, entry);
            setColor(cr, 0.15, 0.15, 0.15);
            text(cr, list.origin.x + 42, rowY + 17, scene.categoryName(entry.anchor), 12);
            setColor(cr, 0.6, 0.6, 0.6);
            text(cr, list.maxX() - 20, rowY + 17, "\xE2\x80\xBA", 14, true);
            rowY += 28;
        }
        return;
    }
    const std::string anchor = settings.anchor();
    std::string caption = scene.tr("Allow the apps below to use %@.");
    caption.replace(caption.find("%@"), 2, settings.windowTitle());
    drawWrappedText(cr, {{pageX + 18, frame.origin.y + 66}, {list.size.width, 36}}, caption, 12, false, {0.3, 0.3, 0.3, 1});
    if (settings.listsHost(anchor)) {
        const double rowY = list.origin.y + 8;
        drawApplicationIcon(cr, {{list.origin.x + 12, rowY}, {24, 24}}, applicationIconImageName(scene.mac));
        setColor(cr, 0.1, 0.1, 0.1);
        text(cr, list.origin.x + 46, rowY + 17, scene.mac.configuration().hostName, 13);
        drawSwitch(cr, list.maxX() - 46, rowY + 3, settings.hostSwitchedOn(anchor));
    }
    if (SimSystemPreferences::listTakesApplications(anchor))
        drawPlusMinus(cr, inPicture(scene.mac, settings.plusButtonOnScreen()), 5);
    if (settings.asksForPassword())
        drawPasswordDialog(scene, cr, {{pageX + 40, frame.origin.y + 270}, {frame.size.width - sidebarWidth - 80, 190}},
                           scene.tr("System Settings is trying to modify your system settings."), scene.tr("Modify Settings"));
}

void drawMenuBar(const Scene& scene, cairo_t* cr, const Rect& screen) {
    auto front = scene.mac.workspace().front();
    setColor(cr, 1, 1, 1, 0.8);
    cairo_rectangle(cr, 0, 0, screen.size.width, 24);
    cairo_fill(cr);
    setColor(cr, 0.1, 0.1, 0.1);
    double x = 16;
    if (front) {
        // The settings application's name is the system's, in its language.
        const std::string name = scene.tr(front->localizedName());
        text(cr, x, 17, name, 13, true);
        x += textWidth(cr, name, 13, true) + 20;
        for (const char* menu : {"Edit", "View", "Window", "Help"}) {
            const std::string title = scene.tr(menu);
            text(cr, x, 17, title, 13);
            x += textWidth(cr, title, 13) + 18;
        }
    }
    char clock[32];
    std::snprintf(clock, sizeof clock, "t = %.1f s", scene.mac.now());
    text(cr, screen.size.width - 110, 17, clock, 12);
}

}  // namespace

const VantroWindowController* ScreenContents::overlayController() const {
    if (overlay) return overlay;
    return guide ? guide->windowController().get() : nullptr;
}

cairo_surface_t* drawScreen(SimulatedMac& mac, const ScreenContents& contents) {
    const Rect screen = mac.windows().mainScreenFrame();
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(screen.size.width),
                                                          static_cast<int>(screen.size.height));
    cairo_t* cr = cairo_create(surface);
    const auto& version = mac.release().systemVersion;
    const SettingsFamily family = settingsFamily(version.majorVersion, version.minorVersion);
    const Scene scene{mac, screenLanguage(mac), family, settingsLook(family), version.majorVersion};

    cairo_pattern_t* desktop = cairo_pattern_create_linear(0, 0, 0, screen.size.height);
    cairo_pattern_add_color_stop_rgb(desktop, 0, 0.20, 0.33, 0.58);
    cairo_pattern_add_color_stop_rgb(desktop, 1, 0.45, 0.30, 0.55);
    cairo_set_source(cr, desktop);
    cairo_paint(cr);
    cairo_pattern_destroy(desktop);
    drawMenuBar(scene, cr, screen);

    // The ordinary windows as the window server stacks them, back to front.
    auto front = mac.workspace().front();
    const auto stack = mac.windows().windows();
    for (auto it = stack.rbegin(); it != stack.rend(); ++it) {
        if (it->layer != 0) continue;
        const bool active = front && front->processIdentifier() == it->ownerPID;
        if (it->number == SimWindows::hostWindowNumber) drawHostWindow(scene, cr, contents.permissionList, active);
        else if (it->number == SimWindows::preferencesWindowNumber && mac.systemPreferences().isSystemSettings())
            drawSystemSettings(scene, cr, active);
        else if (it->number == SimWindows::preferencesWindowNumber) drawSystemPreferences(scene, cr, active);
        else if (!drawReopenSheet(mac, cr, it->bounds)) drawWindow(cr, it->bounds, it->title.value_or(std::string()), active);
    }
    if (const auto* controller = contents.overlayController()) {
        if (auto* window = simOverlayWindow(*controller); window && window->isVisible()) {
            Rect f = window->displayedFrame();
            renderOverlay(cr, *window, *controller, {f.origin.x, screen.size.height - f.maxY()});
        }
    }
    renderDraggedImage(cr, mac.dragging(), screen.size.height);
    cairo_destroy(cr);
    return surface;
}

bool renderScreen(SimulatedMac& mac, const ScreenContents& contents, const std::string& pngPath) {
    cairo_surface_t* surface = drawScreen(mac, contents);
    bool written = cairo_surface_write_to_png(surface, pngPath.c_str()) == CAIRO_STATUS_SUCCESS;
    cairo_surface_destroy(surface);
    return written;
}

}  // namespace vantro::sim
