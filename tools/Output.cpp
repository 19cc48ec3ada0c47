#include "Output.h"

#include <algorithm>
#include <cstdio>

#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/VantroVersion.h"

namespace vantro::tool {

namespace {

// The length of the UTF-8 sequence that starts at `at`, 0 when the bytes
// there are not one, or encode a control character (C1, U+0080 to U+009F).
std::size_t utf8Sequence(std::string_view text, std::size_t at) {
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(at);
    std::size_t length = lead >= 0xC2 && lead <= 0xDF ? 2 : lead >= 0xE0 && lead <= 0xEF ? 3 : lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
    if (length == 0 || at + length > text.size()) return 0;
    for (std::size_t k = 1; k < length; ++k)
        if ((byte(at + k) & 0xC0) != 0x80) return 0;
    char32_t code = lead & (0x7F >> length);
    for (std::size_t k = 1; k < length; ++k) code = (code << 6) | (byte(at + k) & 0x3F);
    const char32_t smallest[] = {0, 0, 0xA0, 0x800, 0x10000};
    if (code < smallest[length] || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return 0;
    return length;
}

}  // namespace

std::string printable(std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c >= 0x20 && c < 0x7F) {
            out += static_cast<char>(c);
            ++i;
        } else if (std::size_t length = c >= 0x80 ? utf8Sequence(text, i) : 0) {
            out.append(text.substr(i, length));
            i += length;
        } else {
            out += c == '\n' ? "\\n" : c == '\t' ? "\\t" : std::string{'\\', 'x', hex[c >> 4], hex[c & 0xF]};
            ++i;
        }
    }
    return out;
}

std::string jsonString(std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    std::string out = "\"";
    for (std::size_t i = 0; i < text.size();) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
            ++i;
        } else if (c < 0x20 || c == 0x7F) {
            out += "\\u00";
            out += hex[c >> 4];
            out += hex[c & 0xF];
            ++i;
        } else if (c < 0x80) {
            out += static_cast<char>(c);
            ++i;
        } else if (std::size_t length = utf8Sequence(text, i)) {
            out.append(text.substr(i, length));
            i += length;
        } else if (c == 0xC2 && i + 1 < text.size()) {
            // A C1 control character: valid UTF-8, escaped like the others.
            const auto next = static_cast<unsigned char>(text[i + 1]);
            if (next >= 0x80 && next <= 0x9F) {
                out += "\\u00";
                out += hex[next >> 4];
                out += hex[next & 0xF];
                i += 2;
            } else {
                out += "\\ufffd";
                ++i;
            }
        } else {
            out += "\\ufffd";
            ++i;
        }
    }
    return out + "\"";
}

const char* statusName(PrivacyAuthorizationStatus status) {
    switch (status) {
    case PrivacyAuthorizationStatusNotDetermined: return "not determined";
    case PrivacyAuthorizationStatusDenied: return "denied";
    case PrivacyAuthorizationStatusAuthorized: return "authorized";
    default: return "?";
    }
}

const char* requestTypeName(PrivacyAuthorizationRequestType type) {
    switch (type) {
    case PrivacyAuthorizationRequestTypeGrant: return "grant";
    case PrivacyAuthorizationRequestTypeCheck: return "check";
    default: return "request";
    }
}

std::vector<CategoryReport> reportRows(const VantroViewController& controller, const sim::SimPermissionList& list) {
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    const auto& records = controller.privacyCategories();
    const auto rows = list.rows();
    std::vector<CategoryReport> reports;
    // The table shows the controller's rows in their order.
    for (std::size_t i = 0; i < records.size() && i < rows.size(); ++i) {
        CategoryReport report;
        if (const Value* identifier = records[i] ? records[i]->valueForKey(PrivacyCategoryIdentifierKey) : nullptr)
            report.identifier = identifier->string().value_or("");
        report.status = center->privacyAuthorizationStatusForIdentifier(report.identifier);
        report.requestType = center->authorizationRequestTypeForIdentifier(report.identifier);
        report.label = rows[i].label;
        if (!rows[i].reason.empty()) report.reason = rows[i].reason;
        report.buttonTitle = rows[i].buttonTitle;
        report.buttonEnabled = rows[i].buttonEnabled;
        reports.push_back(std::move(report));
    }
    return reports;
}

