// vantro.h over the core: arguments checked and converted, threads checked,
// every answer turned into an int or a string. No decision about a
// permission is made here.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "CInterface/CallGuard.h"
#include "Guide/Vantro.h"
#include "Platform/HostProcess.h"
#include "StatusCenter/PrivacyCategoryCatalog.h"
#include "StatusCenter/PrivacyStatusWatcher.h"
#include "StatusCenter/VantroRequestStatusCenter.h"
#include "Vocabulary/NewerPrivacyCategories.h"
#include "Vocabulary/VantroVersion.h"

#ifdef VANTRO_C_REAL_MAC
namespace vantro::mac {
void installHostProcess();
}
#endif

namespace vantro::c {
namespace {

static_assert(VANTRO_VERSION_MAJOR == kVersionMajor && VANTRO_VERSION_MINOR == kVersionMinor &&
                  VANTRO_VERSION_PATCH == kVersionPatch,
              "vantro.h and VantroVersion.h name one release");
static_assert(VANTRO_STATUS_AUTHORIZED == PrivacyAuthorizationStatusAuthorized &&
              VANTRO_STATUS_DENIED == PrivacyAuthorizationStatusDenied &&
              VANTRO_REQUEST_TYPE_GRANT == PrivacyAuthorizationRequestTypeGrant &&
              VANTRO_REQUEST_TYPE_CHECK == PrivacyAuthorizationRequestTypeCheck);

HostProcess* process() {
#ifdef VANTRO_C_REAL_MAC
    // The real Mac's process is made on first use, as for the Objective-C
    // classes.
    mac::installHostProcess();
    return &HostProcess::current();
#else
    return HostProcess::currentOrNull();
#endif
}

// VANTRO_OK when a call may run here and now.
int enter() {
    auto* current = process();
    if (!current) return VANTRO_ERROR_NOT_SET_UP;
    return current->platform().runLoop().isMainThread() ? VANTRO_OK : VANTRO_ERROR_WRONG_THREAD;
}

// A category the framework knows on this run: one of its own sixteen, or a
// newer one while they are on.
bool isCategory(std::string_view identifier) {
    return privacyCategoryIdentifierNamed(identifier) && !isPrivacyCategoryWithheld(identifier);
}

// The checks every call taking an identifier makes, in this order: the
// argument, the process and thread, the identifier's meaning.
template <class Known>
int enterWithIdentifier(const char* identifier, Known known) {
    if (int error = checkString(identifier)) return error;
    if (int error = enter()) return error;
    return known(std::string_view(identifier)) ? VANTRO_OK : VANTRO_ERROR_UNKNOWN_IDENTIFIER;
}

bool servesStatus(std::string_view identifier) {
    return VantroRequestStatusCenter::servesPrivacyAuthorizationStatusForIdentifier(identifier);
}

// The static text of a category's identifier, which outlives every call.
const char* staticIdentifier(std::string_view identifier) {
    auto known = privacyCategoryIdentifierNamed(identifier);
    return known ? known->data() : nullptr;
}

char* copyString(const std::string& text) {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy) std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

}  // namespace
}  // namespace vantro::c

using namespace vantro;
using namespace vantro::c;

