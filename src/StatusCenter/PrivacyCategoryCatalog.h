#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vantro {

// What the running system offers, as every face of the framework shows it:
// the permission list, the C interface and the language packages.

// The categories the running system has among the framework's own, kept once
// per process from the first use: from 10.15 (above AppKit 1671) fifteen of
// the sixteen (not Files and Folders, which no pane lists by that name), from
// 10.14 (above 1561) the first ten of them, before that Contacts, Calendars
// and Reminders. Never Full Disk Access for a sandboxed host, which cannot be
// given it by dragging. Main thread.
const std::set<std::string, std::less<>>& supportedPrivacyCategories();

// Whether the permission list shows `identifier` on the running system: a
// supported category, or a newer one while the host has them on and the
// system has it.
bool isListablePrivacyCategory(std::string_view identifier);

// Every category the permission list can show on the running system, in the
// order the framework declares them, the newer ones (while on) last.
std::vector<std::string> listablePrivacyCategories();

// A category's label in the user's language, from the framework's
// "PrivacyCategoryLabels" table; the identifier itself where the table has
// no entry.
std::string privacyCategoryLabel(std::string_view identifier);

}  // namespace vantro
