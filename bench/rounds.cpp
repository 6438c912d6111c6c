#include "bench/rounds.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <iterator>
#include <random>

namespace pxkbench {
namespace {

double cpuSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

int maxCallsTogether(PictureSize size) {
    constexpr long long pixelsTogether = 1 << 22;
    constexpr long long most = 10000;
    return static_cast<int>(std::clamp(pixelsTogether / size.pixels(), 1LL, most));
}

// After other slow work, a processor needs this long to reach full speed on pictures in its cache.
void warmUp(const std::function<void()>& run) {
    constexpr double longEnough = 0.003;
    const double start = cpuSeconds();
    do run();
    while (cpuSeconds() - start < longEnough);
}

double secondsPerCall(const std::function<void()>& run, int calls) {
    if (calls > 1) warmUp(run);
    const double start = cpuSeconds();
    for (int call = 0; call < calls; ++call) run();
    return (cpuSeconds() - start) / calls;
}

// Slow candidates are called less often per round, so that there are enough rounds. Also warms up the memory.
int callsPerRound(const std::function<void()>& run, PictureSize size) {
    constexpr double longEnough = 0.002;
    const int most = maxCallsTogether(size);
    const double seconds = secondsPerCall(run, std::min(most, 4));
    return static_cast<int>(std::clamp(longEnough / seconds, 1.0, static_cast<double>(most)));
}

template <class Operation>
std::vector<double> pairwise(const std::vector<double>& a, const std::vector<double>& b, Operation operation) {
    std::vector<double> results;
    std::transform(a.begin(), a.end(), b.begin(), std::back_inserter(results), operation);
    return results;
}

}  // namespace

void runRounds(benchmark::State& state, std::span<Candidate> candidates, PictureSize size,
               const std::function<void()>& betweenRounds) {
    for (Candidate& candidate : candidates) candidate.calls = callsPerRound(candidate.run, size);
    std::vector<Candidate*> order;
    for (Candidate& candidate : candidates) order.push_back(&candidate);
    std::minstd_rand random;
    for (auto _ : state) {
        // In random order, since each candidate finds caches and clock rate as the one before it left them.
        std::shuffle(order.begin(), order.end(), random);
        const double start = cpuSeconds();
        for (Candidate* const candidate : order)
            candidate->seconds.push_back(secondsPerCall(candidate->run, candidate->calls));
        state.SetIterationTime(cpuSeconds() - start);
        if (betweenRounds) betweenRounds();
    }
}

double timeOnce(const std::function<void()>& run, PictureSize size) {
    return secondsPerCall(run, maxCallsTogether(size));
}

const Candidate& fastest(std::span<const Candidate> candidates) {
    return *std::min_element(candidates.begin(), candidates.end(), [](const Candidate& one, const Candidate& other) {
        return median(one.seconds) < median(other.seconds);
    });
}

std::vector<double> differences(const std::vector<double>& a, const std::vector<double>& b) {
    return pairwise(a, b, std::minus<>());
}

std::vector<double> ratios(const std::vector<double>& a, const std::vector<double>& b) {
    return pairwise(a, b, std::divides<>());
}

}  // namespace pxkbench
