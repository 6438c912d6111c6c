/// Waveforms, one sample and one pixel at a time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <vector>

#include "support/definitions/wu_line.h"

namespace pxk::test {

/// The arguments of a waveform.
struct WaveformCall {
    std::vector<std::uint8_t> block{};
    int sampleCount = 0;
    int smooth = 1;
    int width = 0;
    int height = 0;
    int outlineWidth = 0;
    std::uint32_t backColor = 0x88B5C4;
    std::uint32_t foreColor = 0x274C5A;
    std::uint32_t outlineColor = 0x203F4E;
    int bits = 8;
    bool autoScale = false;
};

inline Colour hostColour(std::uint32_t color) {
    return {static_cast<int>(color >> 16 & 0xFF), static_cast<int>(color >> 8 & 0xFF), static_cast<int>(color & 0xFF)};
}

template <class Number>
double numberAt(const std::vector<std::uint8_t>& block, std::size_t index) {
    Number number{};
    std::memcpy(&number, block.data() + index * sizeof number, sizeof number);
    return static_cast<double>(number);
}

inline std::size_t bytesPerSample(int bits) {
    switch (bits) {
        case 7:
        case 8:
            return 1;
        case 15:
        case 16:
            return 2;
        case -32:
            return 4;
        case -64:
            return 8;
        default:
            return 0;
    }
}

/// A sample's value; silence where the block has ended.
inline double sampleValue(const WaveformCall& call, std::int64_t index) {
    const auto place = static_cast<std::size_t>(index);
    if (place >= call.block.size() / bytesPerSample(call.bits)) return 0;
    switch (call.bits) {
        case 7:
            return numberAt<std::int8_t>(call.block, place);
        case 8:
            return numberAt<std::uint8_t>(call.block, place) - 128;
        case 15:
            return numberAt<std::int16_t>(call.block, place);
        case 16:
            return numberAt<std::uint16_t>(call.block, place) - 32768;
        case -32:
            return numberAt<float>(call.block, place);
        default:
            return numberAt<double>(call.block, place);
    }
}

inline double fixedFullScale(int bits) { return bits < 0 ? 1.0 : bits < 9 ? 127.0 : 32767.0; }

/// The row that a curve is on. NaN is on the centre line; rows are clamped to 2^30 above and below.
inline int curveRow(double value, int centre) {
    const double row = std::floor(value + centre);
    if (std::isnan(row)) return centre;
    return static_cast<int>(std::min(std::max(row, -1073741824.0), 1073741824.0));
}

/// The rows of both curves.
struct WaveformRows {
    std::vector<int> low;
    std::vector<int> high;
};

/// `width` and `sampleCount` as they are after the defaults have been filled in.
inline WaveformRows waveformRows(const WaveformCall& call, int width, int height, std::int64_t sampleCount) {
    std::vector<double> low;
    std::vector<double> high;
    double peak = 0;
    for (int i = 0; i < width; ++i) {
        const auto first = static_cast<std::int64_t>(double(i) / width * static_cast<double>(sampleCount));
        const auto end = static_cast<std::int64_t>(double(i + 1) / width * static_cast<double>(sampleCount));
        double negative = 0;
        double positive = 0;
        for (std::int64_t s = first; s < end; ++s) {
            const double value = sampleValue(call, s);
            (value < 0 ? negative : positive) += value;
        }
        const double n = static_cast<double>(end - first);
        low.push_back(n > 0 ? negative / (n * 0.5) : 0);
        high.push_back(n > 0 ? positive / (n * 0.5) : 0);
        if (high.back() > peak) peak = high.back();
        if (call.bits != 7 && -low.back() > peak) peak = -low.back();
    }
    const double fullScale = call.autoScale ? 2 * peak : fixedFullScale(call.bits);
    const double alpha = 2.0 / (double(call.smooth) + 1.0);
    WaveformRows rows;
    for (auto* values : {&low, &high}) {
        for (std::size_t i = 1; alpha > 0 && alpha != 1 && i < values->size(); ++i) {
            (*values)[i] = (*values)[i - 1] * (1 - alpha) + (*values)[i] * alpha;
        }
        for (const double value : *values) {
            (values == &low ? rows.low : rows.high).push_back(curveRow(value * height / fullScale, height / 2));
        }
    }
    return rows;
}

inline void fillSpan(Canvas& canvas, int x, int y, int centre, Colour colour) {
    for (int row = std::max(std::min(y, centre), 0); row < std::max(y, centre) && row < canvas.height; ++row) {
        canvas.at(x, row) = opaqueWord(canvas.format, colour);
    }
}

/// The call with its defaults filled in, as far as they can be.
inline WaveformCall completed(WaveformCall call) {
    const int divisor = (call.bits + 7) / 8;
    if (call.sampleCount < 1) call.sampleCount = static_cast<int>(call.block.size()) / divisor;
    if (call.height < 1) call.height = 500;
    if (call.width < 1) call.width = call.sampleCount;
    return call;
}

/// The picture in the format given, without what the host draws; empty for nil.
inline std::optional<Canvas> waveform(const WaveformCall& asked, int format) {
    if (bytesPerSample(asked.bits) == 0) return std::nullopt;
    const WaveformCall call = completed(asked);
    if (call.width < 1 || call.width > 32767 || call.height > 32767) return std::nullopt;
    const WaveformRows rows = waveformRows(call, call.width, call.height, call.sampleCount);
    const int centre = call.height / 2;
    Canvas canvas(format, call.width, call.height);
    for (std::uint32_t& word : canvas.words) word = opaqueWord(format, hostColour(call.backColor));
    for (int x = 0; x < call.width; ++x) {
        fillSpan(canvas, x, rows.low[static_cast<std::size_t>(x)], centre, hostColour(call.foreColor));
        fillSpan(canvas, x, rows.high[static_cast<std::size_t>(x)], centre, hostColour(call.foreColor));
    }
    if (call.outlineWidth != 1) return canvas;
    int lowX = 0, lowY = centre, highX = 0, highY = centre;
    for (int x = 0; x < call.width; ++x) {
        const int low = rows.low[static_cast<std::size_t>(x)];
        const int high = rows.high[static_cast<std::size_t>(x)];
        drawWuLine(canvas, lowX, lowY, x, low, hostColour(call.outlineColor));
        drawWuLine(canvas, highX, highY, x, high, hostColour(call.outlineColor));
        lowX = highX = x;
        lowY = low;
        highY = high;
    }
    return canvas;
}

}  // namespace pxk::test
