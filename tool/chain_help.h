/// The language of chains, explained.
#pragma once

namespace pxk::tool {

/// What `pxk help chain` prints.
extern const char* const chainHelp;

}  // namespace pxk::tool
