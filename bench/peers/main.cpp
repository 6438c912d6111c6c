// The members beside what libraries do, in one run: see contest.h.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>
#include <string_view>

#include "bench/peers/contest.h"
#include "bench/peers/page.h"
#include "bench/rounds.h"
#include "host/host.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_peers [--pages=FOLDER --data=FOLDER] [--trial] [Google Benchmark's options]\n"
    "\n"
    "--pages    where performance.md and scaling.md are written\n"
    "--data     where the data of their charts are written\n"
    "--trial    everything once on a tiny picture, to see that all agree: the figures say nothing\n\n";

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
        throw std::runtime_error("--pages and --data go together");
    return settings;
}

// Everything that is found out in a run.
struct Findings {
    std::vector<Finding> contests;
    std::vector<ScalingFinding> scaling;
    std::vector<FixedCost> fixedCosts;
    std::vector<std::string> failures;
};

// What members cost on larger and larger pictures, where a few stand for all of their kind.
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

// A later, longer run of the same takes the place of a trial run by Google Benchmark.
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

benchmark::internal::Benchmark* addContest(const pxkhost::Host& host, const Row& row, Content content, PictureSize size,
                                           const Libraries& libraries, Findings& findings) {
    const std::string name = row.name + "/" + contentName(content) + "/" + size.text();
    return add(name, findings, [=, &host, &row, &findings, &libraries](benchmark::State& state) {
        const Finding finding = contest(state, row, host, size, content, routesTo(row, libraries));
        state.counters["member"] = finding.perPixel(finding.work);
        state.counters["limit"] = finding.perPixel(finding.limit);
        if (const PeerFinding* const best = finding.best()) {
            state.counters["peer"] = finding.perPixel(best->seconds);
            state.counters["ratio"] = best->ratio;
            state.SetLabel(best->madeBy + ": " + best->call);
        }
        keep(findings.contests, finding);
    });
}

void addContests(const pxkhost::Host& host, const std::vector<Row>& rows, const Libraries& libraries,
                 Findings& findings) {
    for (const PictureSize size : {smallSize, largeSize})
        for (const Content content : allContents)
            for (const Row& row : rows)
                if (contains(row.sizes, size) && contains(row.contents, content))
                    addContest(host, row, content, size, libraries, findings);
}

void addFixedCosts(const pxkhost::Host& host, const std::vector<Row>& rows, Findings& findings) {
    for (const Row& row : rows) {
        if (!contains(row.sizes, onePixel)) continue;
        const Content content = row.contents.front();
        add(row.name + "/" + contentName(content) + "/" + onePixel.text(), findings,
            [=, &host, &row, &findings](benchmark::State& state) {
                std::vector<Contestant> contestants = {{timed(row.prepare(workspaceFor(host, onePixel, content)))}};
                runRounds(state, contestants, onePixel);
                keep(findings.fixedCosts, FixedCost{row.name, median(contestants[0].seconds)});
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
                    std::vector<Contestant> contestants = {
                        {timed(row.prepare(work))},
                        {[&] { static_cast<void>(host.newPicture(size.width, size.height)); }}};
                    const bool makesPicture = row.makes == Makes::picture;
                    runRounds(state, std::span(contestants).first(makesPicture ? 2 : 1), size);
                    const std::vector<double>& call = contestants[0].seconds;
                    const double work1 = median(makesPicture ? differences(call, contestants[1].seconds) : call);
                    keep(findings.scaling, ScalingFinding{row.name, size, work1, median(call)});
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
                addContest(host, row, content, size, libraries, findings)->Iterations(1);
}

void report(const Settings& settings, const Libraries& libraries, const Findings& findings) {
    if (!settings.pages) return;
    Setting setting;
    setting.instructionSet = pxk::processorIsa() == pxk::Isa::avx512 ? "AVX-512"
                             : pxk::processorIsa() == pxk::Isa::avx2 ? "AVX2"
                                                                     : "baseline";
    for (const Library& library : libraries.present) setting.libraries.push_back(library.name);
    setting.absentLibraries = libraries.absent;
    if (!findings.contests.empty()) writePerformancePage(*settings.pages, *settings.data, setting, findings.contests);
    if (!findings.scaling.empty())
        writeScalingPage(*settings.pages, *settings.data, setting, findings.scaling, findings.fixedCosts);
}

// Memory that is mapped for one large block alone is new each time, and lies better than that of rows which have been
// used before. So that members and peers are equals, all of it comes from the heap, which keeps what is given back.
void keepAllMemoryInTheHeap() {
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
}

int run(int argc, char** argv) {
    keepAllMemoryInTheHeap();
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
        addContests(host, rows, libraries, findings);
        addFixedCosts(host, rows, findings);
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
