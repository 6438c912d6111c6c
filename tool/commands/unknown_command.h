/// The message for a word that is neither a command nor a file.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace pxk::tool {

/// "there is no file and no command "lst"; did you mean list?" Suggests the nearest command or the option --help or
/// --version, if any is near.
std::string whyNoCommand(const CLI::App& app, const std::string& word);

/// "; did you mean --output?" for the first option that the arguments contain and neither the tool nor the command has;
/// empty when there is none, or none is near.
std::string suggestedOption(const CLI::App& app);

/// The names of all commands.
std::vector<std::string> commandNames(const CLI::App& app);

}  // namespace pxk::tool
