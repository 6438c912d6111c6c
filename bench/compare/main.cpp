// Tells whether one plugin is slower than another: see verdict.h.

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <map>
#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bench/compare/verdict.h"
#include "bench/compare/worker.h"
#include "bench/median.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_compare OLD.so NEW.so [--filter=REGEX] [--runs=N] [--rounds=N]\n"
    "\n"
    "Times every member of two plugins side by side, in several runs (7) with fresh processes, which take turns\n"
    "in several rounds (5). Exit code 1 when a member of NEW.so is slower.\n";

struct Settings {
    std::vector<std::string> plugins{};
    std::regex filter{""};
    int runs = 7;
    int rounds = 5;
};

int count(std::string_view text) {
    const int number = std::stoi(std::string(text));
    if (number < 1) throw std::runtime_error("--runs and --rounds must be at least 1");
    return number;
}

Settings settingsFrom(std::span<char*> arguments) {
    Settings settings;
    for (const std::string_view argument : arguments) {
        const auto value = [&](std::string_view option) { return argument.substr(option.size()); };
        if (argument.starts_with("--filter="))
            settings.filter = std::string(value("--filter="));
        else if (argument.starts_with("--runs="))
            settings.runs = count(value("--runs="));
        else if (argument.starts_with("--rounds="))
            settings.rounds = count(value("--rounds="));
        else if (argument.starts_with("-"))
            throw std::runtime_error("unknown option " + std::string(argument) + "\n" + usage);
        else
            settings.plugins.emplace_back(argument);
    }
    if (settings.plugins.size() != 2) throw std::runtime_error(std::string("expected two plugins\n") + usage);
    return settings;
}

// Grouped by size and content, so that the pictures are created once for all rows.
std::vector<Task> tasksOf(const std::vector<Row>& rows, const std::regex& filter) {
    std::vector<Task> tasks;
    for (const PictureSize size : {onePixel, waveformSize, smallSize, largeSize})
        for (const Content content : allContents)
            for (const Row& row : rows) {
                const Task task = {&row, content, size};
                const bool isMeasured =
                    std::find(row.sizes.begin(), row.sizes.end(), size) != row.sizes.end() &&
                    std::find(row.contents.begin(), row.contents.end(), content) != row.contents.end();
                if (isMeasured && std::regex_search(task.name(), filter)) tasks.push_back(task);
            }
    return tasks;
}

// The times of a task so far.
struct Comparison {
    std::vector<double> ratios{};  // new / old, by run
    std::vector<double> oldSeconds{};
    std::vector<double> newSeconds{};
    std::string problem{};
};

using Comparisons = std::map<std::string, Comparison>;

void compare(const Task& task, Worker& oldWorker, Worker& newWorker, int rounds, Comparison& comparison) {
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        const bool oldFirst = round % 2 == 0;
        const double first = (oldFirst ? oldWorker : newWorker).time(task);
        const double second = (oldFirst ? newWorker : oldWorker).time(task);
        comparison.oldSeconds.push_back(oldFirst ? first : second);
        comparison.newSeconds.push_back(oldFirst ? second : first);
        ratios.push_back(comparison.newSeconds.back() / comparison.oldSeconds.back());
    }
    comparison.ratios.push_back(median(ratios));
}

void measureRuns(const Settings& settings, const std::vector<Task>& tasks, Comparisons& comparisons) {
    for (int done = 0; done < settings.runs; ++done) {
        Worker oldWorker(settings.plugins[0]);
        Worker newWorker(settings.plugins[1]);
        for (const Task& task : tasks) {
            Comparison& comparison = comparisons[task.name()];
            if (!comparison.problem.empty()) continue;
            try {
                compare(task, oldWorker, newWorker, settings.rounds, comparison);
            } catch (const std::exception& problem) {
                comparison.problem = problem.what();
            }
        }
        std::fprintf(stderr, "run %d of %d\n", done + 1, settings.runs);
    }
}

Verdict verdictOn(const Task& task, const Comparison& comparison) {
    return judge(comparison.ratios, task.size == onePixel ? minimumOverheadThreshold : minimumThreshold);
}

void printLine(const Task& task, const Comparison& comparison) {
    if (!comparison.problem.empty()) {
        std::printf("%-60s not compared: %s\n", task.name().c_str(), comparison.problem.c_str());
        return;
    }
    const Verdict verdict = verdictOn(task, comparison);
    const auto perPixel = [&](const std::vector<double>& seconds) {
        return median(seconds) * 1e9 / static_cast<double>(task.size.pixels());
    };
    std::printf("%-60s %9.3f %9.3f %7.3f %6.3f  %s\n", task.name().c_str(), perPixel(comparison.oldSeconds),
                perPixel(comparison.newSeconds), verdict.ratio, verdict.threshold, textOf(verdict.change).c_str());
}

std::vector<Task> slowerOf(const std::vector<Task>& tasks, const Comparisons& comparisons) {
    std::vector<Task> slower;
    for (const Task& task : tasks)
        if (verdictOn(task, comparisons.at(task.name())).change == Change::slower) slower.push_back(task);
    return slower;
}

int run(std::span<char*> arguments) {
    const Settings settings = settingsFrom(arguments);
    const std::vector<Row> rows = allRows(pxk::processorIsa());
    const std::vector<Task> tasks = tasksOf(rows, settings.filter);
    if (tasks.empty()) throw std::runtime_error("no measurement matches the filter");

    Comparisons comparisons;
    measureRuns(settings, tasks, comparisons);
    std::printf("ns per pixel, medians; new/old: the median over runs, a change if further from 1 than the noise\n\n");
    std::printf("%-60s %9s %9s %7s %6s\n", "member / picture / size", "old", "new", "new/old", "noise");
    for (const Task& task : tasks) printLine(task, comparisons.at(task.name()));

    // Among so many measurements some are slower by chance, but hardly any of them twice.
    std::vector<Task> slower = slowerOf(tasks, comparisons);
    if (!slower.empty()) {
        std::printf("\nThese look slower and are measured again:\n\n");
        std::fflush(stdout);
        Comparisons again;
        measureRuns(settings, slower, again);
        for (const Task& task : slower) printLine(task, again.at(task.name()));
        slower = slowerOf(slower, again);
    }
    std::printf(slower.empty() ? "\nNo member is slower.\n" : "\nSlower:\n");
    for (const Task& task : slower) std::printf("  %s\n", task.name().c_str());
    return slower.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::signal(SIGPIPE, SIG_IGN);  // a worker that has ended shows up as the end of its replies
        return run(std::span(argv + 1, static_cast<std::size_t>(argc - 1)));
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "pxk_compare: %s\n", problem.what());
        return 2;
    }
}
