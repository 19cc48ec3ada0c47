#include "Simulator/MacRelease.h"

namespace vantro::sim {

const std::vector<MacRelease>& MacRelease::all() {
    // Fractions are those running systems report where known (10.13.6 1561.60,
    // 10.14.3 1671.20, 10.15.5 1894.50, 12.4 2113.50, 15.2 2575.30, 26.3
    // 2685.40); the others are plausible point-release values of the same
    // whole part. 27's number (about 2775 at release) and name are not
    // confirmed: its whole part is the one reported for the release, its
    // fraction that of a first point release.
    static const std::vector<MacRelease> releases = {
        {"10.9", "Mavericks", 1265.21, {10, 9, 5}},
        {"10.10", "Yosemite", 1348.17, {10, 10, 5}},
        {"10.11", "El Capitan", 1404.47, {10, 11, 6}},
        {"10.12", "Sierra", 1504.83, {10, 12, 6}},
        {"10.13", "High Sierra", 1561.60, {10, 13, 6}},
        {"10.14", "Mojave", 1671.20, {10, 14, 3}},
        {"10.15", "Catalina", 1894.50, {10, 15, 5}},
        {"11", "Big Sur", 2022.50, {11, 6, 0}},
        {"12", "Monterey", 2113.50, {12, 4, 0}},
        {"13", "Ventura", 2299.70, {13, 6, 0}},
        {"14", "Sonoma", 2487.20, {14, 1, 0}},
        {"15", "Sequoia", 2575.30, {15, 2, 0}},
        {"26", "Tahoe", 2685.40, {26, 3, 0}},
        {"27", "", 2775.10, {27, 0, 1}},
    };
    return releases;
}

std::optional<MacRelease> MacRelease::named(std::string_view name) {
    for (const auto& r : all())
        if (r.name == name) return r;
    return std::nullopt;
}

}  // namespace vantro::sim
