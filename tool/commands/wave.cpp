/// `pxk wave`: a sound file drawn as a waveform.
#include <charconv>
#include <limits>
#include <memory>
#include <optional>

#include "chain/error.h"
#include "chain/picture_file.h"
#include "chain/text.h"
#include "tool/commands/command.h"
#include "tool/commands/destinations.h"
#include "tool/commands/exit_code.h"
#include "tool/sound/sound.h"

namespace pxk::tool {
namespace {

constexpr std::int32_t largestSide = 32767;
constexpr std::int32_t floatSamples = -32;  ///< as RenderSamplesPXK numbers sample formats

struct WaveOptions {
    std::string sound;
    std::string output;
    std::int32_t width = 1000;
    std::int32_t height = 240;
    std::int32_t smooth = 1;
    std::int32_t outline = 1;
    std::optional<std::string> back;
    std::optional<std::string> fore;
    std::optional<std::string> line;
    bool autoScale = false;
};

/// A colour written RRGGBB, #RRGGBB or &cRRGGBB; no value, and so the member's default colour, when it is not given.
chain::Value colorOf(const std::optional<std::string>& written) {
    if (!written) return {};
    std::string_view digits = *written;
    for (const std::string_view prefix : {"#", "&c", "&C"}) {
        if (digits.size() == prefix.size() + 6 && digits.starts_with(prefix)) digits.remove_prefix(prefix.size());
    }
    std::uint32_t rgb = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), rgb, 16);
    if (digits.size() != 6 || error != std::errc() || end != digits.data() + digits.size()) {
        throw UsageError("a colour is six hexadecimal digits, RRGGBB, not " + chain::inQuotes(*written));
    }
    return chain::Value::color(rgb);
}

int drawWave(const WaveOptions& options, const chain::HostOptions& host) {
    if (options.sound == "-") throw UsageError("a sound cannot come from standard input; name a file");
    checkDestinationFile(options.output);
    const chain::Value back = colorOf(options.back);
    const chain::Value fore = colorOf(options.fore);
    const chain::Value line = colorOf(options.line);
    chain::OpenHost opened(host);
    {
        const std::vector<float> samples = readSound(options.sound);
        const std::string_view bytes(reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(float));
        std::vector<chain::Value> arguments{chain::Value::object(PXK_MEMORY_BLOCK, opened.newMemoryBlock(bytes)),
                                            chain::Value::integer(static_cast<std::int32_t>(samples.size())),
                                            chain::Value::integer(options.smooth),
                                            chain::Value::integer(options.width),
                                            chain::Value::integer(options.height),
                                            chain::Value::integer(options.outline),
                                            back,
                                            fore,
                                            line,
                                            chain::Value::integer(floatSamples),
                                            chain::Value::boolean(options.autoScale)};
        const chain::Value picture = opened.call(chain::Object(), "RenderSamplesPXK", arguments);
        if (picture.isNil()) throw chain::WorkError("RenderSamplesPXK returned nil instead of a picture");
        chain::writePicture(opened, picture.asObject(), options.output);
    }
    opened.close();
    return exitDone;
}

}  // namespace

void addWaveCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<WaveOptions>();
    CLI::App* command = app.add_subcommand("wave", "Draw a sound file as a waveform");
    const auto number = [&](const char* name, std::int32_t& value, std::int32_t least, std::int32_t most,
                            const std::string& words) {
        command->add_option(name, value, words + " (default " + std::to_string(value) + ")")
            ->check(CLI::Range(least, most).description(""))
            ->type_name("COUNT");
    };
    const auto color = [&](const char* name, std::optional<std::string>& value, const char* words) {
        command->add_option(name, value, words)->type_name("RRGGBB");
    };
    command->add_option("SOUND", options->sound, "A sound file: WAV, FLAC, OGG or MP3")->required();
    command->add_option("-o,--output", options->output, "The picture file to write (required)")
        ->type_name("FILE")
        ->required();
    number("--width", options->width, 1, largestSide, "Width of the picture in pixels");
    number("--height", options->height, 1, largestSide, "Height of the picture in pixels");
    number("--smooth", options->smooth, 1, std::numeric_limits<std::int32_t>::max(),
           "Number of columns to smooth over");
    number("--outline", options->outline, 0, largestSide,
           "0 for no outline, 1 for an antialiased line, more for a pen of that width");
    color("--back", options->back, "Background colour");
    color("--fore", options->fore, "Colour of the wave");
    color("--line", options->line, "Colour of the outline");
    command->add_flag("--autoscale", options->autoScale, "Scale the loudest column, not full scale, to the height");
    addHostOptions(*command, line.host);
    command->callback([options, &line] { line.action = [options, &line] { return drawWave(*options, line.host); }; });
}

}  // namespace pxk::tool
