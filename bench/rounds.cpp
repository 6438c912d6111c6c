#include "bench/rounds.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <iterator>
#include <random>

namespace pxkbench {
namespace {

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

int callsAtATime(PictureSize size) {
    constexpr long long pixelsAtATime = 1 << 22;
    constexpr long long most = 10000;
    return static_cast<int>(std::clamp(pixelsAtATime / size.pixels(), 1LL, most));
}

// After slow work of another kind it takes a processor that long to be as fast as it gets on pictures in its cache.
void warmUp(const std::function<void()>& run) {
    constexpr double longEnough = 0.003;
    const double start = processorSeconds();
    do run();
    while (processorSeconds() - start < longEnough);
}

double secondsOfACall(const std::function<void()>& run, int calls) {
    if (calls > 1) warmUp(run);
    const double start = processorSeconds();
    for (int call = 0; call < calls; ++call) run();
    return (processorSeconds() - start) / calls;
}

// Slow contestants are called less often, so that there are rounds enough. Warms the memory, too.
int callsInARound(const std::function<void()>& run, PictureSize size) {
    constexpr double longEnough = 0.002;
    const int most = callsAtATime(size);
    const double seconds = secondsOfACall(run, std::min(most, 4));
    return static_cast<int>(std::clamp(longEnough / seconds, 1.0, static_cast<double>(most)));
}

template <class Operation>
std::vector<double> pairwise(const std::vector<double>& a, const std::vector<double>& b, Operation operation) {
    std::vector<double> results;
    std::transform(a.begin(), a.end(), b.begin(), std::back_inserter(results), operation);
    return results;
}

}  // namespace

void runRounds(benchmark::State& state, std::span<Contestant> contestants, PictureSize size,
               const std::function<void()>& betweenRounds) {
    for (Contestant& contestant : contestants) contestant.calls = callsInARound(contestant.run, size);
    std::vector<Contestant*> order;
    for (Contestant& contestant : contestants) order.push_back(&contestant);
    std::minstd_rand random;
    for (auto _ : state) {
        // Nobody always follows the same one: a slow contestant leaves caches and clock to the next as they suit none.
        std::shuffle(order.begin(), order.end(), random);
        const double start = processorSeconds();
        for (Contestant* const contestant : order)
            contestant->seconds.push_back(secondsOfACall(contestant->run, contestant->calls));
        state.SetIterationTime(processorSeconds() - start);
        if (betweenRounds) betweenRounds();
    }
}

double timeOnce(const std::function<void()>& run, PictureSize size) { return secondsOfACall(run, callsAtATime(size)); }

const Contestant& fastest(std::span<const Contestant> contestants) {
    return *std::min_element(
        contestants.begin(), contestants.end(),
        [](const Contestant& one, const Contestant& other) { return median(one.seconds) < median(other.seconds); });
}

std::vector<double> differences(const std::vector<double>& a, const std::vector<double>& b) {
    return pairwise(a, b, std::minus<>());
}

std::vector<double> ratios(const std::vector<double>& a, const std::vector<double>& b) {
    return pairwise(a, b, std::divides<>());
}

}  // namespace pxkbench
