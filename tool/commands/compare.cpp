/// `pxk compare`: whether two pictures are identical, and how much they differ.
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "chain/error.h"
#include "chain/picture_file.h"
#include "chain/text.h"
#include "tool/charts/difference.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct CompareOptions {
    std::string first;
    std::string second;
    bool json = false;
    std::optional<std::string> output;
};

std::string sizeText(const chain::Raster& picture) { return chain::sizeText({picture.width, picture.height}); }

void checkSizes(const CompareOptions& options, const chain::Raster& first, const chain::Raster& second) {
    if (first.width == second.width && first.height == second.height) return;
    throw chain::WorkError("pictures of different sizes cannot be compared: " + chain::inQuotes(options.first) +
                           " is " + sizeText(first) + ", " + chain::inQuotes(options.second) + " is " +
                           sizeText(second));
}

void print(const chain::Raster& picture, const Difference& difference) {
    if (difference.pixels == 0) {
        std::cout << "the pictures are identical: " << sizeText(picture) << " pixels\n";
        return;
    }
    const auto [red, green, blue, alpha] = difference.largest;
    std::cout << difference.pixels << " of " << picture.words.size() << " pixels differ\n"
              << "largest difference: red " << +red << ", green " << +green << ", blue " << +blue << ", alpha "
              << +alpha << '\n';
}

void printJson(const CompareOptions& options, const chain::Raster& picture, const Difference& difference) {
    const auto [red, green, blue, alpha] = difference.largest;
    std::cout << oneLine({{"first", options.first},
                          {"second", options.second},
                          {"width", picture.width},
                          {"height", picture.height},
                          {"different", difference.pixels},
                          {"largest", {{"red", red}, {"green", green}, {"blue", blue}, {"alpha", alpha}}}})
              << '\n';
}

bool areIdentical(const CompareOptions& options, const chain::HostOptions& host) {
    chain::OpenHost opened(exactHost(host));
    const chain::Raster first = opened.pixelsOf(chain::readPicture(opened, options.first));
    const chain::Raster second = opened.pixelsOf(chain::readPicture(opened, options.second));
    checkSizes(options, first, second);
    const Difference difference = differenceOf(first, second);
    if (options.output) chain::writePicture(opened, opened.newPicture(drawDifference(first, second)), *options.output);
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
    CLI::App* command = app.add_subcommand("compare", "Compare two pictures, and measure how much they differ");
    command->add_option("FIRST", options->first, "A picture file")->required();
    command->add_option("SECOND", options->second, "Another picture file, of the same size")->required();
    command->add_option("-o,--output", options->output, "Write a picture of the differences to this file")
        ->type_name("FILE");
    command->add_flag("--json", options->json, "Print one JSON object");
    addHostOptions(*command, line.host);
    command->footer("The exit code is 0 when they are identical, 1 when they differ, and 2 on an error.");
    command->callback([options, &line] {
        line.action = [options, &line] {
            if (options->output) checkDestinationFile(*options->output);
            return answered([&] { return areIdentical(*options, line.host); });
        };
    });
}

}  // namespace pxk::tool
