#include "Simulator/PropertyListFile.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "Simulator/StringsFile.h"

namespace vantro::sim {

namespace {

// Deeper nesting is refused: reading a tree into Values, and destroying
// them, recurse once per level. No property list of the system or of the
// framework comes near it; CFPropertyList's own limit is not documented.
constexpr int maximumDepth = 512;

bool withinDepth(plist_t node, int depth) {
    if (depth > maximumDepth) return false;
    switch (plist_get_node_type(node)) {
    case PLIST_ARRAY:
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i)
            if (!withinDepth(plist_array_get_item(node, i), depth + 1)) return false;
        return true;
    case PLIST_DICT: {
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        bool within = true;
        for (plist_t item = nullptr; within;) {
            // No key is read here: see holdsNul.
            plist_dict_next_item(node, it, nullptr, &item);
            if (!item) break;
            within = withinDepth(item, depth + 1);
        }
        free(it);
        return within;
    }
    default: return true;
    }
}

// Whether a string or a key of the tree holds a NUL character. libplist
// stops the process when asked for such a string's or key's text, so a tree
// with one is refused before any is read; its XML rendering carries every
// string and key whole.
bool holdsNul(plist_t root) {
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &xml, &length);
    const bool found = xml && std::memchr(xml, '\0', length) != nullptr;
    if (xml) plist_to_xml_free(xml);
    return found;
}

Value fromNode(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return Value(b != 0);
    }
    case PLIST_UINT: {
        uint64_t u = 0;
        plist_get_uint_val(node, &u);
        // libplist keeps negative integers as their two's complement.
        return Value(static_cast<long long>(static_cast<int64_t>(u)));
    }
    case PLIST_REAL: {
        double d = 0;
        plist_get_real_val(node, &d);
        return Value(d);
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        char* s = nullptr;
        if (plist_get_node_type(node) == PLIST_STRING) plist_get_string_val(node, &s);
        else plist_get_key_val(node, &s);
        std::string out = s ? s : "";
        free(s);
        return Value(out);
    }
    case PLIST_DATA: {
        char* d = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &d, &length);
        Data data;
        if (d) data.bytes.assign(reinterpret_cast<unsigned char*>(d), reinterpret_cast<unsigned char*>(d) + length);
        free(d);
        return Value(std::move(data));
    }
    case PLIST_ARRAY: {
        Value::Array array;
        for (uint32_t i = 0; i < plist_array_get_size(node); ++i) array.push_back(fromNode(plist_array_get_item(node, i)));
        return Value(std::move(array));
    }
    case PLIST_DICT: {
        Value::Dictionary dict;
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        for (;;) {
            char* key = nullptr;
            plist_t item = nullptr;
            plist_dict_next_item(node, it, &key, &item);
            if (!item) break;
            dict.insert_or_assign(key ? key : "", fromNode(item));
            free(key);
        }
        free(it);
        return Value(std::move(dict));
    }
    default: return Value();
    }
}

plist_t toNode(const Value& value) {
    switch (value.type()) {
    case Value::Type::Boolean: return plist_new_bool(value.boolValue());
    case Value::Type::Integer: return plist_new_uint(static_cast<uint64_t>(value.integerValue()));
    case Value::Type::Real: return plist_new_real(value.doubleValue());
    case Value::Type::String: return plist_new_string(value.stringPointer()->c_str());
    case Value::Type::Data: {
        const auto& bytes = value.data()->bytes;
        return plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    case Value::Type::Array: {
        plist_t array = plist_new_array();
        for (const auto& v : *value.array()) plist_array_append_item(array, toNode(v));
        return array;
    }
    case Value::Type::Dictionary: {
        plist_t dict = plist_new_dict();
        for (const auto& [k, v] : *value.dictionary()) plist_dict_set_item(dict, k.c_str(), toNode(v));
        return dict;
    }
    case Value::Type::Null: break;
    }
    return plist_new_string("");
}

}  // namespace

std::optional<Value> PropertyListFile::parse(std::string_view bytes) {
    std::string_view head = bytes.substr(0, 64);
    bool looksLikePlist = bytes.substr(0, 6) == "bplist" || head.find("<?xml") != std::string_view::npos ||
                          head.find("<plist") != std::string_view::npos;
    if (looksLikePlist) {
        plist_t root = nullptr;
        if (bytes.size() > UINT32_MAX) return std::nullopt;
        plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
        if (!root) return std::nullopt;
        if (!withinDepth(root, 0) || holdsNul(root)) {
            plist_free(root);
            return std::nullopt;
        }
        Value value = fromNode(root);
        plist_free(root);
        return value;
    }
    if (auto strings = StringsFile::parse(bytes)) return Value(std::move(*strings));
    return std::nullopt;
}

std::optional<Value> PropertyListFile::read(const std::string& path) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return parse(bytes);
}

bool PropertyListFile::writeXML(const std::string& path, const Value& value) {
    plist_t root = toNode(value);
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root, &xml, &length);
    plist_free(root);
    if (!xml) return false;
    std::ofstream out(path, std::ios::binary);
    out.write(xml, length);
    plist_to_xml_free(xml);
    return static_cast<bool>(out);
}

}  // namespace vantro::sim
