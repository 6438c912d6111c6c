/// Words to the user about what went wrong.
#pragma once

#include <string>
#include <string_view>

namespace pxk::tool {

/// Writes "pxk: message" to standard error. Each line is made fit for a terminal.
void report(std::string_view message);

/// Makes sure that all that was printed has arrived. Throws WorkError when standard output could not take it.
void flushOutput();

}  // namespace pxk::tool
