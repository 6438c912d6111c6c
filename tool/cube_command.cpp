/// `pxk cube`: a .cube file of what a chain does to each colour, or of nothing, to start from.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

#include "chain_runner.h"
#include "chain_source.h"
#include "command.h"
#include "cube_file.h"
#include "destinations.h"
#include "error.h"
#include "files.h"
#include "text.h"

namespace pxk::tool {
namespace {

constexpr int white = 255;

struct CubeOptions {
    ChainSource chain;
    int size = 16;
    std::string output;
};

/// The points of a cube in their order as pixels. The last row may be longer than what is left of them.
Raster pixelsOf(const ColorCube& cube) {
    constexpr std::size_t widest = 4096;
    const std::size_t count = pointCount(cube.size);
    const std::size_t width = std::min(count, widest);
    const std::size_t height = (count + width - 1) / width;
    Raster pixels = Raster::filled(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), 0);
    for (std::size_t i = 0; i < 3 * count; ++i) {
        const auto level = static_cast<std::uint32_t>(std::lround(cube.entries[i] * white));
        pixels.words[i / 3] |= level << (16 - 8 * (i % 3));
    }
    return pixels;
}

void takeColors(ColorCube& cube, const Raster& pixels) {
    for (std::size_t i = 0; i < cube.entries.size(); ++i) {
        const std::uint32_t level = pixels.words[i / 3] >> (16 - 8 * (i % 3)) & 0xFFU;
        cube.entries[i] = static_cast<float>(level) / white;
    }
}

/// Makes of each point's colour what the plan makes of it.
void apply(const Plan& plan, OpenHost& opened, ColorCube& cube) {
    const Raster before = pixelsOf(cube);
    const Outcome outcome = runPlan(opened, plan, opened.newPicture(before));
    const PictureSize size = sizeOf(outcome.picture);
    if (size.width != before.width || size.height != before.height) {
        throw WorkError("the chain changes the picture's size; a cube takes calls that give each pixel a new colour");
    }
    takeColors(cube, opened.pixelsOf(outcome.picture));
}

/// The file's name without its ending, fit for the quotes around it.
std::string titleFor(const std::string& path) {
    std::string title = printable(std::filesystem::path(path).stem().string());
    std::replace(title.begin(), title.end(), '"', '\'');
    return title;
}

void checkSize(const CubeOptions& options) {
    if (options.size < ColorCube::smallest || options.size > ColorCube::largest) {
        throw UsageError("the size of a cube is from 2 to 256");
    }
    if (options.chain.isGiven() && white % (options.size - 1) != 0) {
        throw UsageError("with a chain the size is 2, 4, 6, 16, 18, 52, 86 or 256, whose points are whole values");
    }
}

int writeCube(CubeOptions& options, const HostOptions& host) {
    checkDestinationFile(options.output);
    checkSize(options);
    options.chain.read();
    ColorCube cube = identityCube(options.size);
    if (options.chain.isGiven()) {
        OpenHost opened(host);
        const Plan plan = options.chain.planFor(opened, true);
        if (endingOf(plan) != Ending::picture) throw UsageError("the chain does not end in a picture");
        apply(plan, opened, cube);
        opened.close();
    }
    writeFile(options.output, cubeText(cube, titleFor(options.output)));
    return exitDone;
}

}  // namespace

void addCubeCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<CubeOptions>();
    CLI::App* command =
        app.add_subcommand("cube", "Write a .cube file of what a chain does to each colour, or of nothing");
    options->chain.addOptions(*command);
    command->add_option("-o,--output", options->output, "The .cube file to write; needed")
        ->type_name("FILE")
        ->required();
    command->add_option("--size", options->size, "Points along each axis, 2 to 256; 16 when left out")
        ->type_name("COUNT");
    addHostOptions(*command, line.host);
    command->callback([options, &line] { line.action = [options, &line] { return writeCube(*options, line.host); }; });
}

}  // namespace pxk::tool
