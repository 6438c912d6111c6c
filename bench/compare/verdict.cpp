#include "bench/compare/verdict.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/median.h"

namespace pxkbench {

Verdict judge(std::span<const double> runRatios, double minimum) {
    constexpr std::size_t fewestRuns = 3;
    const std::vector<double> ratios(runRatios.begin(), runRatios.end());
    Verdict verdict;
    verdict.ratio = median(ratios);
    verdict.threshold = minimum;
    if (ratios.size() < fewestRuns) return verdict;

    std::vector<double> deviations;
    for (const double ratio : ratios) deviations.push_back(std::fabs(ratio - verdict.ratio));
    const double standardDeviation = 1.4826 * median(deviations);
    const double standardError = 1.2533 * standardDeviation / std::sqrt(static_cast<double>(ratios.size()));
    verdict.threshold = std::max(minimum, 3 * standardError);
    if (verdict.ratio > 1 + verdict.threshold) verdict.change = Change::slower;
    if (verdict.ratio < 1 - verdict.threshold) verdict.change = Change::faster;
    return verdict;
}

std::string textOf(Change change) {
    switch (change) {
        case Change::slower:
            return "slower";
        case Change::faster:
            return "faster";
        case Change::none:
            break;
    }
    return {};
}

}  // namespace pxkbench
