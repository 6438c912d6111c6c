// Compares the members with libraries in one run: see comparison.h.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

#include "bench/peers/comparison.h"
#include "bench/peers/page.h"
#include "bench/rounds.h"
#include "host/host.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_peers [--pages=FOLDER --data=FOLDER] [--trial] [Google Benchmark's options]\n"
    "\n"
    "--pages    the folder for performance.md and scaling.md\n"
    "--data     the folder for the data of their charts\n"
    "--trial    run everything once on a tiny picture, to check that all agree; the timings mean nothing\n\n";

struct Settings {
    std::optional<std::string> pages{};
    std::optional<std::string> data{};
    bool trial = false;
};

Settings takeSettings(std::vector<char*>& arguments) {
    Settings settings;
    std::erase_if(arguments, [&](std::string_view argument) {
        constexpr std::string_view pages = "--pages=";
        constexpr std::string_view data = "--data=";
        if (argument == "--help") std::fputs(usage, stdout);  // Google Benchmark adds its own
        if (argument.starts_with(pages))
            settings.pages = argument.substr(pages.size());
        else if (argument.starts_with(data))
            settings.data = argument.substr(data.size());
        else if (argument == "--trial")
            settings.trial = true;
        else
            return false;
        return true;
    });
    if (settings.pages.has_value() != settings.data.has_value())
        throw std::runtime_error("--pages and --data must be given together");
    return settings;
}

// All results of a run.
struct Findings {
    std::vector<Finding> comparisons;
    std::vector<ScalingFinding> scaling;
    std::vector<CallOverhead> callOverheads;
    std::vector<std::string> failures;
};

// The members that are measured on pictures of all these sizes: a few of each kind.
constexpr PictureSize scalingSizes[] = {{16, 16},     {64, 64},     {256, 256},   {512, 512},   {1024, 1024},
                                        {2048, 2048}, {4096, 3072}, {8192, 4096}, {16384, 8192}};
constexpr std::string_view scalingRows[] = {
    "InvertPXK",          "ChangeCustomPXK(0.9, 8)", "ChangeSaturationPXK(100)", "MergePicturePXK",
    "CombinePicturesPXK", "CountColorsPXK",          "PictureLut3DPXK.Run",      "ColornessPXK",
    "FindPicturePXK",     "ScrollVerticalPXK(37)",   "PicturetoBinaryStringPXK"};

template <class Measure>
benchmark::internal::Benchmark* add(const std::string& name, Findings& findings, Measure measure) {
    const auto run = [name, &findings, measure](benchmark::State& state) {
        try {
            measure(state);
        } catch (const std::exception& problem) {
            findings.failures.push_back(name + ": " + problem.what());
            state.SkipWithError(problem.what());
        }
    };
    return benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime();
}

std::vector<NamedRoute> routesTo(const Row& row, const Libraries& libraries) {
    std::vector<NamedRoute> routes;
    for (const Library& library : libraries.present)
        for (const Route& route : library.routes)
            if (route.row == row.name) routes.emplace_back(library.name, &route);
    return routes;
}

// Google Benchmark calls with few iterations first: the last, longest call replaces the earlier ones.
template <class T>
void keep(std::vector<T>& findings, T finding) {
    const auto isSame = [&](const T& other) {
        if constexpr (requires { other.content; })
            return other.row == finding.row && other.content == finding.content && other.size == finding.size;
        else if constexpr (requires { other.size; })
            return other.row == finding.row && other.size == finding.size;
        else
            return other.row == finding.row;
    };
    const auto found = std::find_if(findings.begin(), findings.end(), isSame);
    if (found != findings.end())
        *found = std::move(finding);
    else
        findings.push_back(std::move(finding));
}

template <class T>
bool contains(const std::vector<T>& values, const T& value) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

benchmark::internal::Benchmark* addComparison(const pxkhost::Host& host, const Row& row, Content content,
                                              PictureSize size, const Libraries& libraries, Findings& findings) {
    const std::string name = row.name + "/" + contentName(content) + "/" + size.text();
    return add(name, findings, [=, &host, &row, &findings, &libraries](benchmark::State& state) {
        const Finding finding = compareWithPeers(state, row, host, size, content, routesTo(row, libraries));
        state.counters["member"] = finding.perPixel(finding.work);
        state.counters["limit"] = finding.perPixel(finding.limit);
        if (const PeerFinding* const best = finding.best()) {
            state.counters["peer"] = finding.perPixel(best->seconds);
            state.counters["ratio"] = best->ratio;
            state.SetLabel(best->library + ": " + best->call);
        }
        keep(findings.comparisons, finding);
    });
}

