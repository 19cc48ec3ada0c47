#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Value.h"

namespace vantro::sim {

// Reads property lists with libplist (XML and binary), and falls back to the
// strings format that dictionaryWithContentsOfFile: also accepts. A list
// nested more than 512 levels deep, or with a NUL character in a string or
// key, is not read (nullopt).
class PropertyListFile {
public:
    static std::optional<Value> parse(std::string_view bytes);
    static std::optional<Value> read(const std::string& path);
    // Writes an XML property list, for the simulated Mac's own files.
    static bool writeXML(const std::string& path, const Value& value);
};

}  // namespace vantro::sim
