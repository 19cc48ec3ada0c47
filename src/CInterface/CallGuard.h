#pragma once

#include <cstddef>
#include <string_view>

#include "vantro.h"

namespace vantro::c {

// Whether `text` is well-formed UTF-8: no stray continuation byte, no
// truncated or overlong sequence, no surrogate, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);

// Checks a string argument: VANTRO_OK, or the error it earns.
int checkString(const char* text);

// Runs `body` and answers what it answers; an exception becomes
// VANTRO_ERROR_INTERNAL, so none leaves the C interface.
template <class Body>
int guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (...) {
        return VANTRO_ERROR_INTERNAL;
    }
}

}  // namespace vantro::c
