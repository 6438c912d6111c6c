/// Comparison of a member with all routes to the same result that libraries offer.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

#include "bench/peers/route.h"
#include "bench/rows.h"

namespace pxkbench {

/// A route and its time.
struct PeerFinding {
    std::string library;
    std::string call;
    bool allocatesResult;
    double seconds;
    /// Its time divided by the member's: the median over rounds.
    double ratio;
    /// Whether the member is slower by more than the noise of the rounds.
    bool beatsMember;
};

/// The result of a comparison. Times are in seconds per call, medians over the rounds.
struct Finding {
    std::string row;
    Content content;
    PictureSize size;
    double work;  ///< the member's call less the creation of the result picture
    double call;
    double limit;
    std::string limitName;
    /// The speed of the member relative to the limit: limit / work, the median over rounds.
    double fraction;
    std::vector<PeerFinding> peers;

    /// The peer with the smallest ratio, or nil if there are none.
    const PeerFinding* best() const;
    double perPixel(double seconds) const { return seconds * 1e9 / static_cast<double>(size.pixels()); }
};

/// A route with the name of its library.
using NamedRoute = std::pair<std::string, const Route*>;

/// Runs the member, the limits and the routes once, compares the routes' outcomes with the member's, and then times
/// them all in turn, on several copies of the pictures. Throws when an outcome differs by more than the route's
/// tolerance.
Finding compareWithPeers(benchmark::State& state, const Row& row, const pxkhost::Host& host, PictureSize size,
                         Content content, const std::vector<NamedRoute>& routes);

}  // namespace pxkbench