extern "C" {

int vantro_version(void) { return VANTRO_VERSION_NUMBER; }

const char* vantro_version_string(void) { return kVersionString; }

int vantro_status(const char* identifier) {
    return guarded([&] {
        if (int error = enterWithIdentifier(identifier, servesStatus)) return error;
        return static_cast<int>(
            VantroRequestStatusCenter::sharedRequestStatusCenter()->privacyAuthorizationStatusForIdentifier(identifier));
    });
}

int vantro_request_type(const char* identifier) {
    return guarded([&] {
        if (int error = enterWithIdentifier(identifier, isCategory)) return error;
        return static_cast<int>(
            VantroRequestStatusCenter::sharedRequestStatusCenter()->authorizationRequestTypeForIdentifier(identifier));
    });
}

int vantro_request(const char* identifier, int silent) {
    return guarded([&] {
        if (int error = enterWithIdentifier(identifier, servesStatus)) return error;
        VantroRequestStatusCenter::sharedRequestStatusCenter()->requestPrivacyAuthorizationForIdentifier(identifier,
                                                                                                        silent != 0);
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_category_count(void) {
    return guarded([&] {
        if (int error = enter()) return error;
        return static_cast<int>(listablePrivacyCategories().size());
    });
}

const char* vantro_category_identifier(int index) {
    try {
        if (index < 0 || enter() != VANTRO_OK) return nullptr;
        auto identifiers = listablePrivacyCategories();
        if (static_cast<std::size_t>(index) >= identifiers.size()) return nullptr;
        return staticIdentifier(identifiers[static_cast<std::size_t>(index)]);
    } catch (...) {
        return nullptr;
    }
}

char* vantro_copy_label(const char* identifier) {
    try {
        if (enterWithIdentifier(identifier, isCategory) != VANTRO_OK) return nullptr;
        return copyString(privacyCategoryLabel(identifier));
    } catch (...) {
        return nullptr;
    }
}

void vantro_free_string(char* string) { std::free(string); }

int vantro_guide(const char* identifier, const char* message) {
    return guarded([&] {
        if (message)
            if (int error = checkString(message)) return error;
        std::optional<std::string_view> anchor;
        if (identifier) {
            if (int error = enterWithIdentifier(identifier, isCategory)) return error;
            anchor = identifier;
        } else if (int error = enter()) {
            return error;
        }
        auto guide = Vantro::sharedKit();
        if (message)
            guide->askAccessForPanelIdentifier(anchor, std::string(message));
        else
            guide->askAccessForPanelIdentifier(anchor);
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_stop_guide(void) {
    return guarded([&] {
        if (int error = enter()) return error;
        Vantro::sharedKit()->stop();
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_is_overlay_shown(void) {
    return guarded([&] {
        if (int error = enter()) return error;
        return Vantro::sharedKit()->isOverlayShown() ? 1 : 0;
    });
}

int vantro_set_newer_categories(int on) {
    return guarded([&] {
        if (int error = enter()) return error;
        VantroRequestStatusCenter::setServesNewerPrivacyCategories(on != 0);
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_newer_categories(void) {
    return guarded([&] {
        if (int error = enter()) return error;
        return VantroRequestStatusCenter::servesNewerPrivacyCategories() ? 1 : 0;
    });
}

int vantro_watch(const char* const* identifiers, int count) {
    return guarded([&] {
        if (count < 0) return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        if (count > 0 && !identifiers) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        for (int i = 0; i < count; ++i)
            if (int error = checkString(identifiers[i])) return error;
        if (int error = enter()) return error;
        std::vector<std::string> watched;
        for (int i = 0; i < count; ++i) {
            if (!servesStatus(identifiers[i])) return static_cast<int>(VANTRO_ERROR_UNKNOWN_IDENTIFIER);
            watched.emplace_back(identifiers[i]);
        }
        PrivacyStatusWatcher::sharedWatcher()->setWatchedIdentifiers(std::move(watched));
        return static_cast<int>(VANTRO_OK);
    });
}

int vantro_add_status_callback(vantro_status_callback callback, void* user_data) {
    return guarded([&] {
        if (!callback) return static_cast<int>(VANTRO_ERROR_NULL_ARGUMENT);
        if (int error = enter()) return error;
        auto token = PrivacyStatusWatcher::sharedWatcher()->addChangeHandler([callback, user_data](const PrivacyStatusChange& change) {
            callback(change.identifier.c_str(), static_cast<int>(change.oldStatus), static_cast<int>(change.newStatus),
                     user_data);
        });
        // Tokens count up from 1; a process would need billions of callbacks
        // to reach the end of int.
        if (token > static_cast<PrivacyStatusWatcher::HandlerToken>(std::numeric_limits<int>::max())) {
            PrivacyStatusWatcher::sharedWatcher()->removeChangeHandler(token);
            return static_cast<int>(VANTRO_ERROR_OUT_OF_RANGE);
        }
        return static_cast<int>(token);
    });
}

int vantro_remove_status_callback(int token) {
    return guarded([&] {
        if (int error = enter()) return error;
        if (token > 0) PrivacyStatusWatcher::sharedWatcher()->removeChangeHandler(static_cast<PrivacyStatusWatcher::HandlerToken>(token));
        return static_cast<int>(VANTRO_OK);
    });
}

}  // extern "C"
