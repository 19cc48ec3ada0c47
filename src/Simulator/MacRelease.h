#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/System.h"

namespace vantro::sim {

// A real macOS release: the AppKit version number a running system of it
// reports (with the fraction such systems show) and its system version.
struct MacRelease {
    std::string name;  // "10.15", "13"
    std::string marketingName;
    double appKitVersionNumber = 0;
    OperatingSystemVersion systemVersion;
    // From 13 the application is called "System Settings".
    bool hasSystemSettings() const { return systemVersion.majorVersion >= 13; }
    // "macOS 14 (Sonoma)"; "macOS 27" while a release has no name here.
    std::string title() const { return "macOS " + name + (marketingName.empty() ? "" : " (" + marketingName + ")"); }

    static const std::vector<MacRelease>& all();
    // The release of that name ("10.14", "11", "15"); nullopt for an unknown one.
    static std::optional<MacRelease> named(std::string_view name);
};

}  // namespace vantro::sim
