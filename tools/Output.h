#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "PermissionList/VantroViewController.h"
#include "Simulator/SimPermissionList.h"
#include "Simulator/SimulatedMac.h"
#include "Vocabulary/VantroPrivacy.h"

namespace vantro::tool {

// `text` safe to show on a terminal: control bytes and bytes that are not
// UTF-8 are escaped (\n, \t, \xNN); everything else, accented and
// Japanese letters included, is kept.
std::string printable(std::string_view text);

// `text` as a JSON string: quoted, escaped, and valid UTF-8 (a byte that
// is not UTF-8 becomes U+FFFD).
std::string jsonString(std::string_view text);

const char* statusName(PrivacyAuthorizationStatus status);
const char* requestTypeName(PrivacyAuthorizationRequestType type);

// One category as a command reports it; label and button are missing where
// the permission list does not offer the category.
struct CategoryReport {
    std::string identifier;
    PrivacyAuthorizationStatus status = 0;
    PrivacyAuthorizationRequestType requestType = 0;
    std::optional<std::string> label;
    std::optional<std::string> reason;
    std::optional<std::string> buttonTitle;
    bool buttonEnabled = false;
};

// The rows `list` shows, with what the status center answers for each.
std::vector<CategoryReport> reportRows(const VantroViewController& controller, const sim::SimPermissionList& list);
// How each of `identifiers` reads now: the status center's answers, and the
// row a permission list asking for all of them shows. A list is put on
// `mac`'s screen for this; the timeline records it.
std::vector<CategoryReport> reportCategories(sim::SimulatedMac& mac, const std::vector<std::string>& identifiers);

// Writes the JSON object's members every command has, after its opening
// brace: "version", "command", "release", "language", "sandboxed",
// "newerCategories"; each line ends with a comma.
void writeJsonContext(std::ostream& out, std::string_view command, const sim::SimulatedMac& mac, bool newer);
// "  \"NAME\": [ … ]" of the categories, without a trailing comma.
void writeJsonCategories(std::ostream& out, std::string_view name, const std::vector<CategoryReport>& categories);
// "  \"timeline\": [ … ]" of what happened on `mac`, without a trailing comma.
void writeJsonTimeline(std::ostream& out, sim::SimulatedMac& mac);
// The timeline as text, one escaped line per event.
void writeTimeline(std::ostream& out, sim::SimulatedMac& mac);

}  // namespace vantro::tool
