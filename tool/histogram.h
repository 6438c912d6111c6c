/// How often each value of each channel occurs in a picture.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "open_host.h"
#include "raster.h"

namespace pxk::tool {

using Counters = std::array<std::uint32_t, 256>;

struct Histogram {
    Counters red;
    Counters green;
    Counters blue;
};

/// Counts through CountColorsPXK. Throws WorkError.
Histogram histogramOf(OpenHost& host, const Object& picture);

/// The counters as lines "value,red,green,blue" under a heading, for spreadsheets.
std::string asCsv(const Histogram& histogram);

/// The three histograms over each other in light colours, which add up to white where they meet, with the values from
/// black to white below. The counters are drawn to one linear scale, at least a pixel for each that is not 0. Its top
/// is the largest counter, 0 and 255 apart, so that cut-off shadows and lights do not flatten the rest; their columns
/// end at the top.
Raster chartOf(const Histogram& histogram);

}  // namespace pxk::tool
