/// Several ways to do the same work, timed in turn.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <span>
#include <vector>

#include "bench/median.h"
#include "bench/workspace.h"

namespace pxkbench {

/// One thing that is timed in every round.
struct Contestant {
    std::function<void()> run;
    std::vector<double> seconds{};  ///< a call, by round
    int calls = 1;                  ///< at a time
};

/// Runs everything in turn, in rounds, until Google Benchmark has enough; the time it counts is that of whole rounds.
/// Times are this process's on a processor, so that other programs' turns do not count, while a library's threads do.
/// Small pictures are timed several calls at a time, the first being left out, so that each contestant finds its own
/// pictures in the cache rather than another's; large pictures do not stay there anyway.
/// `betweenRounds` may change what the contestants work on.
void runRounds(benchmark::State& state, std::span<Contestant> contestants, PictureSize size,
               const std::function<void()>& betweenRounds = {});

/// The seconds of one call, timed once in the same way.
double timeOnce(const std::function<void()>& run, PictureSize size);

/// The one with the smallest median.
const Contestant& fastest(std::span<const Contestant> contestants);

/// a - b and a / b, round by round.
std::vector<double> differences(const std::vector<double>& a, const std::vector<double>& b);
std::vector<double> ratios(const std::vector<double>& a, const std::vector<double>& b);

}  // namespace pxkbench
