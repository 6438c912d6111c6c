#include "bench/measure.h"

#include <span>
#include <vector>

#include "bench/rounds.h"

namespace pxkbench {
namespace {

void measureOverhead(benchmark::State& state, const Row& row, const Workspace& work) {
    std::vector<Candidate> candidates = {{timed(row.prepare(work))}};
    runRounds(state, candidates, work.size);
    const double call = median(candidates[0].seconds);
    state.counters[counter::call] = call * 1e9;
    state.counters[counter::work] = call * 1e9;
    state.counters[counter::limit] = maxCallOverhead * 1e9;
    state.counters[counter::ratio] = call / maxCallOverhead;
    state.counters[counter::threshold] = 1;
    state.SetLabel("1000 ns");
}

void measureWork(benchmark::State& state, const Row& row, const Workspace& work) {
    const bool makesPicture = row.makes == Makes::picture;
    std::vector<Candidate> candidates = {
        {timed(row.prepare(work))}, {[&] {
            if (makesPicture) static_cast<void>(work.host.newPicture(work.size.width, work.size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops) candidates.push_back({[&] { loop.run(work); }});
    runRounds(state, candidates, work.size);

    const std::vector<double>& call = candidates[0].seconds;
    const std::vector<double>& creation = candidates[1].seconds;
    const std::vector<double>& limit = fastest(std::span(candidates).subspan(2)).seconds;
    const std::vector<double> workTimes = makesPicture ? differences(call, creation) : call;

    const auto perPixel = [&](double seconds) { return seconds * 1e9 / static_cast<double>(work.size.pixels()); };
    state.counters[counter::call] = perPixel(median(call));
    state.counters[counter::creation] = makesPicture ? perPixel(median(creation)) : 0;
    state.counters[counter::work] = perPixel(median(workTimes));
    state.counters[counter::limit] = perPixel(median(limit));
    state.counters[counter::ratio] = median(ratios(workTimes, limit));
    state.counters[counter::threshold] = work.size == smallSize ? row.thresholds.small : row.thresholds.large;
    state.SetLabel(row.limit->name);
}

}  // namespace

void measure(benchmark::State& state, const Row& row, const Workspace& work) {
    (work.size == onePixel ? measureOverhead : measureWork)(state, row, work);
}

}  // namespace pxkbench
