/// Tone curves, one channel value at a time.
#pragma once

#include "support/definitions/whole_numbers.h"

namespace pxk::test {

inline double contrasted(int value, double contrast) { return (value - 127) * (contrast + 1.0) + 127.0; }
inline double linearlyBrightened(double value, double brightness) {
    const double slope = (255 - std::fabs(brightness)) / 255;
    const double offset = brightness > 0 ? brightness : 0;
    return value * slope + offset;
}

inline int contrast(int value, double c) { return clampedToByte(truncatedToInteger(contrasted(value, c))); }

/// The one curve that is not clamped: the lowest 8 bits count.
inline int linearBrightness(int value, double b) { return truncatedToInteger(linearlyBrightened(value, b)) & 255; }

inline int absoluteBrightness(int value, double b) { return clampedToByte(truncatedToInteger(value + b)); }

inline int customLine(int value, double a, double b) { return clampedToByte(truncatedToInteger(value * a + b)); }

inline int contrastAndLinearBrightness(int value, double c, double b) {
    return clampedToByte(truncatedToInteger(linearlyBrightened(contrasted(value, c), b)));
}

inline int contrastAndAbsoluteBrightness(int value, double c, double b) {
    return clampedToByte(truncatedToInteger(contrasted(value, c) + b));
}

}  // namespace pxk::test
