#include "bench/table_reporter.h"

#include <cstdio>

#include "bench/measure.h"

namespace pxkbench {
namespace {

double figure(const benchmark::BenchmarkReporter::Run& run, const char* name) {
    const auto found = run.counters.find(name);
    return found == run.counters.end() ? 0 : found->second.value;
}

}  // namespace

bool TableReporter::ReportContext(const Context& context) {
    std::printf("%s\n%d processors at %.0f MHz\n\n", description_.c_str(), context.cpu_info.num_cpus,
                context.cpu_info.cycles_per_second / 1e6);
    std::printf(
        "ns per pixel, medians; work = call - creation of the result picture; ratio = work / limit, by round\n\n");
    std::printf("%-66s %8s %8s %8s %8s  %-9s %6s %9s\n", "member / picture / size", "call", "creation", "work", "limit",
                "limit is", "ratio", "threshold");
    std::fflush(stdout);
    return true;
}

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) continue;
        const std::string name = run.run_name.function_name;
        if (run.error_occurred) {
            std::printf("%-66s %s\n", name.c_str(), run.error_message.c_str());
            failed_.push_back(name + ": " + run.error_message);
            continue;
        }
        const double ratio = figure(run, counter::ratio);
        const double threshold = figure(run, counter::threshold);
        const bool isExceeded = threshold > 0 && ratio > threshold;
        std::printf("%-66s %8.3f %8.3f %8.3f %8.3f  %-9s %6.2f ", name.c_str(), figure(run, counter::call),
                    figure(run, counter::creation), figure(run, counter::work), figure(run, counter::limit),
                    run.report_label.c_str(), ratio);
        if (threshold > 0)
            std::printf("%9.2f %s\n", threshold, isExceeded ? "EXCEEDED" : "ok");
        else
            std::printf("%9s\n", "-");
        if (isExceeded) exceeding_.push_back(name);
    }
    std::fflush(stdout);
}

void TableReporter::Finalize() {
    const auto list = [](const char* heading, const std::vector<std::string>& lines) {
        if (!lines.empty()) std::printf("\n%s:\n", heading);
        for (const std::string& line : lines) std::printf("  %s\n", line.c_str());
    };
    if (exceeding_.empty() && failed_.empty()) std::printf("\nNo threshold is exceeded.\n");
    list("Exceeded", exceeding_);
    list("Failed", failed_);
}

}  // namespace pxkbench
