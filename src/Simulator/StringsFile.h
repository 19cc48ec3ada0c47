#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Value.h"

namespace vantro::sim {

// Reads classic ".strings" files: `"key" = "value";` pairs (a bare `"key";`
// maps the key to itself), /* */ and // comments, unquoted words, the escapes
// \n \t \r \" \\ \' and \Uxxxx, in UTF-8 or UTF-16 with a byte-order mark.
// Anything malformed yields nullopt rather than a partial table.
class StringsFile {
public:
    static std::optional<Value::Dictionary> parse(std::string_view bytes);
    // Converts UTF-16 text with a byte-order mark to UTF-8; other text passes
    // through with a UTF-8 byte-order mark removed.
    static std::string toUTF8(std::string_view bytes);
};

}  // namespace vantro::sim
