/// `pxk histogram`: how often each value occurs, as a chart or as numbers.
#include <iostream>
#include <memory>
#include <optional>

#include "command.h"
#include "destinations.h"
#include "error.h"
#include "files.h"
#include "histogram.h"
#include "picture_file.h"
#include "report.h"
#include "text.h"

namespace pxk::tool {
namespace {

struct HistogramOptions {
    std::string picture;
    std::optional<std::string> output;
};

int writeHistogram(const HistogramOptions& options, const HostOptions& host) {
    if (options.output) checkDestinationFile(*options.output);
    OpenHost opened(host);
    {
        const Histogram histogram = histogramOf(opened, readPicture(opened, options.picture));
        if (!options.output) {
            std::cout << asCsv(histogram);
        } else if (endsIn(*options.output, ".csv")) {
            writeFile(*options.output, asCsv(histogram));
        } else {
            writePicture(opened, opened.newPicture(chartOf(histogram)), *options.output);
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
    command
        ->add_option("-o,--output", options->output,
                     "A picture file for a chart, or a name in .csv for the numbers; they are printed when left out")
        ->type_name("FILE");
    addHostOptions(*command, line.host);
    command->callback(
        [options, &line] { line.action = [options, &line] { return writeHistogram(*options, line.host); }; });
}

}  // namespace pxk::tool
