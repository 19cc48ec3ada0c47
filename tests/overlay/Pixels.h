#pragma once

#include <cairo.h>

#include <cstdint>
#include <functional>

namespace vantro::test {

// One pixel of an ARGB32 picture as un-premultiplied 0–255 values.
struct Pixel {
    int r, g, b, a;
};

inline Pixel pixelAt(cairo_surface_t* surface, int x, int y) {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const auto value = *reinterpret_cast<const std::uint32_t*>(data + y * cairo_image_surface_get_stride(surface) + x * 4);
    const int a = (value >> 24) & 0xff;
    auto un = [a](int c) { return a == 0 ? 0 : c * 255 / a; };
    return {un((value >> 16) & 0xff), un((value >> 8) & 0xff), un(value & 0xff), a};
}

// How many pixels of the picture pass `test`.
inline int countPixels(cairo_surface_t* surface, const std::function<bool(const Pixel&)>& test) {
    int count = 0;
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y)
        for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) count += test(pixelAt(surface, x, y));
    return count;
}

}  // namespace vantro::test
