/// What main() and all commands share.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "chain/open_host.h"

namespace pxk::tool {

/// A parsed command line: what to do, and on which host. `action` returns the exit code.
struct CommandLine {
    chain::HostOptions host;
    std::function<int()> action;
};

/// Adds --host-version, --application and --plugin.
void addHostOptions(CLI::App& command, chain::HostOptions& host);

/// The host for a command whose pictures no member changes: one of desktop pictures, which keep all 8 bits of alpha,
/// unless --application chose another.
chain::HostOptions exactHost(chain::HostOptions host);

/// Each adds one command, which sets the line's action when it is given. The first is the tool itself: running a chain
/// on pictures.
void addRunCommand(CLI::App& app, CommandLine& line);
void addListCommand(CLI::App& app, CommandLine& line);
void addHelpCommand(CLI::App& app, CommandLine& line);
void addInspectCommand(CLI::App& app, CommandLine& line);
void addInfoCommand(CLI::App& app, CommandLine& line);
void addWaveCommand(CLI::App& app, CommandLine& line);
void addCubeCommand(CLI::App& app, CommandLine& line);
void addFindCommand(CLI::App& app, CommandLine& line);
void addCompareCommand(CLI::App& app, CommandLine& line);
void addHistogramCommand(CLI::App& app, CommandLine& line);

}  // namespace pxk::tool
