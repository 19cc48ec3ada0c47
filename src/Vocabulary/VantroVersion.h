#pragma once

// Vantro's release number, reported by the framework to its hosts.
namespace vantro {
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionPatch = 0;
inline constexpr const char* kVersionString = "1.0.0";
}  // namespace vantro
