#include "bench/compare/verdict.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "bench/median.h"

namespace pxkbench {

Verdict judge(std::span<const double> ratiosOfSittings, double least) {
    constexpr std::size_t fewestSittings = 3;
    const std::vector<double> ratios(ratiosOfSittings.begin(), ratiosOfSittings.end());
    Verdict verdict;
    verdict.ratio = median(ratios);
    verdict.threshold = least;
    if (ratios.size() < fewestSittings) return verdict;

    std::vector<double> distances;
    for (const double ratio : ratios) distances.push_back(std::fabs(ratio - verdict.ratio));
    const double deviation = 1.4826 * median(distances);
    const double error = 1.2533 * deviation / std::sqrt(static_cast<double>(ratios.size()));
    verdict.threshold = std::max(least, 3 * error);
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
