#pragma once

#include <cairo.h>

#include <string>
#include <string_view>
#include <vector>

#include "Platform/Geometry.h"

namespace vantro::sim {

// The simulated screen's type: every text it draws goes through here, so
// that one place chooses a font that has the text's characters and one place
// can tell what was drawn.
//
// Latin, Greek and Cyrillic texts are set in DejaVu Sans; a text with a
// character from the CJK blocks (kana, kanji, full-width forms, CJK
// punctuation) is set in VL PGothic, which has those and Latin as well. Both
// fonts come with the bootstrap's packages (fonts-dejavu-core,
// fonts-vlgothic).

// The font family a text is set in.
const char* fontFamilyFor(std::string_view text);

// Selects the font for `text` at `size` on `cairo`.
void selectFont(cairo_t* cairo, std::string_view text, double size, bool bold);

// Draws `text` with its baseline starting at `baseline`, in the font that
// fontFamilyFor chooses and the current source colour.
void showText(cairo_t* cairo, Point baseline, std::string_view text, double size, bool bold = false);

// How far `text` advances in the font currently selected on `cairo`.
double textAdvance(cairo_t* cairo, std::string_view text);

// The characters of `text` that the font it is set in has no glyph for,
// in order (each as its UTF-8 sequence); empty when all are covered.
std::vector<std::string> charactersWithoutGlyph(std::string_view text, bool bold = false);

// Collects every text shown through showText on this thread while it
// lives (recordings do not nest: the innermost one collects).
class TextRecording {
public:
    TextRecording();
    ~TextRecording();
    TextRecording(const TextRecording&) = delete;
    TextRecording& operator=(const TextRecording&) = delete;

    struct Shown {
        std::string text;
        bool bold;
    };
    const std::vector<Shown>& texts() const { return texts_; }

private:
    friend void showText(cairo_t*, Point, std::string_view, double, bool);
    std::vector<Shown> texts_;
    TextRecording* outer_;
};

}  // namespace vantro::sim
