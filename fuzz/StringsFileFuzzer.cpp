// The ".strings" reader on any bytes: it answers a table or nothing, and a
// table it answers holds only strings.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Simulator/StringsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto table = vantro::sim::StringsFile::parse(bytes);
    if (table) {
        for (const auto& [key, value] : *table)
            if (!value.isString()) __builtin_trap();
    }
    (void)vantro::sim::StringsFile::toUTF8(bytes);
    return 0;
}
