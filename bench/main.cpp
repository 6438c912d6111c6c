// What members cost, called through the reference host as a program calls them, beside plain loops over the same bytes.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bench/measure.h"
#include "bench/table_reporter.h"
#include "host/host.h"
#include "picture/isa.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_bench [--check] [--trial] [--set=baseline|avx2|avx512] [--personality=console|desktop] [Google Benchmark's "
    "options]\n"
    "\n"
    "--check         exit code 1 when a bar is missed\n"
    "--trial         everything once on a tiny picture, to see that it works: the figures say nothing\n"
    "--set           the plugin as built for one instruction set, not as it chooses for this processor\n"
    "--personality   whose pictures: libgd images (console, the default) or bitmaps (desktop)\n"
    "\n"
    "Of Google Benchmark's options, --benchmark_filter=InvertPXK chooses members, pictures or sizes,\n"
    "--benchmark_min_time=5 measures each for longer than a third of a second, and --benchmark_out=FILE.json keeps the "
    "figures "
    "for machines.\n\n";

struct Settings {
    bool check = false;
    bool trial = false;
    std::string set{};  // empty: what the plugin chooses for this processor
    std::string personality = "console";
};

using pxk::Isa;

constexpr std::array<std::pair<std::string_view, Isa>, 3> sets = {
    {{"baseline", Isa::baseline}, {"avx2", Isa::avx2}, {"avx512", Isa::avx512}}};

Isa setOf(const Settings& settings) {
    if (settings.set.empty()) return pxk::processorIsa();
    for (const auto& [name, set] : sets)
        if (name == settings.set) return set;
    throw std::runtime_error("--set is baseline, avx2 or avx512, not " + settings.set);
}

std::string nameOf(Isa wanted) {
    for (const auto& [name, set] : sets)
        if (set == wanted) return std::string(name);
    return {};
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
        else if (argument == "--trial")
            settings.trial = true;
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

template <class T>
bool contains(const std::vector<T>& values, T value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

benchmark::internal::Benchmark* registerMeasurement(const pxkhost::Host& host, const Row& row, Content content,
                                                    PictureSize size) {
    const std::string name = row.name + "/" + contentName(content) + "/" + size.text();
    const auto run = [&host, &row, content, size](benchmark::State& state) {
        try {
            measure(state, row, workspaceFor(host, size, content));
        } catch (const std::exception& problem) {
            state.SkipWithError(problem.what());
        }
    };
    return benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
}

// Rows within a size and content, so that the pictures are made once for all of them.
void registerMeasurements(const pxkhost::Host& host, const std::vector<Row>& rows) {
    for (const PictureSize size : {onePixel, waveformSize, smallSize, largeSize}) {
        for (const Content content : allContents) {
            for (const Row& row : rows) {
                if (!contains(row.sizes, size) || !contains(row.contents, content)) continue;
                auto* const measurement = registerMeasurement(host, row, content, size);
                if (size == onePixel) measurement->Iterations(25);  // short and steady
            }
        }
    }
}

void registerTrial(const pxkhost::Host& host, const std::vector<Row>& rows) {
    constexpr PictureSize size = {96, 64};
    for (const Row& row : rows)
        for (const Content content : row.contents) registerMeasurement(host, row, content, size)->Iterations(1);
}

int run(int argc, char** argv) {
    // A round is a few milliseconds and more; a third of a second of them gives steady medians.
    char minTime[] = "--benchmark_min_time=0.3";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, minTime);
    const Settings settings = takeSettings(arguments);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    pxkhost::Host host(hostOptions(settings));
    const Isa set = setOf(settings);
    std::vector<Row> rows = allRows(set);
    if (settings.trial)
        for (Row& row : rows) row.bars = noBars;
    (settings.trial ? registerTrial : registerMeasurements)(host, rows);
    TableReporter reporter("PicturePXK with instruction set " + nameOf(set) + ", one thread, " + settings.personality +
                           " pictures");
    benchmark::RunSpecifiedBenchmarks(&reporter);
    dropWorkspaces();
    const std::vector<std::string> problems = host.close();
    for (const std::string& problem : problems) std::fprintf(stderr, "pxk_bench: %s\n", problem.c_str());
    return !problems.empty() || !reporter.failed().empty() || (settings.check && !reporter.missed().empty()) ? 1 : 0;
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
