/// Plain loops that read and write the same bytes as a member: a lower limit on what its work can cost.
#pragma once

#include <span>

#include "bench/workspace.h"

namespace pxkbench {

/// One way to read and write the bytes.
struct LimitLoop {
    const char* name;
    void (*run)(const Workspace&);
};

/// The loops that are tried for one memory access pattern; the fastest counts.
struct Limit {
    const char* name;
    std::span<const LimitLoop> loops;
};

extern const Limit copyLimit;        ///< one picture read, one written
extern const Limit readLimit;        ///< one picture read
extern const Limit inPlaceLimit;     ///< one picture read and written in place
extern const Limit twoToOneLimit;    ///< two pictures read, one written
extern const Limit threeToOneLimit;  ///< three pictures read, one written

/// By how many rows or columns the limits for scrolling shift pictures.
inline constexpr int limitDistance = 37;
extern const Limit moveRowsLimit;     ///< memmove of whole rows within a picture
extern const Limit moveColumnsLimit;  ///< memmove within a picture's rows
extern const Limit moveBothLimit;     ///< both of these in turn

extern const Limit toStringLimit;   ///< one picture read, three bytes per pixel written and made into a host string
extern const Limit fromBytesLimit;  ///< three bytes per pixel read, one picture written
extern const Limit samplesLimit;    ///< samples read once; negative and non-negative ones summed separately

}  // namespace pxkbench
