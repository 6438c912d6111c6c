/// The built tool, run as its user runs it.
#pragma once

#include <string>
#include <vector>

namespace pxk::tool {

struct CommandResult {
    std::string out;
    std::string error;
    int exitCode = -1;  ///< 128 and the signal's number when a signal ended it
};

/// Runs the tool with these arguments in `directory`, with `input` on its standard input.
CommandResult runTool(const std::string& directory, const std::vector<std::string>& arguments,
                      const std::string& input = "");

/// The same with another copy of the tool.
CommandResult runProgram(const std::string& program, const std::string& directory,
                         const std::vector<std::string>& arguments);

enum class Terminal { output, error };

/// The same with a terminal of 60 columns for its standard error, or for its standard output.
CommandResult runToolOnTerminal(const std::string& directory, const std::vector<std::string>& arguments,
                                Terminal terminal = Terminal::error);

}  // namespace pxk::tool
