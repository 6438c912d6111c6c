/// What comes out of a call, so that it can be held against what comes out of another way to do the same work.
#pragma once

#include <cstdint>
#include <vector>

#include "host/objects/strings.h"
#include "host/pictures/picture.h"

namespace pxkbench {

/// A picture's colours, 0xRRGGBB, row by row; or numbers.
using Outcome = std::vector<std::uint32_t>;

/// A picture's colours; alpha is left out.
Outcome outcomeOf(const pxkhost::Picture& picture);

/// The colours in a binary string, behind its header.
Outcome outcomeOf(const pxkhost::String& string);

inline Outcome outcomeOf(bool answer) { return {answer ? 1U : 0U}; }
inline Outcome outcomeOf(std::int32_t number) { return {static_cast<std::uint32_t>(number)}; }

template <class T>
Outcome outcomeOf(const pxkhost::Ref<T>& object) {
    return outcomeOf(*object);
}

}  // namespace pxkbench
