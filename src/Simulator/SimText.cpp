#include "Simulator/SimText.h"

#include <cstdint>

namespace vantro::sim {

namespace {

constexpr const char* latinFamily = "DejaVu Sans";
constexpr const char* japaneseFamily = "VL PGothic";

thread_local TextRecording* currentRecording = nullptr;

// The code point of the UTF-8 sequence at `text[i]` and its length; a
// malformed byte counts as one character of its own.
std::uint32_t decode(std::string_view text, std::size_t i, std::size_t& length) {
    const auto lead = static_cast<unsigned char>(text[i]);
    length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (i + length > text.size()) length = 1;
    if (length == 1) return lead;
    std::uint32_t code = lead & (0xFF >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) code = code << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3F);
    return code;
}

// CJK radicals up to the end of the Hangul syllables, CJK compatibility
// forms, and the half- and full-width forms.
bool isCJK(std::uint32_t c) {
    return (c >= 0x2E80 && c <= 0xD7AF) || (c >= 0xF900 && c <= 0xFAFF) || (c >= 0xFE30 && c <= 0xFE4F) ||
           (c >= 0xFF00 && c <= 0xFFEF);
}

}  // namespace

const char* fontFamilyFor(std::string_view text) {
    for (std::size_t i = 0, n = 0; i < text.size(); i += n)
        if (isCJK(decode(text, i, n))) return japaneseFamily;
    return latinFamily;
}

void selectFont(cairo_t* cairo, std::string_view text, double size, bool bold) {
    cairo_select_font_face(cairo, fontFamilyFor(text), CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, size);
}

void showText(cairo_t* cairo, Point baseline, std::string_view text, double size, bool bold) {
    if (currentRecording) currentRecording->texts_.push_back({std::string(text), bold});
    selectFont(cairo, text, size, bold);
    cairo_move_to(cairo, baseline.x, baseline.y);
    cairo_show_text(cairo, std::string(text).c_str());
}

double textAdvance(cairo_t* cairo, std::string_view text) {
    cairo_text_extents_t extents;
    cairo_text_extents(cairo, std::string(text).c_str(), &extents);
    return extents.x_advance;
}

std::vector<std::string> charactersWithoutGlyph(std::string_view text, bool bold) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* cairo = cairo_create(surface);
    selectFont(cairo, text, 12, bold);
    cairo_scaled_font_t* font = cairo_get_scaled_font(cairo);
    std::vector<std::string> missing;
    for (std::size_t i = 0, n = 0; i < text.size(); i += n) {
        if (decode(text, i, n) < 0x20) continue;  // control characters are never drawn
        cairo_glyph_t* glyphs = nullptr;
        int count = 0;
        const std::string character(text.substr(i, n));
        const bool converted = cairo_scaled_font_text_to_glyphs(font, 0, 0, character.c_str(), static_cast<int>(n), &glyphs,
                                                                &count, nullptr, nullptr, nullptr) == CAIRO_STATUS_SUCCESS;
        // Glyph 0 is the font's "missing" box.
        if (!converted || count == 0 || glyphs[0].index == 0) missing.push_back(character);
        cairo_glyph_free(glyphs);
    }
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    return missing;
}

TextRecording::TextRecording() : outer_(currentRecording) { currentRecording = this; }

TextRecording::~TextRecording() { currentRecording = outer_; }

}  // namespace vantro::sim
