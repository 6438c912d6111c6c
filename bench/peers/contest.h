/// A member beside all routes that libraries have to the same result.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

#include "bench/peers/route.h"
#include "bench/rows.h"

namespace pxkbench {

/// A route, and how long it took.
struct PeerFinding {
    std::string madeBy;
    std::string call;
    bool makesResult;
    double seconds;
    /// How many times as long as the member, as the median over rounds.
    double ratio;
    /// Whether the member is slower, told from the noise of the rounds.
    bool beatsMember;
};

/// What came out of a contest. Seconds are medians of a call over the rounds.
struct Finding {
    std::string row;
    Content content;
    PictureSize size;
    double work;  ///< the member's call less making the result picture
    double call;
    double limit;
    std::string limitName;
    /// The member's share of the best that memory allows: limit / work, as the median over rounds.
    double fraction;
    std::vector<PeerFinding> peers;

    /// The peer with the smallest ratio; nil when there is none.
    const PeerFinding* best() const;
    double perPixel(double seconds) const { return seconds * 1e9 / static_cast<double>(size.pixels()); }
};

/// A route with the name of its library.
using NamedRoute = std::pair<std::string, const Route*>;

/// Lets member, limits and routes run once, holds the routes' outcomes against the member's, and then times them all in
/// turn, in several places in memory. Throws when an outcome differs by more than the route's tolerance.
Finding contest(benchmark::State& state, const Row& row, const pxkhost::Host& host, PictureSize size, Content content,
                const std::vector<NamedRoute>& routes);

}  // namespace pxkbench
