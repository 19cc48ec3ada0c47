#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>

namespace vantro::test {

// The text of one of the framework's real layouts ("VantroWindowController").
inline std::string realLayout(const std::string& name) {
    std::ifstream file(std::string(VANTRO_TEST_RESOURCES_DIR) + "/" + name + ".xib");
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// Edits of a layout's text, each made exactly once: a fragment that is not
// there, or is there more than once, fails the test that asked for the edit,
// so an edit never silently misses its mark when the layout changes.
using LayoutEdit = std::function<std::string(std::string)>;

inline std::size_t findOnce(const std::string& xml, std::string_view fragment) {
    const auto at = xml.find(fragment);
    if (at == std::string::npos) {
        ADD_FAILURE() << "the layout has no " << fragment;
    } else if (xml.find(fragment, at + 1) != std::string::npos) {
        ADD_FAILURE() << "the layout has more than one " << fragment;
    }
    return at;
}

// The unmodified layout.
inline LayoutEdit unchanged() {
    return [](std::string xml) { return xml; };
}

inline LayoutEdit replacing(std::string from, std::string to) {
    return [from, to](std::string xml) {
        const auto at = findOnce(xml, from);
        if (at != std::string::npos) xml.replace(at, from.size(), to);
        return xml;
    };
}

// Removes the attribute `nameAndValue` (`customClass="VantroWindow"`) with the
// space before it.
inline LayoutEdit withoutAttribute(std::string nameAndValue) { return replacing(" " + nameAndValue, ""); }

// Removes the self-closing element (an outlet, binding or action) whose text
// holds `fragment`.
inline LayoutEdit withoutElement(std::string fragment) {
    return [fragment](std::string xml) {
        const auto at = findOnce(xml, fragment);
        if (at == std::string::npos) return xml;
        const auto begin = xml.rfind('<', at);
        const auto end = xml.find("/>", at);
        if (begin == std::string::npos || end == std::string::npos) {
            ADD_FAILURE() << fragment << " is not inside an element";
            return xml;
        }
        xml.erase(begin, end + 2 - begin);
        return xml;
    };
}

// Several edits, in order.
inline LayoutEdit both(LayoutEdit first, LayoutEdit second) {
    return [first, second](std::string xml) { return second(first(std::move(xml))); };
}

}  // namespace vantro::test
