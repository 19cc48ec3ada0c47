#include "CInterface/CallGuard.h"

namespace vantro::c {

bool isValidUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length;
        char32_t point;
        if (lead < 0x80) {
            ++i;
            continue;
        } else if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            point = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            point = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            point = lead & 0x07;
        } else {
            return false;
        }
        if (text.size() - i < length) return false;
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) return false;
            point = (point << 6) | (next & 0x3F);
        }
        const char32_t smallest = length == 2 ? 0x80 : length == 3 ? 0x800 : 0x10000;
        if (point < smallest || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return false;
        i += length;
    }
    return true;
}

int checkString(const char* text) {
    if (!text) return VANTRO_ERROR_NULL_ARGUMENT;
    return isValidUtf8(text) ? VANTRO_OK : VANTRO_ERROR_INVALID_UTF8;
}

}  // namespace vantro::c
