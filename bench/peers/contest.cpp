#include "bench/peers/contest.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "bench/rounds.h"

namespace pxkbench {
namespace {

int largestDifference(std::uint32_t a, std::uint32_t b) {
    int largest = 0;
    for (int shift = 0; shift < 32; shift += 8)
        largest = std::max(largest, std::abs(static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255)));
    return largest;
}

void expectAgreement(const NamedRoute& route, const Outcome& members, const Outcome& peers) {
    const std::string name = route.first + " " + route.second->call;
    if (members.empty() || members.size() != peers.size())
        throw std::runtime_error(name + " gives " + std::to_string(peers.size()) + " values where the member gives " +
                                 std::to_string(members.size()));
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i] == peers[i]) continue;
        if (route.second->tolerance == 0 || largestDifference(members[i], peers[i]) > route.second->tolerance)
            throw std::runtime_error(name + " gives " + std::to_string(peers[i]) + " where the member gives " +
                                     std::to_string(members[i]) + ", at " + std::to_string(i));
    }
}

}  // namespace

const PeerFinding* Finding::best() const {
    const auto found = std::min_element(peers.begin(), peers.end(),
                                        [](const PeerFinding& a, const PeerFinding& b) { return a.ratio < b.ratio; });
    return found == peers.end() ? nullptr : &*found;
}

Finding contest(benchmark::State& state, const Row& row, const Workspace& work, const std::vector<NamedRoute>& routes) {
    const PeerPictures pictures(work);
    const Call member = row.prepare(work);
    Outcome outcome;
    member(&outcome);

    const bool makesPicture = row.makes == Makes::picture;
    std::vector<Contestant> contestants = {
        {timed(member)}, {[&] {
            if (makesPicture) static_cast<void>(work.host.newPicture(work.size.width, work.size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops) contestants.push_back({[&] { loop.run(work); }});
    const std::size_t firstPeer = contestants.size();
    for (const NamedRoute& route : routes) {
        const PeerRun peer = route.second->prepare(pictures);
        peer.run();
        expectAgreement(route, outcome, peer.outcome());
        contestants.push_back({peer.run});
    }
    runRounds(state, contestants, work.size);

    const std::vector<double>& call = contestants[0].seconds;
    const std::vector<double> works = makesPicture ? differences(call, contestants[1].seconds) : call;
    const Contestant& limit = fastest(std::span(contestants).subspan(2, firstPeer - 2));
    Finding finding = {row.name,
                       work.content,
                       work.size,
                       median(works),
                       median(call),
                       median(limit.seconds),
                       row.limit->name,
                       median(ratios(limit.seconds, works)),
                       {}};
    for (std::size_t i = 0; i < routes.size(); ++i) {
        const auto& [library, route] = routes[i];
        const std::vector<double>& seconds = contestants[firstPeer + i].seconds;
        finding.peers.push_back({library, route->call, route->makesResult, median(seconds),
                                 median(ratios(seconds, route->makesResult ? call : works))});
    }
    return finding;
}

}  // namespace pxkbench
