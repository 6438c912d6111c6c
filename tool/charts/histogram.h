/// How often each value of each channel occurs in a picture.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "chain/open_host.h"
#include "chain/raster.h"

namespace pxk::tool {

using Counters = std::array<std::uint32_t, 256>;

struct Histogram {
    Counters red;
    Counters green;
    Counters blue;
};

/// Counts through CountColorsPXK. Throws WorkError.
Histogram histogramOf(chain::OpenHost& host, const chain::Object& picture);

/// The counters as lines "value,red,green,blue" under a heading, for spreadsheets.
std::string asCsv(const Histogram& histogram);

/// The three histograms on top of each other in bright colours, which add up to white where they overlap, above a ramp
/// from black to white. All counters have one linear scale and at least one pixel unless they are 0. Full scale is the
/// largest counter except those of 0 and 255, so that clipped shadows and highlights do not flatten the rest; their
/// columns are clipped.
chain::Raster chartOf(const Histogram& histogram);

}  // namespace pxk::tool
