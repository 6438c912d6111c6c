/// Tetrahedral interpolation in a three-dimensional table, one channel of one pixel at a time, each of the six
/// tetrahedra written out.
#pragma once

#include <array>
#include <cstddef>
#include <memory>

#include "support/pixel_formats.h"

namespace pxk::test {

/// 18 points along each axis, of which the first 16 count: point k stands for the channel value 17 * k.
class ColourCube {
  public:
    static constexpr int points = 18;

    double& at(int r, int g, int b, int x) { return (*entries_)[index(r, g, b, x)]; }
    double at(int r, int g, int b, int x) const { return (*entries_)[index(r, g, b, x)]; }

    Colour operator()(Colour colour) const { return {channel(colour, 0), channel(colour, 1), channel(colour, 2)}; }

  private:
    using Entries = std::array<double, std::size_t{18} * 18 * 18 * 3>;

    static std::size_t index(int r, int g, int b, int x) {
        const int place = ((r * points + g) * points + b) * 3 + x;
        return static_cast<std::size_t>(place);
    }

    int channel(Colour colour, int x) const {
        const double value = interpolated(colour, x);
        if (value > 255.0) return 255;
        return value > 0 ? static_cast<int>(value) : 0;  // also when it is not a number
    }

    double interpolated(Colour colour, int x) const {
        const int ri = colour.red / 17;
        const int gi = colour.green / 17;
        const int bi = colour.blue / 17;
        const int r1 = colour.red == 255 ? 15 : ri + 1;
        const int g1 = colour.green == 255 ? 15 : gi + 1;
        const int b1 = colour.blue == 255 ? 15 : bi + 1;
        const double fr = (colour.red - 17 * ri) / 17.0;
        const double fg = (colour.green - 17 * gi) / 17.0;
        const double fb = (colour.blue - 17 * bi) / 17.0;
        const double lowest = at(ri, gi, bi, x);
        const double highest = at(r1, g1, b1, x);
        if (fr > fg) {
            if (fg > fb) {
                return (1 - fr) * lowest + (fr - fg) * at(r1, gi, bi, x) + (fg - fb) * at(r1, g1, bi, x) + fb * highest;
            }
            if (fr > fb) {
                return (1 - fr) * lowest + (fr - fb) * at(r1, gi, bi, x) + (fb - fg) * at(r1, gi, b1, x) + fg * highest;
            }
            return (1 - fb) * lowest + (fb - fr) * at(ri, gi, b1, x) + (fr - fg) * at(r1, gi, b1, x) + fg * highest;
        }
        if (fb > fg) {
            return (1 - fb) * lowest + (fb - fg) * at(ri, gi, b1, x) + (fg - fr) * at(ri, g1, b1, x) + fr * highest;
        }
        if (fb > fr) {
            return (1 - fg) * lowest + (fg - fb) * at(ri, g1, bi, x) + (fb - fr) * at(ri, g1, b1, x) + fr * highest;
        }
        return (1 - fg) * lowest + (fg - fr) * at(ri, g1, bi, x) + (fr - fb) * at(r1, g1, bi, x) + fb * highest;
    }

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace pxk::test
