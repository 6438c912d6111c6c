/// The measurement of one row of the table, on one kind of picture in one size.
#pragma once

#include <benchmark/benchmark.h>

#include "bench/rows.h"

namespace pxkbench {

/// The names under which a benchmark's counters carry its figures: nanoseconds a pixel, or ratios.
namespace counter {
inline constexpr const char* call = "call";
inline constexpr const char* making = "making";
inline constexpr const char* work = "work";
inline constexpr const char* limit = "limit";
inline constexpr const char* ratio = "ratio";
inline constexpr const char* bar = "bar";
}  // namespace counter

/// What a call may cost at most by itself.
inline constexpr double longestFixedCost = 1e-6;

/// Times the row's limit loops, the making of a picture and the member itself in turn, once or a few calls at a time,
/// until Google Benchmark has enough; the time it counts is that of whole rounds. Figures are medians over the rounds.
/// The ratio is the median of each round's (call - making) / limit, so that a slow moment of the machine slows both
/// sides of it; the limit is the fastest of the row's loops.
///
/// On one pixel the whole call, the result picture included, stands against `longestFixedCost` instead.
void measure(benchmark::State& state, const Row& row, const Workspace& work);

}  // namespace pxkbench
