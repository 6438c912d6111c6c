/// Points at a mistake in the text of a chain.
#pragma once

#include <string>
#include <string_view>

#include "chain/error.h"

namespace pxk::chain {

/// The message with its position, then the line of the chain and a caret below the mistake:
///
///     line 2, column 14: expected "," or ")"
///       InvertPXK(10 10)
///                    ^
///
/// The line number is left out when the text has one line only. A long line is shown around the mistake.
std::string pointAt(std::string_view text, const ChainError& error);

}  // namespace pxk::chain
