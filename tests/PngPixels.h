// Reading colours back from a screenshot: the tests of xpsim's screen check chosen pixels, never
// whole stored images.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace pngtest {

// A PNG's pixel at a screen point (origin bottom left), 0xRRGGBB.
inline uint32_t Pixel(cairo_surface_t* png, int x, int y) {
    const unsigned char* data = cairo_image_surface_get_data(png);
    const int row = cairo_image_surface_get_height(png) - 1 - y;
    uint32_t pixel;
    std::memcpy(&pixel, data + size_t(row) * size_t(cairo_image_surface_get_stride(png)) + size_t(x) * 4, 4);
    return pixel & 0xffffff;
}

// True when every channel of two 0xRRGGBB colours is within `tolerance`.
inline bool Near(uint32_t a, uint32_t b, int tolerance = 2) {
    for (int shift = 0; shift <= 16; shift += 8)
        if (std::abs(int((a >> shift) & 0xff) - int((b >> shift) & 0xff)) > tolerance) return false;
    return true;
}

}  // namespace pngtest
