#pragma once

#include <optional>
#include <string_view>

#include "StatusCenter/VantroPrivacy.h"

namespace vantro {

// The permission guide: leads the user to a privacy category in System
// Preferences. Main thread.
class Vantro {
public:
    // Opens System Preferences' Security & Privacy pane at the category's
    // anchor ("Privacy" for nullopt and for the folder and volume categories;
    // "Privacy_Assistive" becomes "Privacy_Accessibility" from 10.10 on).
    // A refused URL is reported through the assertion handler ("Failed to open
    // URL %@", file Vantro, line 476); if the handler returns, so does this,
    // with false.
    static bool openPrivacyPreferencesWithAnchor(std::optional<std::string_view> anchor);
};

}  // namespace vantro
