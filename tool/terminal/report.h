/// Messages to the user, and output that must arrive.
#pragma once

#include <string>
#include <string_view>

namespace pxk::tool {

/// Writes "pxk: message" to standard error, control characters escaped.
void report(std::string_view message);

/// A name for standard output: control characters are escaped when that is a terminal, which would obey them.
std::string shownName(const std::string& name);

/// Flushes standard output. Throws chain::WorkError when not everything could be written.
void flushOutput();

}  // namespace pxk::tool
