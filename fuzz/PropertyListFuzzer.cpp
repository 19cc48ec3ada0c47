// The property-list reader on any bytes (XML, binary, or the strings form),
// and every value of what it reads asked for as each type the framework
// asks for.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Simulator/PropertyListFile.h"

namespace {

void visit(const vantro::Value& value) {
    (void)value.integerValue();
    (void)value.doubleValue();
    (void)value.boolValue();
    (void)value.string();
    if (auto* array = value.array())
        for (const auto& element : *array) visit(element);
    if (auto* dictionary = value.dictionary()) {
        for (const auto& [key, element] : *dictionary) {
            visit(element);
            (void)value.findKeyPath(key);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto value = vantro::sim::PropertyListFile::parse(std::string_view(reinterpret_cast<const char*>(data), size));
    if (value) {
        visit(*value);
        (void)value->description();
    }
    return 0;
}
