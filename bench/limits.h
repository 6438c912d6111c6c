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

/// How many rows or columns the limits of scrolling move pictures by.
inline constexpr int limitDistance = 37;
extern const Limit moveRowsLimit;     ///< memmove of a picture's rows to other rows of it
extern const Limit moveColumnsLimit;  ///< memmove within a picture's rows
extern const Limit moveBothLimit;     ///< one after the other

extern const Limit toStringLimit;   ///< one picture read, three bytes a pixel written, a host string made of them
extern const Limit fromBytesLimit;  ///< three bytes a pixel read, one picture written
extern const Limit samplesLimit;    ///< samples read once, the negative ones and the others added up separately

}  // namespace pxkbench
