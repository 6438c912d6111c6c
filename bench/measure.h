/// The measurement of one row of the table, on a picture of one content and size.
#pragma once

#include <benchmark/benchmark.h>

#include "bench/rows.h"

namespace pxkbench {

/// The names of a benchmark's counters: nanoseconds per pixel, or ratios.
namespace counter {
inline constexpr const char* call = "call";
inline constexpr const char* creation = "creation";
inline constexpr const char* work = "work";
inline constexpr const char* limit = "limit";
inline constexpr const char* ratio = "ratio";
inline constexpr const char* threshold = "threshold";
}  // namespace counter

/// The most that a call on a single pixel may take, in seconds.
inline constexpr double maxCallOverhead = 1e-6;

/// Times the member itself, the creation of a picture and the row's limit loops in turn, in rounds of one or several
/// calls each, until Google Benchmark has enough iterations; it is given the time of whole rounds. Results are medians
/// over the rounds. The ratio is the median of each round's (call - creation) / limit, so that a temporary slowdown of
/// the machine affects both sides of it; the limit is the fastest of the row's loops.
///
/// On one pixel, the whole call, including the creation of its result, is compared with `maxCallOverhead` instead.
void measure(benchmark::State& state, const Row& row, const Workspace& work);

}  // namespace pxkbench
