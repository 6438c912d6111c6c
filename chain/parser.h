/// Parses the text of a chain.
#pragma once

#include <string_view>

#include "chain/chain.h"

namespace pxk::chain {

/// How deeply calls may be nested in the arguments of calls.
inline constexpr int deepestNesting = 50;

/// Reads a chain, in the syntax of the host's language:
///
///     chain      statement, with one or more line ends between two of them
///     statement  [pic =] [pic.] step {. step} [= argument]
///     step       Name [( [argument {, argument}] )]
///     argument   value, pic {. step}, variable, Name [( indices )] = argument
///     value      12  -1.5e3  true  false  nil  "text, a quote doubled: "" "  &cRRGGBB  &hFF
///
/// Letter case does not matter. Line ends inside brackets, around a dot and after a `_` are blanks. A comment starts
/// with ' or // or the word REM and runs to the end of its line. Safe on any text. Throws ChainError, which says where
/// the mistake is and what was expected there.
Chain parseChain(std::string_view text);

}  // namespace pxk::chain
