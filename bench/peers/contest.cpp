#include "bench/peers/contest.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "bench/compare/verdict.h"
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

// Where a small picture comes to lie decides how well it fits the caches, by up to a third. So members and peers write
// to several places in turn, from round to round.
class ResultPictures {
  public:
    explicit ResultPictures(const Workspace& work) : work_(work) {
        for (pxkhost::Ref<pxkhost::Picture>& picture : kept_) picture = make();
        kept_[place_] = nullptr;
    }

    std::size_t places() const { return kept_.size(); }
    std::size_t place() const { return place_; }

    // The host makes its next picture of the memory that was given back last, so the one place not kept is used.
    void goOn() {
        kept_[place_] = make();
        place_ = (place_ + 1) % places();
        kept_[place_] = nullptr;
    }

  private:
    pxkhost::Ref<pxkhost::Picture> make() const { return work_.host.newPicture(work_.size.width, work_.size.height); }

    const Workspace& work_;
    std::vector<pxkhost::Ref<pxkhost::Picture>> kept_{work_.size.pixels() > smallSize.pixels() ? 1U : 5U};
    std::size_t place_ = 0;
};

}  // namespace

const PeerFinding* Finding::best() const {
    const auto found = std::min_element(peers.begin(), peers.end(),
                                        [](const PeerFinding& a, const PeerFinding& b) { return a.ratio < b.ratio; });
    return found == peers.end() ? nullptr : &*found;
}

Finding contest(benchmark::State& state, const Row& row, const Workspace& work, const std::vector<NamedRoute>& routes) {
    ResultPictures results(work);
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
        std::vector<std::function<void()>> runs;
        for (std::size_t place = 0; place < results.places(); ++place) {
            const PeerRun peer = route.second->prepare(pictures);
            peer.run();
            if (place == 0) expectAgreement(route, outcome, peer.outcome());
            runs.push_back(peer.run);
        }
        contestants.push_back({[&results, runs = std::move(runs)] { runs[results.place()](); }});
    }
    runRounds(state, contestants, work.size, [&] { results.goOn(); });

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
        const Verdict verdict = judge(ratios(seconds, route->makesResult ? call : works));
        finding.peers.push_back({library, route->call, route->makesResult, median(seconds), verdict.ratio,
                                 verdict.change == Change::faster});
    }
    return finding;
}

}  // namespace pxkbench
