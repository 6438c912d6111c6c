/// pxk, the command line of the reference host: parses the arguments, runs a command, and returns its exit code.
#include <iostream>
#include <new>

#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/commands/unknown_command.h"
#include "tool/terminal/interruption.h"
#include "tool/terminal/report.h"

namespace pxk::tool {
namespace {

/// The layout of --help: hand-written usage, and options without the details that the library adds.
class Formatter : public CLI::Formatter {
  public:
    std::string make_usage(const CLI::App* app, std::string name) const override {
        if (app->get_parent() != nullptr) return CLI::Formatter::make_usage(app, name);
        return "Usage: pxk INPUT... [-e CHAIN] -o OUTPUT\n"
               "       pxk INPUT... -e CHAIN            (a chain that ends in a number or a string)\n"
               "       pxk COMMAND ...                  (see the list below, and pxk help COMMAND)\n";
    }

    std::string make_option_opts(const CLI::Option* option) const override {
        const bool several = option->get_positional() && option->get_expected_max() > 1;
        const std::string type = option->get_positional() ? "" : option->get_type_name();
        return (type.empty() ? "" : " " + type) + (several ? "..." : "");
    }
};

constexpr const char* footer =
    "Examples:\n"
    "  pxk in.png -e 'InvertPXK(10, 10, 200, 100).InvertGrayPXK' -o out.png\n"
    "  pxk *.jpg -e Invert -o inverted/ --format png\n"
    "  pxk - -e Invert -o - --format png < in.jpg > out.png\n"
    "  pxk help Invert\n"
    "  pxk help chain\n"
    "\n"
    "Put names that begin with - after --, and write an input named like a command as ./list.";

int runTool(int argc, char** argv) {
    CLI::App app("Runs the methods of the picture plugin on picture files.", "pxk");
    app.formatter(std::make_shared<Formatter>());
    app.get_formatter()->label("Positionals", "Arguments");
    app.set_version_flag("--version", "pxk " + chain::versionText(), "Print the version");
    app.require_subcommand(0, 1);
    CommandLine line;
    addRunCommand(app, line);
    addListCommand(app, line);
    addHelpCommand(app, line);
    addInspectCommand(app, line);
    addInfoCommand(app, line);
    addFindCommand(app, line);
    addCompareCommand(app, line);
    addHistogramCommand(app, line);
    addWaveCommand(app, line);
    addCubeCommand(app, line);
    addHostOptions(app, line.host);
    // Set last, since commands take it over from the tool when they are added.
    app.footer(footer);
    for (CLI::App* each : app.get_subcommands([](CLI::App*) { return true; })) each->group("Commands");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& wanted) {
        app.exit(wanted);
        flushOutput();
        return exitDone;
    } catch (const CLI::ExtrasError& error) {
        throw UsageError(std::string(error.what()) + suggestedOption(app) + "; see pxk --help");
    } catch (const CLI::ParseError& error) {
        throw UsageError(std::string(error.what()) + "; see pxk --help");
    }
    return line.action();
}

int runReported(int argc, char** argv) {
    try {
        return runTool(argc, argv);
    } catch (const UsageError& error) {
        report(error.what());
        return exitUsage;
    } catch (const std::bad_alloc&) {
        report("not enough memory");
    } catch (const std::exception& error) {
        report(error.what());
    }
    return exitFailed;
}

}  // namespace
}  // namespace pxk::tool

int main(int argc, char** argv) {
    pxk::tool::leaveNothingWhenInterrupted();
    return pxk::tool::runReported(argc, argv);
}
