/// `pxk cube`: a .cube file that holds what a chain does to each colour, or the identity.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

#include "chain/color_map.h"
#include "chain/cube_file.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "tool/commands/chain_source.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"

namespace pxk::tool {
namespace {

constexpr int white = 255;

struct CubeOptions {
    ChainSource chain;
    int size = 16;
    std::string output;
};

/// The points of a cube as 0xRRGGBB, in their order.
std::vector<std::uint32_t> colorsOf(const chain::ColorCube& cube) {
    std::vector<std::uint32_t> colors(chain::pointCount(cube.size));
    for (std::size_t i = 0; i < cube.entries.size(); ++i) {
        const auto level = static_cast<std::uint32_t>(std::lround(cube.entries[i] * white));
        colors[i / 3] |= level << (16 - 8 * (i % 3));
    }
    return colors;
}

void takeColors(chain::ColorCube& cube, const std::vector<std::uint32_t>& colors) {
    for (std::size_t i = 0; i < cube.entries.size(); ++i) {
        const std::uint32_t level = colors[i / 3] >> (16 - 8 * (i % 3)) & 0xFFU;
        cube.entries[i] = static_cast<float>(level) / white;
    }
}

/// The file's name without its extension, and without quotes.
std::string titleFor(const std::string& path) {
    std::string title = chain::printable(std::filesystem::path(path).stem().string());
    std::replace(title.begin(), title.end(), '"', '\'');
    return title;
}

void checkSize(const CubeOptions& options) {
    if (options.size < chain::ColorCube::smallest || options.size > chain::ColorCube::largest) {
        throw UsageError("the size of a cube must be from 2 to 256");
    }
    if (options.chain.isGiven() && white % (options.size - 1) != 0) {
        throw UsageError(
            "with a chain, the size must be 2, 4, 6, 16, 18, 52, 86 or 256, so that its points are whole channel "
            "values");
    }
}

int writeCube(CubeOptions& options, const chain::HostOptions& host) {
    checkDestinationFile(options.output);
    checkSize(options);
    options.chain.read();
    chain::ColorCube cube = chain::identityCube(options.size);
    if (options.chain.isGiven()) {
        chain::OpenHost opened(host);
        const chain::Plan plan = options.chain.planFor(opened, true);
        if (resultKindOf(plan) != chain::ResultKind::picture) throw UsageError("the chain does not end in a picture");
        options.chain.pointingAtMistakes(
            [&] { takeColors(cube, chain::mapColors(opened, chain::DiskFiles(), plan, colorsOf(cube))); });
        opened.close();
    }
    chain::writeFile(options.output, chain::cubeText(cube, titleFor(options.output)));
    return exitDone;
}

}  // namespace

void addCubeCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<CubeOptions>();
    CLI::App* command =
        app.add_subcommand("cube", "Write a .cube file that holds what a chain does to each colour, or the identity");
    options->chain.addOptions(*command);
    command->add_option("-o,--output", options->output, "The .cube file to write (required)")
        ->type_name("FILE")
        ->required();
    command->add_option("--size", options->size, "Points along each axis, 2 to 256 (default 16)")->type_name("COUNT");
    addHostOptions(*command, line.host);
    command->callback([options, &line] { line.action = [options, &line] { return writeCube(*options, line.host); }; });
}

}  // namespace pxk::tool
