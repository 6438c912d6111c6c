/// A route: one way to do a member's work with a library.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "bench/outcome.h"
#include "bench/workspace.h"

namespace pxkbench {

/// A picture in the layout that suits libraries best: contiguous opaque words 0xFFRRGGBB, in memory the bytes blue,
/// green, red and alpha.
using Words = std::vector<std::uint32_t>;

/// The workspace's pictures, converted for libraries.
struct PeerPictures {
    explicit PeerPictures(const Workspace& work);

    int width;
    int height;
    Words source;
    Words second;
    Words third;
    Words target;
};

/// A prepared route: `run` does the work once, if possible into memory allocated in advance; `outcome` is that of the
/// last run.
struct PeerRun {
    std::function<void()> run;
    std::function<Outcome()> outcome;
};

/// The colours of a picture of words.
Outcome coloursOf(std::span<const std::uint32_t> words);

struct Route {
    std::string row;   ///< the name of the member's row
    std::string call;  ///< the library's functions that it calls
    /// By how much a channel may differ, because of the library's own rounding. 0 for outcomes that are numbers.
    int tolerance;
    std::function<PeerRun(const PeerPictures&)> prepare;
    /// Whether each run allocates its result, or makes a host string of it. It is then compared with the member's whole
    /// call, otherwise with that less the creation of a picture.
    bool allocatesResult = false;
};

/// A library and its routes.
struct Library {
    std::string name;  ///< with its version
    std::vector<Route> routes;
};

/// The libraries that were found when this program was built, and the names of those that were not.
struct Libraries {
    std::vector<Library> present;
    std::vector<std::string> absent;
};
Libraries allLibraries();

Library openCv();
Library libvips();
Library libgd();
Library littleCms();
Library libavfilter();
/// The C library.
Library cLibrary();

}  // namespace pxkbench
