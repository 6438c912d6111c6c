// Measures members, called through the reference host as a program calls them, against plain loops over the same bytes.

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
    "pxk_bench [--check] [--trial] [--isa=baseline|avx2|avx512] [--application=console|desktop] [Google Benchmark's "
    "options]\n"
    "\n"
    "--check         exit code 1 when a threshold is exceeded\n"
    "--trial         run everything once on a tiny picture, to check that it works; the timings mean nothing\n"
    "--isa           force an instruction set instead of the one that the plugin chooses for this processor\n"
    "--application   the kind of application: libgd pictures (console, the default) or bitmaps (desktop)\n"
    "\n"
    "Useful options of Google Benchmark: --benchmark_filter=InvertPXK selects members, contents or sizes,\n"
    "--benchmark_min_time=5 measures each for 5 seconds instead of 0.3, and --benchmark_out=FILE.json writes the\n"
    "results as JSON.\n\n";

struct Settings {
    bool check = false;
    bool trial = false;
    std::string isa{};  // empty: what the plugin chooses for this processor
    std::string application = "console";
};

using pxk::Isa;

constexpr std::array<std::pair<std::string_view, Isa>, 3> isas = {
    {{"baseline", Isa::baseline}, {"avx2", Isa::avx2}, {"avx512", Isa::avx512}}};

Isa isaOf(const Settings& settings) {
    if (settings.isa.empty()) return pxk::processorIsa();
    for (const auto& [name, isa] : isas)
        if (name == settings.isa) return isa;
    throw std::runtime_error("--isa is baseline, avx2 or avx512, not " + settings.isa);
}

std::string nameOf(Isa wanted) {
    for (const auto& [name, isa] : isas)
        if (isa == wanted) return std::string(name);
    return {};
}

// Removes the program's own options from the arguments; the rest are Google Benchmark's.
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
        else if (const auto isa = value("--isa="))
            settings.isa = *isa;
        else if (const auto application = value("--application="))
            settings.application = *application;
        else
            return false;
        return true;
    };
    std::erase_if(arguments, [&](const char* argument) { return take(argument); });
    return settings;
}

pxkhost::Options hostOptions(const Settings& settings) {
    if (settings.application != "console" && settings.application != "desktop")
        throw std::runtime_error("--application is console or desktop, not " + settings.application);
    const std::string plugin = settings.isa.empty() ? "PicturePXK.so" : "PicturePXK-" + settings.isa + ".so";
    pxkhost::Options options;
    options.plugin = std::filesystem::path(PXK_PLUGIN_DIR) / plugin;
    if (settings.application == "desktop") options.application = pxkhost::ApplicationKind::desktop;
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

// Grouped by size and content, so that the pictures are created once for all rows.
void registerMeasurements(const pxkhost::Host& host, const std::vector<Row>& rows) {
    for (const PictureSize size : {onePixel, waveformSize, smallSize, largeSize}) {
        for (const Content content : allContents) {
            for (const Row& row : rows) {
                if (!contains(row.sizes, size) || !contains(row.contents, content)) continue;
                auto* const measurement = registerMeasurement(host, row, content, size);
                if (size == onePixel) measurement->Iterations(25);  // short and stable
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
    // A round takes a few milliseconds or more; 0.3 seconds of rounds give stable medians.
    char minTime[] = "--benchmark_min_time=0.3";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, minTime);
    const Settings settings = takeSettings(arguments);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    const Isa isa = isaOf(settings);
    pxkhost::Host host(hostOptions(settings));
    std::vector<Row> rows = allRows(isa);
    if (settings.trial)
        for (Row& row : rows) row.thresholds = noThresholds;
    (settings.trial ? registerTrial : registerMeasurements)(host, rows);
    TableReporter reporter("PicturePXK with instruction set " + nameOf(isa) + ", one thread, " + settings.application +
                           " pictures");
    benchmark::RunSpecifiedBenchmarks(&reporter);
    dropWorkspaces();
    const std::vector<std::string> problems = host.close();
    for (const std::string& problem : problems) std::fprintf(stderr, "pxk_bench: %s\n", problem.c_str());
    return !problems.empty() || !reporter.failed().empty() || (settings.check && !reporter.exceeding().empty()) ? 1 : 0;
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