void addComparisons(const pxkhost::Host& host, const std::vector<Row>& rows, const Libraries& libraries,
                    Findings& findings) {
    for (const PictureSize size : {smallSize, largeSize})
        for (const Content content : allContents)
            for (const Row& row : rows)
                if (contains(row.sizes, size) && contains(row.contents, content))
                    addComparison(host, row, content, size, libraries, findings);
}

void addCallOverheads(const pxkhost::Host& host, const std::vector<Row>& rows, Findings& findings) {
    for (const Row& row : rows) {
        if (!contains(row.sizes, onePixel)) continue;
        const Content content = row.contents.front();
        add(row.name + "/" + contentName(content) + "/" + onePixel.text(), findings,
            [=, &host, &row, &findings](benchmark::State& state) {
                std::vector<Candidate> candidates = {{timed(row.prepare(workspaceFor(host, onePixel, content)))}};
                runRounds(state, candidates, onePixel);
                keep(findings.callOverheads, CallOverhead{row.name, median(candidates[0].seconds)});
            })
            ->Iterations(25);
    }
}

void addScaling(const pxkhost::Host& host, const std::vector<Row>& rows, Findings& findings) {
    for (const PictureSize size : scalingSizes) {
        for (const Row& row : rows) {
            if (std::find(std::begin(scalingRows), std::end(scalingRows), row.name) == std::end(scalingRows)) continue;
            constexpr int needleSide = 64;
            if (row.name == "FindPicturePXK" && size.width < needleSide) continue;
            add("scaling of " + row.name + "/" + size.text(), findings,
                [=, &host, &row, &findings](benchmark::State& state) {
                    const Workspace& work = workspaceFor(host, size, Content::noise);
                    std::vector<Candidate> candidates = {
                        {timed(row.prepare(work))},
                        {[&] { static_cast<void>(host.newPicture(size.width, size.height)); }}};
                    const bool makesPicture = row.makes == Makes::picture;
                    runRounds(state, std::span(candidates).first(makesPicture ? 2 : 1), size);
                    const std::vector<double>& call = candidates[0].seconds;
                    const double workTime = median(makesPicture ? differences(call, candidates[1].seconds) : call);
                    keep(findings.scaling, ScalingFinding{row.name, size, workTime, median(call)});
                })
                ->MinTime(0.2);
        }
    }
}

void addTrial(const pxkhost::Host& host, const std::vector<Row>& rows, const Libraries& libraries, Findings& findings) {
    constexpr PictureSize size = {192, 128};
    for (const Row& row : rows)
        for (const Content content : row.contents)
            if (contains(row.sizes, smallSize))
                addComparison(host, row, content, size, libraries, findings)->Iterations(1);
}

void report(const Settings& settings, const Libraries& libraries, const Findings& findings) {
    if (!settings.pages) return;
    Environment environment;
    environment.instructionSet = pxk::processorIsa() == pxk::Isa::avx512 ? "AVX-512"
                                 : pxk::processorIsa() == pxk::Isa::avx2 ? "AVX2"
                                                                         : "baseline";
    for (const Library& library : libraries.present) environment.libraries.push_back(library.name);
    environment.absentLibraries = libraries.absent;
    if (!findings.comparisons.empty())
        writePerformancePage(*settings.pages, *settings.data, environment, findings.comparisons);
    if (!findings.scaling.empty())
        writeScalingPage(*settings.pages, *settings.data, environment, findings.scaling, findings.callOverheads);
}

// By default, malloc maps each large block anew, which takes page faults and gives it a more favourable alignment than
// rows of reused memory have. To treat members and peers alike, all memory comes from the heap, which keeps what is
// freed.
void allocateFromHeapOnly() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
}

int run(int argc, char** argv) {
    allocateFromHeapOnly();
    char minTime[] = "--benchmark_min_time=2";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, minTime);
    const Settings settings = takeSettings(arguments);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;

    const Libraries libraries = allLibraries();
    for (const std::string& library : libraries.absent)
        std::printf("%s was not found and is left out\n", library.c_str());
    pxkhost::Options options;
    options.plugin = PXK_PLUGIN_DIR "/PicturePXK.so";
    pxkhost::Host host(options);
    const std::vector<Row> rows = allRows(pxk::processorIsa());
    Findings findings;
    if (settings.trial) {
        addTrial(host, rows, libraries, findings);
    } else {
        addComparisons(host, rows, libraries, findings);
        addCallOverheads(host, rows, findings);
        addScaling(host, rows, findings);
    }
    benchmark::RunSpecifiedBenchmarks();
    report(settings, libraries, findings);
    dropWorkspaces();
    for (const std::string& problem : host.close()) findings.failures.push_back(problem);
    for (const std::string& failure : findings.failures) std::fprintf(stderr, "pxk_peers: %s\n", failure.c_str());
    return findings.failures.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "pxk_peers: %s\n", problem.what());
        return 2;
    }
}
