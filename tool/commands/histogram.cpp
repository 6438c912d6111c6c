/// `pxk histogram`: how often each value of each channel occurs, as a chart or as numbers.
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "chain/picture_file.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "tool/charts/histogram.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct HistogramOptions {
    std::string picture;
    std::optional<std::string> output;
    bool json = false;
};

int writeHistogram(const HistogramOptions& options, const chain::HostOptions& host) {
    if (options.output) checkDestinationFile(*options.output);
    chain::OpenHost opened(host);
    {
        const Histogram histogram = histogramOf(opened, chain::readPicture(opened, options.picture));
        if (options.json) {
            std::cout << oneLine({{"picture", options.picture},
                                  {"red", histogram.red},
                                  {"green", histogram.green},
                                  {"blue", histogram.blue}})
                      << '\n';
        } else if (!options.output) {
            std::cout << asCsv(histogram);
        } else if (chain::endsIn(*options.output, ".csv")) {
            chain::writeFile(*options.output, asCsv(histogram));
        } else {
            chain::writePicture(opened, opened.newPicture(chartOf(histogram)), *options.output);
        }
    }
    flushOutput();
    opened.close();
    return exitDone;
}

}  // namespace

void addHistogramCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<HistogramOptions>();
    CLI::App* command = app.add_subcommand("histogram", "Count how often each value of each channel occurs");
    command->add_option("PICTURE", options->picture, "A picture file")->required();
    auto* json = command->add_flag("--json", options->json, "Print one JSON object with the numbers");
    command
        ->add_option("-o,--output", options->output,
                     "A picture file for a chart, or a .csv file for the numbers (default: print the numbers)")
        ->type_name("FILE")
        ->excludes(json);
    addHostOptions(*command, line.host);
    command->callback(
        [options, &line] { line.action = [options, &line] { return writeHistogram(*options, line.host); }; });
}

}  // namespace pxk::tool