std::vector<CategoryReport> reportCategories(sim::SimulatedMac& mac, const std::vector<std::string>& identifiers) {
    auto controller = VantroViewController::create();
    controller->setRequestedPrivacyCategoryIdentifiers(identifiers);
    sim::SimPermissionList list(mac, controller);
    list.show();
    auto shown = reportRows(*controller, list);
    auto center = VantroRequestStatusCenter::sharedRequestStatusCenter();
    std::vector<CategoryReport> reports;
    for (const auto& identifier : identifiers) {
        auto row = std::find_if(shown.begin(), shown.end(), [&](const CategoryReport& r) { return r.identifier == identifier; });
        if (row != shown.end()) {
            reports.push_back(*row);
            continue;
        }
        CategoryReport report;
        report.identifier = identifier;
        report.status = center->privacyAuthorizationStatusForIdentifier(identifier);
        report.requestType = center->authorizationRequestTypeForIdentifier(identifier);
        reports.push_back(std::move(report));
    }
    list.close();
    return reports;
}

void writeJsonContext(std::ostream& out, std::string_view command, const sim::SimulatedMac& mac, bool newer) {
    const auto& configuration = mac.configuration();
    char appKit[32];
    std::snprintf(appKit, sizeof appKit, "%.2f", configuration.appKitVersionNumber());
    out << "  \"version\": " << jsonString(kVersionString) << ",\n";
    out << "  \"command\": " << jsonString(command) << ",\n";
    out << "  \"release\": {\"name\": " << jsonString(mac.release().name) << ", \"title\": " << jsonString(mac.release().title())
        << ", \"appKitVersion\": " << appKit << "},\n";
    out << "  \"language\": " << jsonString(configuration.languages.empty() ? "en" : configuration.languages.front()) << ",\n";
    out << "  \"sandboxed\": " << (configuration.sandboxed ? "true" : "false") << ",\n";
    out << "  \"newerCategories\": " << (newer ? "true" : "false") << ",\n";
}

void writeJsonCategories(std::ostream& out, std::string_view name, const std::vector<CategoryReport>& categories) {
    auto optional = [](const std::optional<std::string>& text) { return text ? jsonString(*text) : std::string("null"); };
    out << "  " << jsonString(name) << ": [";
    for (std::size_t i = 0; i < categories.size(); ++i) {
        const auto& c = categories[i];
        out << (i ? ",\n" : "\n") << "    {\"identifier\": " << jsonString(c.identifier)                               //
            << ", \"status\": {\"number\": " << c.status << ", \"name\": " << jsonString(statusName(c.status)) << "}"  //
            << ", \"requestType\": {\"number\": " << c.requestType << ", \"name\": " << jsonString(requestTypeName(c.requestType))
            << "}, \"label\": " << optional(c.label) << ", \"reason\": " << optional(c.reason) << ", \"button\": ";
        if (c.buttonTitle)
            out << "{\"title\": " << jsonString(*c.buttonTitle) << ", \"enabled\": " << (c.buttonEnabled ? "true" : "false") << "}";
        else
            out << "null";
        out << "}";
    }
    out << (categories.empty() ? "]" : "\n  ]");
}

void writeJsonTimeline(std::ostream& out, sim::SimulatedMac& mac) {
    const auto& entries = mac.timeline().entries();
    out << "  \"timeline\": [";
    for (std::size_t i = 0; i < entries.size(); ++i) {
        char time[32];
        std::snprintf(time, sizeof time, "%.3f", entries[i].time);
        out << (i ? ",\n" : "\n") << "    {\"time\": " << time << ", \"actor\": " << jsonString(entries[i].actor)
            << ", \"text\": " << jsonString(entries[i].text) << "}";
    }
    out << (entries.empty() ? "]" : "\n  ]");
}

void writeTimeline(std::ostream& out, sim::SimulatedMac& mac) {
    for (const auto& entry : mac.timeline().entries())
        out << printable(sim::Timeline::formatEntry(entry)) << "\n";
}

}  // namespace vantro::tool
