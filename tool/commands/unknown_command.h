/// The message for a word that is neither a command nor a file.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace pxk::tool {

/// "there is no file and no command "lst"; did you mean list?" Suggests the nearest command or the option --help or
/// --version, if any is near.
std::string whyNoCommand(const CLI::App& app, const std::string& word);

}  // namespace pxk::tool
