/// The outcome of a call, in a form that can be compared with that of another implementation.
#pragma once

#include <cstdint>
#include <vector>

#include "host/objects/strings.h"
#include "host/pictures/picture.h"

namespace pxkbench {

/// A picture's colours, 0xRRGGBB, row by row; or a few numbers.
using Outcome = std::vector<std::uint32_t>;

/// A picture's colours, without alpha.
Outcome outcomeOf(const pxkhost::Picture& picture);

/// The colours in a binary string, after its header.
Outcome outcomeOf(const pxkhost::String& string);

inline Outcome outcomeOf(bool answer) { return {answer ? 1U : 0U}; }
inline Outcome outcomeOf(std::int32_t number) { return {static_cast<std::uint32_t>(number)}; }

template <class T>
Outcome outcomeOf(const pxkhost::Ref<T>& object) {
    return outcomeOf(*object);
}

}  // namespace pxkbench
