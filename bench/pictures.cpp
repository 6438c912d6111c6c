#include "bench/pictures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "host/pictures/surface.h"

namespace pxkbench {
namespace {

constexpr std::uint32_t opaque = 0xFF000000;

// A hash of the coordinates and the seed: multiplications and shifts spread every input bit over the output.
std::uint32_t randomWord(std::uint32_t x, std::uint32_t y, std::uint32_t seed) {
    std::uint32_t word = x * 0x9E3779B1U ^ (y + seed * 0x85EBCA77U) * 0xC2B2AE3DU;
    word = (word ^ word >> 15) * 0x2C1B3C6DU;
    word = (word ^ word >> 12) * 0x297A2D39U;
    return word ^ word >> 15;
}

std::uint32_t channel(double value) { return static_cast<std::uint32_t>(std::clamp(value, 0.0, 255.0)); }

std::uint32_t photoPixel(double x, double y, std::uint32_t random) {
    const double light = 140 + 70 * std::sin(x * 3.1 + y * 1.7) + 30 * std::cos(y * 5.3 - x * 2.2);
    const double texture = 12 * std::sin(x * 190) * std::sin(y * 230 + x * 40);
    const double edge = std::sin(x * 9 + std::sin(y * 7) * 2) > 0.6 ? -45 : 0;
    const double grain = static_cast<double>(random & 15) - 7.5;
    const double value = light + texture + edge + grain;
    return opaque | channel(value * 1.05 + 8) << 16 | channel(value * 0.92 + 20 * y) << 8 |
           channel(value * 0.8 + 30 * x);
}

// One round blob in each square of 64 x 64 pixels, clear of the square's edges.
bool isInBlob(int x, int y) {
    constexpr int square = 64;
    constexpr int radius = 8;  // pi * 8 * 8 pixels, 5 % of the square
    const std::uint32_t random =
        randomWord(static_cast<std::uint32_t>(x / square), static_cast<std::uint32_t>(y / square), 9);
    const int fromCentreX = x % square - radius - 4 - static_cast<int>(random % 40);
    const int fromCentreY = y % square - radius - 4 - static_cast<int>(random / 64 % 40);
    return fromCentreX * fromCentreX + fromCentreY * fromCentreY < radius * radius;
}

std::uint32_t greyOf(std::uint32_t value) { return opaque | value << 16 | value << 8 | value; }

std::uint32_t pixelAt(Content content, int x, int y, int side, unsigned seed) {
    constexpr std::uint32_t skyBlue = 0xFF5A8FC2;
    const std::uint32_t random = randomWord(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), seed);
    switch (content) {
        case Content::photo:
            return photoPixel(static_cast<double>(x) / side + seed, static_cast<double>(y) / side, random);
        case Content::noise:
            return opaque | random;
        case Content::nearlyFlat:
            return skyBlue + (random & 0x010101);
        case Content::blobs:
            return isInBlob(x, y) ? opaque | blobColour : greyOf(random & 0xFF);
        case Content::white:
            return greyOf(255);
        case Content::black:
            return greyOf(0);
        case Content::grey:
            return greyOf(128);
        case Content::flat:
            break;
    }
    return skyBlue + seed;
}

}  // namespace

const char* contentName(Content content) {
    switch (content) {
        case Content::photo:
            return "photo";
        case Content::noise:
            return "noise";
        case Content::nearlyFlat:
            return "nearly flat";
        case Content::blobs:
            return "blobs";
        case Content::white:
            return "white";
        case Content::black:
            return "black";
        case Content::grey:
            return "grey";
        case Content::flat:
            break;
    }
    return "flat";
}

void fill(pxkhost::Picture& picture, Content content, unsigned seed) {
    const int side = std::max(picture.width(), picture.height());
    for (int y = 0; y < picture.height(); ++y) {
        std::uint32_t* const row = picture.row(y);
        for (int x = 0; x < picture.width(); ++x)
            row[x] = pxkhost::wordFromArgb(picture.layout(), pixelAt(content, x, y, side, seed));
    }
}

}  // namespace pxkbench
