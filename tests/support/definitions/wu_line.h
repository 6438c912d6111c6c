/// Lines with smooth edges, one pixel at a time, with the 16-bit accumulator of the textbook.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "support/pixel_formats.h"

namespace pxk::test {

/// A picture as plain words of one format.
struct Canvas {
    Canvas(int canvasFormat, int canvasWidth, int canvasHeight)
        : format(canvasFormat),
          width(canvasWidth),
          height(canvasHeight),
          words(static_cast<std::size_t>(canvasWidth) * static_cast<std::size_t>(canvasHeight)) {}

    bool contains(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
    std::uint32_t& at(int x, int y) {
        return words[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    }

    int format;
    int width;
    int height;
    std::vector<std::uint32_t> words;
};

inline int blended(int old, int outline, int weight) { return (old * weight + outline * (255 - weight)) / 255; }

/// Old green goes into the new blue, and old blue into the new green.
inline void drawPixel(Canvas& canvas, int x, int y, int weight, Colour outline) {
    if (!canvas.contains(x, y)) return;
    const Colour old = readColour(canvas.format, canvas.at(x, y));
    canvas.at(x, y) =
        opaqueWord(canvas.format, {blended(old.red, outline.red, weight), blended(old.blue, outline.green, weight),
                                   blended(old.green, outline.blue, weight)});
}

/// For points near enough to take every step.
inline void drawWuLine(Canvas& canvas, int x0, int y0, int x1, int y1, Colour outline) {
    if (y0 > y1) {
        std::swap(x0, x1);
        std::swap(y0, y1);
    }
    drawPixel(canvas, x0, y0, 0, outline);
    const int direction = x1 >= x0 ? 1 : -1;
    const int dx = std::abs(x1 - x0);
    const int dy = y1 - y0;
    int x = x0;
    int y = y0;
    if (dy == 0 || dx == 0 || dx == dy) {
        while (x != x1 || y != y1) {
            if (dx != 0) x += direction;
            if (dy != 0) y += 1;
            drawPixel(canvas, x, y, 0, outline);
        }
        return;
    }
    std::uint16_t accumulator = 0;
    const auto step = static_cast<std::uint16_t>(dx > dy ? (dy << 16) / dx : (dx << 16) / dy);
    const auto wraps = [&] {
        const std::uint16_t before = accumulator;
        accumulator = static_cast<std::uint16_t>(accumulator + step);
        return accumulator < before;
    };
    if (dx > dy) {
        for (int i = 1; i < dx; ++i) {
            x += direction;
            if (wraps()) y += 1;
            drawPixel(canvas, x, y, accumulator >> 8, outline);
            drawPixel(canvas, x, y + 1, (accumulator >> 8) ^ 255, outline);
        }
    } else {
        for (int i = 1; i < dy; ++i) {
            y += 1;
            if (wraps()) x += direction;
            drawPixel(canvas, x, y, accumulator >> 8, outline);
            drawPixel(canvas, x + direction, y, 255 - (accumulator >> 8), outline);
        }
    }
    drawPixel(canvas, x1, y1, 0, outline);
}

}  // namespace pxk::test
