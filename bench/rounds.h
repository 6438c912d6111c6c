/// Candidates, several ways to do the same work, timed in turn.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <span>
#include <vector>

#include "bench/median.h"
#include "bench/workspace.h"

namespace pxkbench {

/// A function that is timed in every round.
struct Candidate {
    std::function<void()> run;
    std::vector<double> seconds{};  ///< per call, by round
    int calls = 1;                  ///< how many are timed together
};

/// Runs all candidates in turn, in rounds, until Google Benchmark has enough iterations; it is given the time of whole
/// rounds. Times are this process's CPU time, so that other processes do not count, while a library's threads do.
/// On small pictures several calls are timed together, after a warm-up, so that each candidate finds its own pictures
/// in the cache rather than another's; large pictures do not fit into it anyway. `betweenRounds` may change what the
/// candidates work on.
void runRounds(benchmark::State& state, std::span<Candidate> candidates, PictureSize size,
               const std::function<void()>& betweenRounds = {});

/// The seconds that a call takes, timed once in the same way.
double timeOnce(const std::function<void()>& run, PictureSize size);

/// The candidate with the smallest median.
const Candidate& fastest(std::span<const Candidate> candidates);

/// a - b and a / b, round by round.
std::vector<double> differences(const std::vector<double>& a, const std::vector<double>& b);
std::vector<double> ratios(const std::vector<double>& a, const std::vector<double>& b);

}  // namespace pxkbench
