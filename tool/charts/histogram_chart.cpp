/// The chart of a histogram.
#include <algorithm>

#include "tool/charts/drawing.h"
#include "tool/charts/histogram.h"

namespace pxk::tool {
namespace {

constexpr std::int32_t levelCount = 256;
constexpr std::int32_t barWidth = 3;
constexpr std::int32_t plotHeight = 320;
constexpr std::int32_t margin = 16;
constexpr std::int32_t rampHeight = 12;
constexpr std::int32_t gap = 4;

constexpr Box plot{margin, margin, margin + levelCount* barWidth, margin + plotHeight};

constexpr std::uint32_t paper = 0x1E2226;
constexpr std::uint32_t gridLine = 0x343A40;
constexpr std::uint32_t light = 0xE6;  ///< a channel where its column is drawn

/// The quarters of both axes.
void drawGrid(chain::Raster& chart) {
    for (std::int32_t quarter = 0; quarter <= 4; ++quarter) {
        const std::int32_t y = plot.top + quarter * plotHeight / 4;
        const std::int32_t x = plot.left + quarter * levelCount * barWidth / 4;
        fill(chart, {plot.left, y, plot.right, y + 1}, gridLine);
        fill(chart, {x, plot.top, x + 1, plot.bottom}, gridLine);
    }
}

std::uint32_t fullScale(const Histogram& histogram) {
    std::uint32_t inner = 0;
    std::uint32_t outer = 1;
    for (const Counters* each : {&histogram.red, &histogram.green, &histogram.blue}) {
        inner = std::max(inner, *std::max_element(each->begin() + 1, each->end() - 1));
        outer = std::max({outer, each->front(), each->back()});
    }
    return inner > 0 ? inner : outer;
}

std::int32_t columnHeight(std::uint32_t count, std::uint32_t scale) {
    if (count == 0) return 0;
    const std::uint64_t height = (std::uint64_t{count} * plotHeight + scale / 2) / scale;
    return static_cast<std::int32_t>(std::clamp<std::uint64_t>(height, 1, plotHeight));
}

/// Sets the channel at `shift` to full brightness and leaves the other two as they are.
void drawColumns(chain::Raster& chart, const Counters& counters, std::uint32_t scale, unsigned shift) {
    for (std::int32_t value = 0; value < levelCount; ++value) {
        const std::int32_t left = plot.left + value * barWidth;
        const std::int32_t height = columnHeight(counters[static_cast<std::size_t>(value)], scale);
        for (std::int32_t y = plot.bottom - height; y < plot.bottom; ++y) {
            for (std::int32_t x = left; x < left + barWidth; ++x) {
                chart.at(x, y) = (chart.at(x, y) & ~(0xFFU << shift)) | light << shift;
            }
        }
    }
}

void drawRamp(chain::Raster& chart) {
    const std::int32_t top = plot.bottom + gap;
    for (std::int32_t value = 0; value < levelCount; ++value) {
        const std::int32_t left = plot.left + value * barWidth;
        fill(chart, {left, top, left + barWidth, top + rampHeight}, static_cast<std::uint32_t>(value) * 0x010101U);
    }
}

}  // namespace

chain::Raster chartOf(const Histogram& histogram) {
    chain::Raster chart = chain::Raster::filled(plot.right + margin, plot.bottom + gap + rampHeight + margin, paper);
    drawGrid(chart);
    const std::uint32_t scale = fullScale(histogram);
    drawColumns(chart, histogram.red, scale, 16);
    drawColumns(chart, histogram.green, scale, 8);
    drawColumns(chart, histogram.blue, scale, 0);
    drawRamp(chart);
    return chart;
}

}  // namespace pxk::tool
