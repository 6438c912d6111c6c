/// Saturation, one pixel at a time.
#pragma once

#include "support/definitions/whole_numbers.h"
#include "support/pixel_formats.h"

namespace pxk::test {

inline Colour saturated(Colour old, std::int32_t amount) {
    const std::int32_t factor = wrapped(std::int64_t{amount} + 255);
    const int grey = (old.red + 2 * old.green + old.blue) / 4;
    const auto moved = [&](int channel) {
        const std::int32_t product = wrapped(std::int64_t{channel - grey} * factor);
        return clampedToByte(std::int64_t{grey} + product / 255);
    };
    return {moved(old.red), moved(old.green), moved(old.blue)};
}

}  // namespace pxk::test
