#include "bench/files/page.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "bench/processor.h"

namespace pxkbench {
namespace {

constexpr const char* introduction = R"(# Performance on picture files

`pxk` compared with other programs that invert a picture file: whole processes, from their start to their end, that read a
file, invert the picture and write a file. `./dev bench --files` measures and writes this page.

)";

constexpr const char* method = R"(
The sample picture is inverted at its own size and scaled up, which makes it smoother than a photograph of that size. The
JPEG source has quality 85 and 4:2:0 chroma. Results are JPEG files of quality 90 (`-q:v 3` for ffmpeg, which has a scale of
its own) and PNG files of each program's default compression. Chroma subsampling is each program's default too, and is not
the same for all: subsampled chroma is less work and a smaller file.

Every program uses one thread. A time is the CPU time of the process, user and system. The programs take turns in rounds;
times are medians over the rounds, ratios medians of the ratios within rounds. Before anything is timed, every result is
decoded and compared with the inverse of its source: PNG to PNG must be exact, and otherwise the mean difference of a channel
may be up to 3 of 255. The error in the table is that difference.
)";

// The best of the other programs, or nil if there is none.
const FileFinding* bestOther(const FileComparison& comparison) {
    const auto others = comparison.findings.begin() + 1;
    const auto best = std::max_element(others, comparison.findings.end(),
                                       [](const FileFinding& a, const FileFinding& b) { return a.ratio < b.ratio; });
    return best == comparison.findings.end() ? nullptr : &*best;
}

// What a ratio is rounded to in the table; 1.00 counts as equal.
constexpr double equalUpTo = 1.005;

std::string titleOf(const FileComparison& comparison) {
    return comparison.size.text() + ", " + comparison.from + " to " + comparison.to;
}

}  // namespace

void writeFilesPage(std::ostream& page, const Programs& programs, const std::vector<FileComparison>& comparisons) {
    page << introduction << "- Processor: " << processorDescription() << ".\n- Programs: ";
    for (const Program& program : programs.present)
        page << (&program == programs.present.data() ? "" : ", ") << program.name << " " << program.version;
    page << ".\n";
    for (const std::string& absent : programs.absent) page << "- " << absent << " is not installed and is left out.\n";
    page << method << "\n## Slower than another program\n\n";

    bool none = true;
    for (const FileComparison& comparison : comparisons) {
        const FileFinding* const best = bestOther(comparison);
        if (best == nullptr || best->ratio < equalUpTo) continue;
        none = false;
        page << std::fixed << std::setprecision(2) << "- " << titleOf(comparison) << ": pxk takes " << best->ratio
             << " times as long as " << best->program << ".\n";
    }
    if (none) page << "None.\n";

    page << "\n## Times and file sizes\n\nA ratio below 1 means that pxk takes less time.\n\n"
            "| Picture | Program | Time ms | pxk / program | File bytes | Chroma | Error | Rounds |\n"
            "|---|---|---:|---:|---:|---|---:|---:|\n";
    for (const FileComparison& comparison : comparisons) {
        for (const FileFinding& finding : comparison.findings)
            page << std::fixed << std::setprecision(1) << "| " << titleOf(comparison) << " | " << finding.program
                 << " | " << finding.seconds * 1e3 << " | " << std::setprecision(2) << finding.ratio << " | "
                 << finding.bytes << " | " << finding.chroma << " | " << finding.error << " | " << comparison.rounds
                 << " |\n";
    }
    for (const FileComparison& comparison : comparisons)
        for (const std::string& reason : comparison.leftOut)
            page << "\nLeft out of " << titleOf(comparison) << ": " << reason << ".\n";
}

}  // namespace pxkbench
