#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantro {

// Raw bytes of a property-list data object, kept apart from strings so that a
// value read from a preference can be told to be "data" or not.
struct Data {
    std::vector<std::uint8_t> bytes;
    bool operator==(const Data&) const = default;
};

// A property-list value: what plists, user defaults, window descriptions and
// category records hold. Copies are deep; a missing entry reads as null.
class Value {
public:
    using Array = std::vector<Value>;
    using Dictionary = std::map<std::string, Value, std::less<>>;
    enum class Type { Null, Boolean, Integer, Real, String, Data, Array, Dictionary };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool b) : storage_(b) {}
    Value(int i) : storage_(static_cast<std::int64_t>(i)) {}
    Value(long i) : storage_(static_cast<std::int64_t>(i)) {}
    Value(long long i) : storage_(static_cast<std::int64_t>(i)) {}
    Value(unsigned u) : storage_(static_cast<std::int64_t>(u)) {}
    Value(double d) : storage_(d) {}
    Value(const char* s) : storage_(std::string(s)) {}
    Value(std::string s) : storage_(std::move(s)) {}
    Value(std::string_view s) : storage_(std::string(s)) {}
    Value(vantro::Data d) : storage_(std::move(d)) {}
    Value(Array a) : storage_(std::move(a)) {}
    Value(Dictionary d) : storage_(std::move(d)) {}

    Type type() const { return static_cast<Type>(storage_.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isNumber() const { return type() == Type::Boolean || type() == Type::Integer || type() == Type::Real; }
    bool isString() const { return type() == Type::String; }
    bool isData() const { return type() == Type::Data; }
    bool isArray() const { return type() == Type::Array; }
    bool isDictionary() const { return type() == Type::Dictionary; }

    // The Foundation reading of a value as a number: numbers convert, strings
    // are scanned for a leading decimal number ("12abc" is 12, "abc" is 0), and
    // everything else, null included, is 0.
    std::int64_t integerValue() const;
    double doubleValue() const;
    bool boolValue() const;

    // The string held, or nullopt when the value is not a string.
    std::optional<std::string> string() const;
    const std::string* stringPointer() const { return std::get_if<std::string>(&storage_); }
    const vantro::Data* data() const { return std::get_if<vantro::Data>(&storage_); }
    const Array* array() const { return std::get_if<Array>(&storage_); }
    const Dictionary* dictionary() const { return std::get_if<Dictionary>(&storage_); }
    Array* array() { return std::get_if<Array>(&storage_); }
    Dictionary* dictionary() { return std::get_if<Dictionary>(&storage_); }

    // The entry under `key` of a dictionary; nullptr for a missing key or a
    // value that is not a dictionary.
    const Value* find(std::string_view key) const;
    // Follows a dotted key path ("kCGWindowBounds.Height") through nested
    // dictionaries; nullptr when any step is missing.
    const Value* findKeyPath(std::string_view keyPath) const;

    bool operator==(const Value&) const = default;

    // A compact one-line rendering, for logs, timelines and test messages.
    std::string description() const;

private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, vantro::Data, Array, Dictionary> storage_;
};

}  // namespace vantro
