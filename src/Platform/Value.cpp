#include "Platform/Value.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <sstream>

namespace vantro {

namespace {

// Scans a leading decimal number the way NSString's integerValue and
// doubleValue do: optional white space and sign, then digits; no digits is 0.
double scanNumber(const std::string& s) {
    const char* begin = s.c_str();
    char* end = nullptr;
    double d = std::strtod(begin, &end);
    return end == begin ? 0.0 : d;
}

// A real as a 64-bit integer: truncated toward zero, clamped to the range
// (infinities included), NaN as 0 — a conversion outside the range would be
// undefined, and a file or a window description may hold any real.
std::int64_t clampedInteger(double d) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (std::isnan(d)) return 0;
    // 2^63 is exactly representable; every double below it converts.
    constexpr double twoTo63 = 9223372036854775808.0;
    if (d >= twoTo63) return Limits::max();
    if (d < -twoTo63) return Limits::min();
    return static_cast<std::int64_t>(d);
}

std::int64_t scanInteger(const std::string& s) {
    const char* begin = s.c_str();
    char* end = nullptr;
    long long i = std::strtoll(begin, &end, 10);
    return end == begin ? 0 : static_cast<std::int64_t>(i);
}

}  // namespace

// Each branch reads the alternative that type() named with std::get_if:
// std::get may throw bad_variant_access, which the system C++ library of a
// Mac offers only from 10.14, and the framework runs from 10.13.
std::int64_t Value::integerValue() const {
    switch (type()) {
    case Type::Boolean: return (*std::get_if<bool>(&storage_)) ? 1 : 0;
    case Type::Integer: return (*std::get_if<std::int64_t>(&storage_));
    case Type::Real: return clampedInteger(*std::get_if<double>(&storage_));
    case Type::String: return scanInteger((*std::get_if<std::string>(&storage_)));
    default: return 0;
    }
}

double Value::doubleValue() const {
    switch (type()) {
    case Type::Boolean: return (*std::get_if<bool>(&storage_)) ? 1.0 : 0.0;
    case Type::Integer: return static_cast<double>((*std::get_if<std::int64_t>(&storage_)));
    case Type::Real: return (*std::get_if<double>(&storage_));
    case Type::String: return scanNumber((*std::get_if<std::string>(&storage_)));
    default: return 0.0;
    }
}

bool Value::boolValue() const {
    if (type() == Type::String) {
        // NSString's boolValue: Y, y, T, t or a non-zero digit after white space and sign.
        const std::string& s = (*std::get_if<std::string>(&storage_));
        for (char c : s) {
            if (std::isspace(static_cast<unsigned char>(c)) || c == '+' || c == '-' || c == '0') continue;
            return c == 'Y' || c == 'y' || c == 'T' || c == 't' || (c >= '1' && c <= '9');
        }
        return false;
    }
    return doubleValue() != 0.0;
}

std::optional<std::string> Value::string() const {
    if (const auto* s = std::get_if<std::string>(&storage_)) return *s;
    return std::nullopt;
}

const Value* Value::find(std::string_view key) const {
    const auto* dict = dictionary();
    if (!dict) return nullptr;
    auto it = dict->find(key);
    return it == dict->end() ? nullptr : &it->second;
}

const Value* Value::findKeyPath(std::string_view keyPath) const {
    const Value* current = this;
    while (current) {
        auto dot = keyPath.find('.');
        if (dot == std::string_view::npos) return current->find(keyPath);
        current = current->find(keyPath.substr(0, dot));
        keyPath.remove_prefix(dot + 1);
    }
    return nullptr;
}

std::string Value::description() const {
    std::ostringstream out;
    switch (type()) {
    case Type::Null: out << "(null)"; break;
    case Type::Boolean: out << ((*std::get_if<bool>(&storage_)) ? "YES" : "NO"); break;
    case Type::Integer: out << (*std::get_if<std::int64_t>(&storage_)); break;
    case Type::Real: out << (*std::get_if<double>(&storage_)); break;
    case Type::String: out << '"' << (*std::get_if<std::string>(&storage_)) << '"'; break;
    case Type::Data: out << "<" << (*std::get_if<vantro::Data>(&storage_)).bytes.size() << " bytes>"; break;
    case Type::Array: {
        out << '(';
        bool first = true;
        for (const auto& v : (*std::get_if<Array>(&storage_))) {
            out << (first ? "" : ", ") << v.description();
            first = false;
        }
        out << ')';
        break;
    }
    case Type::Dictionary: {
        out << '{';
        bool first = true;
        for (const auto& [k, v] : (*std::get_if<Dictionary>(&storage_))) {
            out << (first ? "" : "; ") << k << " = " << v.description();
            first = false;
        }
        out << '}';
        break;
    }
    }
    return out.str();
}

}  // namespace vantro
