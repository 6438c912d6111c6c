/// The text of a chain, read into its parts.
#pragma once

#include <string_view>

#include "chain.h"

namespace pxk::tool {

/// How deep calls may stand inside the arguments of calls.
inline constexpr int deepestNesting = 50;

/// Reads a chain, in the syntax of the host's language:
///
///     chain      statement, with one or more line ends between two of them
///     statement  [pic =] [pic.] step {. step} [= argument]
///     step       Name [( [argument {, argument}] )]
///     argument   value, pic {. step}, variable, Name [( indices )] = argument
///     value      12  -1.5e3  true  false  nil  "text, a quote doubled: "" "  &cRRGGBB  &hFF
///
/// Names and words count in any letter case. Line ends inside brackets and around a dot are blanks, as is one after
/// a `_`. A comment starts with ' or // or the word REM and runs to the end of its line. Any text is read or refused;
/// none does harm. Throws ChainError, which says where the text breaks and what would be right there.
Chain parseChain(std::string_view text);

}  // namespace pxk::tool
