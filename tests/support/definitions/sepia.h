/// Sepia, one pixel at a time.
#pragma once

#include "support/definitions/whole_numbers.h"
#include "support/pixel_formats.h"

namespace pxk::test {

struct SepiaSettings {
    double redWeight = 0.299;
    double greenWeight = 0.587;
    double blueWeight = 0.114;
    std::int32_t red = 0;
    std::int32_t green = 0;
    std::int32_t blue = 0;
};

inline Colour inSepia(Colour old, const SepiaSettings& settings) {
    const auto weighed = [](int channel, double weight) {
        return std::int64_t{channel} * truncatedToInteger(weight * 1024);
    };
    const std::int32_t grey = wrapped(weighed(old.red, settings.redWeight) + weighed(old.green, settings.greenWeight) +
                                      weighed(old.blue, settings.blueWeight)) /
                              1024;
    const auto toned = [&](std::int32_t added) { return clampedToByte(wrapped(std::int64_t{grey} + added)); };
    return {toned(settings.red), toned(settings.green), toned(settings.blue)};
}

/// How many columns (or rows) of `size` are computed, counted from the first one.
inline int computedCount(std::int64_t min, std::int64_t max, std::int64_t size) {
    const std::int64_t end = max > min && max < size ? max : size;
    const std::int64_t count = end - min;
    return static_cast<int>(count < 0 ? 0 : count > size ? size : count);
}

}  // namespace pxk::test
