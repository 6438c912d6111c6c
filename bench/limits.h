/// Plain loops that move the same bytes as a member, which is the least that its work can cost.
#pragma once

#include <span>

#include "bench/workspace.h"

namespace pxkbench {

/// One way to move the bytes.
struct LimitLoop {
    const char* name;
    void (*run)(const Workspace&);
};

/// All the ways that are tried for one pattern of access; the fastest counts.
struct Limit {
    const char* name;
    std::span<const LimitLoop> loops;
};

extern const Limit copyLimit;        ///< one picture read, one written
extern const Limit readLimit;        ///< one picture read
extern const Limit inPlaceLimit;     ///< one picture read and written in its place
extern const Limit twoToOneLimit;    ///< two pictures read, one written
extern const Limit threeToOneLimit;  ///< three pictures read, one written
extern const Limit moveLimit;        ///< memmove of a picture's rows within the picture, by one row

}  // namespace pxkbench
