#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vantro::sim {

class SimulatedMac;

// The simulated Mac's own words and lists, as its screen shows them: what
// System Preferences and System Settings call things in each language the
// simulated system is drawn in, their lists of categories and settings, and
// the look of each generation of the settings application. These are the
// simulated system's texts, not Vantro's (Vantro's are its Resources).

// The languages the simulated system draws its screen in; any other
// preference is drawn in English, as a Mac does for a language it lacks.
const std::vector<std::string>& screenLanguages();
// The language the screen is drawn in for the Mac's preferred languages.
std::string screenLanguage(SimulatedMac& mac);

// The simulated system's text `english` in `language` ("de", "fr", "ja";
// English otherwise). A text the table lacks is answered unchanged.
std::string screenText(std::string_view english, std::string_view language);
// Every English text of the table, with its translation in `language`.
struct ScreenTextPair {
    std::string english;
    std::string translated;
};
std::vector<ScreenTextPair> screenTextPairs(std::string_view language);

// The generations of the settings application, each drawn its own way.
enum class SettingsFamily {
    Mojave,          // System Preferences up to 10.14: no Files and Folders
    Catalina,        // System Preferences 10.15 to 12
    Ventura,         // System Settings 13 to 15
    Tahoe,           // System Settings 26 and later: the redesign
};
SettingsFamily settingsFamily(int majorVersion, int minorVersion);

// How a generation draws its window.
struct SettingsLook {
    double windowRadius;
    // How much of the desktop shows through the sidebar (0: opaque).
    double sidebarTranslucency;
    // The corner radius of a selected row's highlight (0: square).
    double selectionRadius;
    double rowPitch;
};
const SettingsLook& settingsLook(SettingsFamily family);

// A privacy category as the settings list it, with its icon's colour.
struct CategoryEntry {
    const char* anchor;
    double red, green, blue;
};
// System Preferences' Privacy tab column, top to bottom.
const std::vector<CategoryEntry>& preferencesPrivacyColumn(SettingsFamily family);
// System Settings' "Privacy & Security" page rows, top to bottom.
const std::vector<CategoryEntry>& settingsPrivacyRows();
// System Settings' sidebar, top to bottom, in English; "Privacy & Security"
// is the page the privacy panes are on.
const std::vector<const char*>& settingsSidebar(SettingsFamily family);

}  // namespace vantro::sim
