#include "bench/measure.h"

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <span>
#include <vector>

namespace pxkbench {
namespace {

// This thread's time on a processor, so that other programs' turns do not count.
double threadSeconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// One thing that is timed in every round.
struct Contestant {
    std::function<void()> run;
    std::vector<double> seconds{};  // a call, by round
};

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Small pictures are timed several calls at a time, the first being left out, so that each contestant finds its own
// pictures in the cache rather than another's. Large pictures do not stay there anyway.
int callsAtATime(PictureSize size) {
    constexpr long long pixelsAtATime = 1 << 22;
    constexpr long long most = 10000;
    return static_cast<int>(std::clamp(pixelsAtATime / size.pixels(), 1LL, most));
}

double secondsOfACall(const std::function<void()>& run, int calls) {
    if (calls > 1) run();
    const double start = threadSeconds();
    for (int call = 0; call < calls; ++call) run();
    return (threadSeconds() - start) / calls;
}

const Contestant& fastest(std::span<const Contestant> contestants) {
    return *std::min_element(
        contestants.begin(), contestants.end(),
        [](const Contestant& one, const Contestant& other) { return median(one.seconds) < median(other.seconds); });
}

// Runs everything in turn, in rounds, until Google Benchmark has enough.
void runRounds(benchmark::State& state, std::vector<Contestant>& contestants, int calls) {
    for (Contestant& contestant : contestants) secondsOfACall(contestant.run, calls);  // warms the memory
    std::size_t first = 0;
    for (auto _ : state) {
        double round = 0;
        for (std::size_t turn = 0; turn < contestants.size(); ++turn) {
            Contestant& contestant = contestants[(first + turn) % contestants.size()];
            contestant.seconds.push_back(secondsOfACall(contestant.run, calls));
            round += contestant.seconds.back() * calls;
        }
        ++first;  // nobody always follows the same one
        state.SetIterationTime(round);
    }
}

void measureFixedCost(benchmark::State& state, const Row& row, const Workspace& work) {
    std::vector<Contestant> contestants = {{row.prepare(work)}};
    runRounds(state, contestants, callsAtATime(work.size));
    const double call = median(contestants[0].seconds);
    state.counters[counter::call] = call * 1e9;
    state.counters[counter::work] = call * 1e9;
    state.counters[counter::limit] = longestFixedCost * 1e9;
    state.counters[counter::ratio] = call / longestFixedCost;
    state.counters[counter::bar] = 1;
    state.SetLabel("1000 ns");
}

void measureWork(benchmark::State& state, const Row& row, const Workspace& work) {
    const bool makesPicture = row.makes == Makes::picture;
    std::vector<Contestant> contestants = {
        {row.prepare(work)}, {[&] {
            if (makesPicture) static_cast<void>(work.host.newPicture(work.size.width, work.size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops) contestants.push_back({[&] { loop.run(work); }});
    runRounds(state, contestants, callsAtATime(work.size));

    const std::vector<double>& call = contestants[0].seconds;
    const std::vector<double>& making = contestants[1].seconds;
    const std::vector<double>& limit = fastest(std::span(contestants).subspan(2)).seconds;
    std::vector<double> works;
    std::vector<double> ratios;
    for (std::size_t round = 0; round < call.size(); ++round) {
        works.push_back(call[round] - (makesPicture ? making[round] : 0));
        ratios.push_back(works.back() / limit[round]);
    }

    const auto perPixel = [&](double seconds) { return seconds * 1e9 / static_cast<double>(work.size.pixels()); };
    state.counters[counter::call] = perPixel(median(call));
    state.counters[counter::making] = makesPicture ? perPixel(median(making)) : 0;
    state.counters[counter::work] = perPixel(median(works));
    state.counters[counter::limit] = perPixel(median(limit));
    state.counters[counter::ratio] = median(ratios);
    state.counters[counter::bar] = work.size == smallSize ? row.bars.small : row.bars.large;
    state.SetLabel(row.limit->name);
}

}  // namespace

void measure(benchmark::State& state, const Row& row, const Workspace& work) {
    (work.size == onePixel ? measureFixedCost : measureWork)(state, row, work);
}

}  // namespace pxkbench
