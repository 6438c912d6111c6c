#include "bench/peers/contest.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <functional>
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

// The pictures of a contest. Where in memory they come to lie decides how fast they are read and written, by up to a
// third for small pictures and a fifth for large ones. So there are several of each, and everyone goes on to other ones
// from round to round.
class Places {
  public:
    Places(const pxkhost::Host& host, PictureSize size, Content content) : host_(host), size_(size) {
        constexpr std::size_t manySmall = 5;
        constexpr std::size_t someLarge = 3;
        const std::size_t count = size.pixels() > smallSize.pixels() ? someLarge : manySmall;
        for (std::size_t place = 0; place < count; ++place) {
            work_.push_back(&workspaceFor(host, size, content, place));
            pictures_.emplace_back(*work_.back());
            results_.push_back(newPicture());
        }
        results_[now_] = nullptr;
    }

    const Workspace& work() const { return *work_.front(); }

    // The host makes its next picture of the memory that was given back last, so the one result not kept is used.
    void goOn() {
        results_[now_] = newPicture();
        now_ = (now_ + 1) % results_.size();
        results_[now_] = nullptr;
    }

    // Readies something in every place, and runs it once so that its memory is warm.
    template <class Prepare>
    Contestant everywhere(Prepare prepare) const {
        std::vector<std::function<void()>> runs;
        for (std::size_t place = 0; place < work_.size(); ++place) {
            runs.push_back(prepare(*work_[place], pictures_[place]));
            runs.back()();
        }
        return {[this, runs = std::move(runs)] { runs[now_](); }};
    }

  private:
    pxkhost::Ref<pxkhost::Picture> newPicture() const { return host_.newPicture(size_.width, size_.height); }

    const pxkhost::Host& host_;
    PictureSize size_;
    std::vector<const Workspace*> work_;
    std::deque<PeerPictures> pictures_;  // which routes refer to
    std::vector<pxkhost::Ref<pxkhost::Picture>> results_;
    std::size_t now_ = 0;
};

}  // namespace

const PeerFinding* Finding::best() const {
    const auto found = std::min_element(peers.begin(), peers.end(),
                                        [](const PeerFinding& a, const PeerFinding& b) { return a.ratio < b.ratio; });
    return found == peers.end() ? nullptr : &*found;
}

Finding contest(benchmark::State& state, const Row& row, const pxkhost::Host& host, PictureSize size, Content content,
                const std::vector<NamedRoute>& routes) {
    Places places(host, size, content);
    Outcome outcome;
    row.prepare(places.work())(&outcome);

    const bool makesPicture = row.makes == Makes::picture;
    std::vector<Contestant> contestants = {
        places.everywhere([&](const Workspace& work, const PeerPictures&) { return timed(row.prepare(work)); }), {[&] {
            if (makesPicture) static_cast<void>(host.newPicture(size.width, size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops)
        contestants.push_back(
            places.everywhere([&](const Workspace& work, const PeerPictures&) { return [&] { loop.run(work); }; }));
    const std::size_t firstPeer = contestants.size();
    for (const NamedRoute& route : routes)
        contestants.push_back(places.everywhere([&](const Workspace& work, const PeerPictures& pictures) {
            const PeerRun peer = route.second->prepare(pictures);
            peer.run();
            if (&work == &places.work()) expectAgreement(route, outcome, peer.outcome());
            return peer.run;
        }));
    runRounds(state, contestants, size, [&] { places.goOn(); });

    const std::vector<double>& call = contestants[0].seconds;
    const std::vector<double> works = makesPicture ? differences(call, contestants[1].seconds) : call;
    const Contestant& limit = fastest(std::span(contestants).subspan(2, firstPeer - 2));
    Finding finding = {row.name,
                       content,
                       size,
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
