/// `pxk inspect`: what the plugin registered with this host, record by record.
#include <iostream>

#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"

namespace pxk::tool {
namespace {

int inspect(const chain::HostOptions& host) {
    chain::OpenHost opened(host);
    std::string text = opened.inspection();
    if (!text.empty() && text.back() != '\n') text += '\n';
    std::cout << text;
    flushOutput();
    opened.close();
    return exitDone;
}

}  // namespace

void addInspectCommand(CLI::App& app, CommandLine& line) {
    CLI::App* command =
        app.add_subcommand("inspect", "Show what the plugin registered with the host, record by record");
    addHostOptions(*command, line.host);
    command->callback([&line] { line.action = [&line] { return inspect(line.host); }; });
}

}  // namespace pxk::tool
