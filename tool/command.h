/// What main() and the commands share.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "open_host.h"

namespace pxk::tool {

/// A command line, read: what to do, and as which host. `action` gives the exit code.
struct CommandLine {
    HostOptions host;
    std::function<int()> action;
};

/// Adds --host-version, --personality and --plugin.
void addHostOptions(CLI::App& command, HostOptions& host);

/// Each adds one command, which sets the line's action when it is chosen. The first is the tool itself: to run a chain
/// on pictures.
void addRunCommand(CLI::App& app, CommandLine& line);
void addListCommand(CLI::App& app, CommandLine& line);
void addHelpCommand(CLI::App& app, CommandLine& line);
void addInspectCommand(CLI::App& app, CommandLine& line);
void addWaveCommand(CLI::App& app, CommandLine& line);
void addCubeCommand(CLI::App& app, CommandLine& line);
void addFindCommand(CLI::App& app, CommandLine& line);
void addCompareCommand(CLI::App& app, CommandLine& line);
void addHistogramCommand(CLI::App& app, CommandLine& line);

}  // namespace pxk::tool
