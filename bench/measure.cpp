#include "bench/measure.h"

#include <span>
#include <vector>

#include "bench/rounds.h"

namespace pxkbench {
namespace {

void measureFixedCost(benchmark::State& state, const Row& row, const Workspace& work) {
    std::vector<Contestant> contestants = {{timed(row.prepare(work))}};
    runRounds(state, contestants, work.size);
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
        {timed(row.prepare(work))}, {[&] {
            if (makesPicture) static_cast<void>(work.host.newPicture(work.size.width, work.size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops) contestants.push_back({[&] { loop.run(work); }});
    runRounds(state, contestants, work.size);

    const std::vector<double>& call = contestants[0].seconds;
    const std::vector<double>& making = contestants[1].seconds;
    const std::vector<double>& limit = fastest(std::span(contestants).subspan(2)).seconds;
    const std::vector<double> works = makesPicture ? differences(call, making) : call;

    const auto perPixel = [&](double seconds) { return seconds * 1e9 / static_cast<double>(work.size.pixels()); };
    state.counters[counter::call] = perPixel(median(call));
    state.counters[counter::making] = makesPicture ? perPixel(median(making)) : 0;
    state.counters[counter::work] = perPixel(median(works));
    state.counters[counter::limit] = perPixel(median(limit));
    state.counters[counter::ratio] = median(ratios(works, limit));
    state.counters[counter::bar] = work.size == smallSize ? row.bars.small : row.bars.large;
    state.SetLabel(row.limit->name);
}

}  // namespace

void measure(benchmark::State& state, const Row& row, const Workspace& work) {
    (work.size == onePixel ? measureFixedCost : measureWork)(state, row, work);
}

}  // namespace pxkbench
