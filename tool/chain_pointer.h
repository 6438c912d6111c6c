/// A mistake in a chain, shown where it stands.
#pragma once

#include <string>
#include <string_view>

#include "error.h"

namespace pxk::tool {

/// The message with its place, then the line of the chain and a caret under that place:
///
///     line 2, column 14: "," or ")" is wanted here
///       InvertPXK(10 10)
///                    ^
///
/// The line is named only when the text has several. A long line is shown around the place.
std::string pointAt(std::string_view text, const ChainError& error);

}  // namespace pxk::tool
