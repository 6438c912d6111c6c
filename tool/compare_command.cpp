/// `pxk compare`: whether two pictures are the same, and how much they differ.
#include <iostream>
#include <memory>
#include <optional>

#include "answer.h"
#include "command.h"
#include "destinations.h"
#include "difference.h"
#include "error.h"
#include "picture_file.h"
#include "report.h"
#include "result_text.h"
#include "text.h"

namespace pxk::tool {
namespace {

struct CompareOptions {
    std::string first;
    std::string second;
    bool json = false;
    std::optional<std::string> output;
};

std::string sizeText(const Raster& picture) {
    return std::to_string(picture.width) + " x " + std::to_string(picture.height);
}

void checkSizes(const CompareOptions& options, const Raster& first, const Raster& second) {
    if (first.width == second.width && first.height == second.height) return;
    throw WorkError("pictures of different sizes cannot be compared: " + inQuotes(options.first) + " is " +
                    sizeText(first) + ", " + inQuotes(options.second) + " is " + sizeText(second));
}

void print(const Raster& picture, const Difference& difference) {
    if (difference.pixels == 0) {
        std::cout << "the pictures are the same: " << sizeText(picture) << " pixels\n";
        return;
    }
    const auto [red, green, blue, alpha] = difference.largest;
    std::cout << difference.pixels << " of " << picture.words.size() << " pixels differ\n"
              << "largest difference: red " << +red << ", green " << +green << ", blue " << +blue << ", alpha "
              << +alpha << '\n';
}

void printJson(const CompareOptions& options, const Raster& picture, const Difference& difference) {
    const auto [red, green, blue, alpha] = difference.largest;
    std::cout << oneLine({{"first", options.first},
                          {"second", options.second},
                          {"width", picture.width},
                          {"height", picture.height},
                          {"different", difference.pixels},
                          {"largest", {{"red", red}, {"green", green}, {"blue", blue}, {"alpha", alpha}}}})
              << '\n';
}

bool areTheSame(const CompareOptions& options, const HostOptions& host) {
    OpenHost opened(host);
    const Raster first = opened.pixelsOf(readPicture(opened, options.first));
    const Raster second = opened.pixelsOf(readPicture(opened, options.second));
    checkSizes(options, first, second);
    const Difference difference = differenceOf(first, second);
    if (options.output) writePicture(opened, opened.newPicture(drawDifference(first, second)), *options.output);
    if (options.json) {
        printJson(options, first, difference);
    } else {
        print(first, difference);
    }
    flushOutput();
    opened.close();
    return difference.pixels == 0;
}

}  // namespace

void addCompareCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* command =
        app.add_subcommand("compare", "Say whether two pictures are the same, and how much they differ");
    command->add_option("FIRST", options->first, "A picture file")->required();
    command->add_option("SECOND", options->second, "Another of the same size")->required();
    command->add_option("-o,--output", options->output, "Draw the differences into this picture file")
        ->type_name("FILE");
    command->add_flag("--json", options->json, "Print one JSON object");
    addHostOptions(*command, line.host);
    command->footer("The exit code is 0 when they are the same, 1 when they differ, and 2 when there is trouble.");
    command->callback([options, &line] {
        line.action = [options, &line] {
            if (options->output) checkDestinationFile(*options->output);
            return answered([&] { return areTheSame(*options, line.host); });
        };
    });
}

}  // namespace pxk::tool
