// What members cost, called through the reference host as a program calls them, beside plain loops over the same bytes.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measure.h"
#include "bench/table_reporter.h"
#include "host/host.h"
#include "picture/instruction_sets.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_bench [--check] [--set=baseline|avx2|avx512] [--personality=console|desktop] [Google Benchmark's options]\n"
    "\n"
    "--check         exit code 1 when a bar is missed\n"
    "--set           the plugin as built for one instruction set, not as it chooses for this processor\n"
    "--personality   whose pictures: libgd images (console, the default) or bitmaps (desktop)\n"
    "\n"
    "Of Google Benchmark's options, --benchmark_filter=InvertPXK chooses members, pictures or sizes,\n"
    "--benchmark_min_time=5 measures each for longer than a second, and --benchmark_out=FILE.json keeps the figures "
    "for machines.\n\n";

struct Settings {
    bool check = false;
    std::string set{};  // empty: what the plugin chooses for this processor
    std::string personality = "console";
};

const char* setOfThisProcessor() {
    switch (pxk::instructionSet()) {
        case pxk::InstructionSet::avx512:
            return "avx512";
        case pxk::InstructionSet::avx2:
            return "avx2";
        case pxk::InstructionSet::baseline:
            break;
    }
    return "baseline";
}

// Takes the program's own options out of the arguments; the rest is Google Benchmark's.
Settings takeSettings(std::vector<char*>& arguments) {
    Settings settings;
    const auto take = [&](std::string_view argument) {
        const auto value = [&](std::string_view option) -> std::optional<std::string> {
            if (!argument.starts_with(option)) return std::nullopt;
            return std::string(argument.substr(option.size()));
        };
        if (argument == "--help") std::fputs(usage, stdout);  // Google Benchmark adds its own
        if (argument == "--check")
            settings.check = true;
        else if (const auto set = value("--set="))
            settings.set = *set;
        else if (const auto personality = value("--personality="))
            settings.personality = *personality;
        else
            return false;
        return true;
    };
    std::erase_if(arguments, [&](const char* argument) { return take(argument); });
    return settings;
}

pxkhost::Options hostOptions(const Settings& settings) {
    if (settings.personality != "console" && settings.personality != "desktop")
        throw std::runtime_error("--personality is console or desktop, not " + settings.personality);
    const std::string plugin = settings.set.empty() ? "PicturePXK.so" : "PicturePXK-" + settings.set + ".so";
    pxkhost::Options options;
    options.plugin = std::filesystem::path(PXK_PLUGIN_DIR) / plugin;
    if (settings.personality == "desktop") options.personality = pxkhost::Personality::desktop;
    return options;
}

// Rows within a size and content, so that the pictures are made once for all of them.
void registerMeasurements(const pxkhost::Host& host) {
    for (const PictureSize size : {smallSize, largeSize}) {
        for (const Content content : allContents) {
            for (const Row& row : rows()) {
                if (std::find(row.contents.begin(), row.contents.end(), content) == row.contents.end()) continue;
                const std::string name = std::string(row.name) + "/" + contentName(content) + "/" + size.text();
                benchmark::RegisterBenchmark(name.c_str(), [&host, size, content, &row](benchmark::State& state) {
                    try {
                        measure(state, row, workspaceFor(host, size, content));
                    } catch (const std::exception& problem) {
                        state.SkipWithError(problem.what());
                    }
                })->UseManualTime();
            }
        }
    }
}

int run(int argc, char** argv) {
    // A round is a few milliseconds and more; a second of them gives steady medians.
    char minTime[] = "--benchmark_min_time=1";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, minTime);
    const Settings settings = takeSettings(arguments);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    pxkhost::Host host(hostOptions(settings));
    registerMeasurements(host);
    const std::string set = settings.set.empty() ? setOfThisProcessor() : settings.set;
    TableReporter reporter("PicturePXK with instruction set " + set + ", one thread, " + settings.personality +
                           " pictures");
    benchmark::RunSpecifiedBenchmarks(&reporter);
    dropWorkspace();
    const std::vector<std::string> problems = host.close();
    for (const std::string& problem : problems) std::fprintf(stderr, "pxk_bench: %s\n", problem.c_str());
    return !problems.empty() || (settings.check && !reporter.missed().empty()) ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "pxk_bench: %s\n", problem.what());
        return 2;
    }
}
