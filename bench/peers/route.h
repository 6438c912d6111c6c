/// One way in which a library does a member's work.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "bench/outcome.h"
#include "bench/workspace.h"

namespace pxkbench {

/// A picture as libraries like it best: one block of opaque words 0xFFRRGGBB, which are the bytes blue, green, red and
/// alpha.
using Words = std::vector<std::uint32_t>;

/// The workspace's pictures for libraries.
struct PeerPictures {
    explicit PeerPictures(const Workspace& work);

    int width;
    int height;
    Words source;
    Words second;
    Words third;
    Words target;
};

/// A route on its way: `run` does the work once, into memory made before unless it cannot be told to; `outcome` is what
/// the last run gave.
struct PeerRun {
    std::function<void()> run;
    std::function<Outcome()> outcome;
};

/// The colours of a picture of words.
Outcome coloursOf(std::span<const std::uint32_t> words);

struct Route {
    std::string row;   ///< the name of the member's row
    std::string call;  ///< what is called of the library
    /// How far a channel may be off, by the library's own rounding; in numbers nothing may.
    int tolerance;
    std::function<PeerRun(const PeerPictures&)> prepare;
    /// Whether the library makes its result anew each time, or a host string has to be made of it: then it stands
    /// against the whole of the member's call, else against that less the making of a picture.
    bool makesResult = false;
};

/// A library, by its name and version, with its routes.
struct Library {
    std::string name;
    std::vector<Route> routes;
};

/// The libraries that were found when this program was built. Those that were not are named in `absent`.
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
/// What the C library does for such work.
Library cLibrary();

}  // namespace pxkbench
