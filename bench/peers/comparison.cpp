#include "bench/peers/comparison.h"

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

void expectSameOutcome(const NamedRoute& route, const Outcome& members, const Outcome& peers) {
    const std::string name = route.first + " " + route.second->call;
    if (members.empty() || members.size() != peers.size())
        throw std::runtime_error(name + " gives " + std::to_string(peers.size()) + " values, but the member gives " +
                                 std::to_string(members.size()));
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i] == peers[i]) continue;
        if (route.second->tolerance == 0 || largestDifference(members[i], peers[i]) > route.second->tolerance)
            throw std::runtime_error(name + " gives " + std::to_string(peers[i]) + ", but the member gives " +
                                     std::to_string(members[i]) + ", at index " + std::to_string(i));
    }
}

// Several copies of a comparison's pictures. Their addresses affect how fast they are read and written, by up to a
// third for small pictures and a fifth for large ones, so every round uses another copy for all candidates.
class Copies {
  public:
    Copies(const pxkhost::Host& host, PictureSize size, Content content) : host_(host), size_(size) {
        constexpr std::size_t smallCopies = 5;
        constexpr std::size_t largeCopies = 3;
        const std::size_t count = size.pixels() > smallSize.pixels() ? largeCopies : smallCopies;
        for (std::size_t copy = 0; copy < count; ++copy) {
            work_.push_back(&workspaceFor(host, size, content, copy));
            pictures_.emplace_back(*work_.back());
            results_.push_back(newPicture());
        }
        results_[current_] = nullptr;
    }

    const Workspace& work() const { return *work_.front(); }

    // The host allocates its next picture from the memory freed last, so freeing one result decides where it goes.
    void advance() {
        results_[current_] = newPicture();
        current_ = (current_ + 1) % results_.size();
        results_[current_] = nullptr;
    }

    // Prepares a candidate on each copy, and runs it once to warm up its memory.
    template <class Prepare>
    Candidate onEachCopy(Prepare prepare) const {
        std::vector<std::function<void()>> runs;
        for (std::size_t copy = 0; copy < work_.size(); ++copy) {
            runs.push_back(prepare(*work_[copy], pictures_[copy]));
            runs.back()();
        }
        return {[this, runs = std::move(runs)] { runs[current_](); }};
    }

  private:
    pxkhost::Ref<pxkhost::Picture> newPicture() const { return host_.newPicture(size_.width, size_.height); }

    const pxkhost::Host& host_;
    PictureSize size_;
    std::vector<const Workspace*> work_;
    std::deque<PeerPictures> pictures_;  // a deque, since routes refer to its elements
    std::vector<pxkhost::Ref<pxkhost::Picture>> results_;
    std::size_t current_ = 0;
};

}  // namespace

const PeerFinding* Finding::best() const {
    const auto found = std::min_element(peers.begin(), peers.end(),
                                        [](const PeerFinding& a, const PeerFinding& b) { return a.ratio < b.ratio; });
    return found == peers.end() ? nullptr : &*found;
}

Finding compareWithPeers(benchmark::State& state, const Row& row, const pxkhost::Host& host, PictureSize size,
                         Content content, const std::vector<NamedRoute>& routes) {
    Copies copies(host, size, content);
    Outcome outcome;
    row.prepare(copies.work())(&outcome);

    const bool makesPicture = row.makes == Makes::picture;
    std::vector<Candidate> candidates = {
        copies.onEachCopy([&](const Workspace& work, const PeerPictures&) { return timed(row.prepare(work)); }), {[&] {
            if (makesPicture) static_cast<void>(host.newPicture(size.width, size.height));
        }}};
    for (const LimitLoop& loop : row.limit->loops)
        candidates.push_back(
            copies.onEachCopy([&](const Workspace& work, const PeerPictures&) { return [&] { loop.run(work); }; }));
    const std::size_t firstPeer = candidates.size();
    for (const NamedRoute& route : routes)
        candidates.push_back(copies.onEachCopy([&](const Workspace& work, const PeerPictures& pictures) {
            const PeerRun peer = route.second->prepare(pictures);
            peer.run();
            if (&work == &copies.work()) expectSameOutcome(route, outcome, peer.outcome());
            return peer.run;
        }));
    runRounds(state, candidates, size, [&] { copies.advance(); });

    const std::vector<double>& call = candidates[0].seconds;
    const std::vector<double> workTimes = makesPicture ? differences(call, candidates[1].seconds) : call;
    const Candidate& limit = fastest(std::span(candidates).subspan(2, firstPeer - 2));
    Finding finding = {row.name,
                       content,
                       size,
                       median(workTimes),
                       median(call),
                       median(limit.seconds),
                       row.limit->name,
                       median(ratios(limit.seconds, workTimes)),
                       {}};
    for (std::size_t i = 0; i < routes.size(); ++i) {
        const auto& [library, route] = routes[i];
        const std::vector<double>& seconds = candidates[firstPeer + i].seconds;
        const Verdict verdict = judge(ratios(seconds, route->allocatesResult ? call : workTimes));
        finding.peers.push_back({library, route->call, route->allocatesResult, median(seconds), verdict.ratio,
                                 verdict.change == Change::faster});
    }
    return finding;
}

}  // namespace pxkbench
