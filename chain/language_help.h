/// The chain language, explained.
#pragma once

namespace pxk::chain {

/// A page of plain text, in lines of at most 120 characters.
extern const char* const languageHelp;

}  // namespace pxk::chain
