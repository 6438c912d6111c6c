#include "bench/peers/page.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <stdexcept>

#include "bench/peers/reasons.h"
#include "bench/processor.h"

namespace pxkbench {
namespace {

std::string format(const char* pattern, double value) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

std::string nanoseconds(double value) { return std::isnan(value) ? "-" : format(value < 10 ? "%.3f" : "%.1f", value); }

std::ofstream create(const std::filesystem::path& path) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path);
    if (!file) throw std::runtime_error("cannot write " + path.string());
    return file;
}

void writeEnvironment(std::ostream& page, const Environment& environment) {
    page << "- Processor: " << processorDescription()
         << "; the plugin's instruction set: " << environment.instructionSet << "; one thread.\n";
    page << "- Compiler: "
         <<
#ifdef __clang__
        "clang " << __clang_version__
#else
        "g++ " << __VERSION__
#endif
         << ".\n";
    page << "- Host: the reference host with console pictures (libgd images), members looked up by their registered "
            "declarations.\n";
}

std::string labelOf(const Finding& finding) { return finding.row + " | " + contentName(finding.content); }

void writeTable(std::ostream& page, const std::vector<Finding>& findings, PictureSize size) {
    page << "\n## " << size.text() << "\n\n"
         << "| Member | Picture | Member ns | Best peer | Peer ns | Speed-up | Limit | Limit ns | Limit / member "
            "|\n"
         << "|---|---|---:|---|---:|---:|---|---:|---:|\n";
    for (const Finding& finding : findings) {
        if (finding.size != size) continue;
        const PeerFinding* const best = finding.best();
        const bool endToEnd = best != nullptr && best->allocatesResult;
        page << "| " << labelOf(finding) << " | "
             << nanoseconds(finding.perPixel(endToEnd ? finding.call : finding.work)) << " | ";
        if (best != nullptr)
            page << best->library << ": " << best->call << " | " << nanoseconds(finding.perPixel(best->seconds))
                 << " | " << format("%.2f", best->ratio);
        else
            page << "none | - | -";
        page << " | " << finding.limitName << " | " << nanoseconds(finding.perPixel(finding.limit)) << " | "
             << format("%.2f", finding.fraction) << " |\n";
    }
}

void writeSlower(std::ostream& page, const std::vector<Finding>& findings) {
    std::size_t compared = 0;
    std::ostringstream slower;
    for (const Finding& finding : findings) {
        const PeerFinding* const best = finding.best();
        if (best == nullptr) continue;
        ++compared;
        if (best->beatsMember)
            slower << "| " << labelOf(finding) << " | " << finding.size.text() << " | " << best->library << ": "
                   << best->call << " | " << format("%.2f", best->ratio) << " |\n";
    }
    page << "\n## Slower than a peer\n\nOf " << compared
         << " comparisons, those in which the peer is faster by more than 3 % and by more than three standard errors\n"
            "of the median over rounds:\n\n";
    if (slower.str().empty())
        page << "None.\n";
    else
        page << "| Member | Picture | Size | Peer | Speed-up |\n|---|---|---|---|---:|\n" << slower.str();
}

void writeReasons(std::ostream& page, const std::vector<Finding>& findings) {
    constexpr double highest = 0.75;
    page << "\n## Below three quarters of the limit's speed at " << largeSize.text() << "\n\n";
    std::map<std::string, std::vector<std::string>> rowsByReason;
    for (const Finding& finding : findings) {
        if (finding.size != largeSize || finding.fraction >= highest) continue;
        std::vector<std::string>& rows = rowsByReason[reasonFor(finding.row)];
        if (std::find(rows.begin(), rows.end(), finding.row) == rows.end()) rows.push_back(finding.row);
    }
    if (rowsByReason.empty()) page << "None.\n";
    for (const auto& [reason, rows] : rowsByReason) {
        page << "- ";
        for (std::size_t i = 0; i < rows.size(); ++i) page << (i == 0 ? "" : ", ") << "`" << rows[i] << "`";
        page << ": " << reason << "\n";
    }
}

void writeEveryRoute(std::ostream& page, const std::vector<Finding>& findings) {
    page << "\n## Every route\n\n| Member | Picture | Size | Library | Route | Peer ns | Speed-up |\n"
         << "|---|---|---|---|---|---:|---:|\n";
    for (const Finding& finding : findings)
        for (const PeerFinding& peer : finding.peers)
            page << "| " << labelOf(finding) << " | " << finding.size.text() << " | " << peer.library << " | "
                 << peer.call << " | " << nanoseconds(finding.perPixel(peer.seconds)) << " | "
                 << format("%.2f", peer.ratio) << " |\n";
}

// One line for each member and content: name, then the ratio of the best peer on small and on large pictures.
void writePerformanceData(const std::filesystem::path& path, const std::vector<Finding>& findings) {
    std::ofstream data = create(path);
    for (const Finding& finding : findings) {
        if (finding.size != largeSize || finding.best() == nullptr) continue;
        const auto small = std::find_if(findings.begin(), findings.end(), [&](const Finding& other) {
            return other.size == smallSize && other.row == finding.row && other.content == finding.content;
        });
        if (small == findings.end()) continue;
        data << '"' << finding.row << ", " << contentName(finding.content) << "\" " << small->best()->ratio << ' '
             << finding.best()->ratio << '\n';
    }
}

}  // namespace

void writePerformancePage(const std::filesystem::path& folder, const std::filesystem::path& data,
                          const Environment& environment, const std::vector<Finding>& findings) {
    std::ofstream page = create(folder / "performance.md");
    page << "# Performance\n\n"
         << "Every member compared with the best routes to the same result in well-known libraries, its peers, and "
            "with\n"
         << "a plain loop that reads and writes the same bytes, its limit. `./dev bench --peers` measures and writes "
            "this\n"
         << "page.\n\n"
         << "![Speed relative to the best peer](performance.svg)\n\n";
    writeEnvironment(page, environment);
    page << "- Peers: ";
    for (std::size_t i = 0; i < environment.libraries.size(); ++i)
        page << (i == 0 ? "" : ", ") << environment.libraries[i];
    page << ".\n";
    if (!environment.absentLibraries.empty()) {
        page << "- Not found, and left out: ";
        for (std::size_t i = 0; i < environment.absentLibraries.size(); ++i)
            page << (i == 0 ? "" : ", ") << environment.absentLibraries[i];
        page << ".\n";
    }
    page << R"(
Member, limit and peers take turns in one run. Times are medians of CPU time in nanoseconds per pixel; ratios are
medians of the ratios within rounds. A member's time is that of its call less the creation of the result picture,
since peers write into memory allocated in advance; where a peer allocates its result too, it is that of the whole
call. Before anything is timed, the peers' outcomes are compared with the member's, pixel by pixel, and may differ
only by the peers' own rounding. Peers work on contiguous pictures, members on libgd images with a table of rows;
only the C library's routes for scrolling work on such rows too. There are several copies of each picture, and every
round uses another one, since the address of a picture makes a difference of up to a fifth. The C library is set to
keep freed memory, so that no candidate pays for page faults.
)";
    writeSlower(page, findings);
    writeTable(page, findings, largeSize);
    writeTable(page, findings, smallSize);
    page << "\nMembers without a peer: `EmbeddedMaskPXK` works on the 7-bit transparency of libgd images, and no "
            "library "
            "draws\nwaveforms from the means of samples as `RenderSamplesPXK` does. In the worst case of "
            "`FindPicturePXK`, a flat\npicture in which only the needle's last pixel matches nowhere, the whole needle "
            "is compared at every position, row\nby row with vector instructions.\n";
    writeReasons(page, findings);
    writeEveryRoute(page, findings);
    writePerformanceData(data / "performance.dat", findings);
}

void writeScalingPage(const std::filesystem::path& folder, const std::filesystem::path& data,
                      const Environment& environment, const std::vector<ScalingFinding>& findings,
                      const std::vector<CallOverhead>& callOverheads) {
    std::vector<std::string> rows;
    std::vector<PictureSize> sizes;
    for (const ScalingFinding& finding : findings) {
        if (std::find(rows.begin(), rows.end(), finding.row) == rows.end()) rows.push_back(finding.row);
        if (std::find(sizes.begin(), sizes.end(), finding.size) == sizes.end()) sizes.push_back(finding.size);
    }
    const auto workOf = [&](const std::string& row, PictureSize size) {
        const auto found = std::find_if(findings.begin(), findings.end(), [&](const ScalingFinding& finding) {
            return finding.row == row && finding.size == size;
        });
        return found == findings.end() ? std::nan("") : found->work * 1e9 / static_cast<double>(size.pixels());
    };

    std::ofstream page = create(folder / "scaling.md");
    page << "# Scaling\n\nThe time of members in nanoseconds per pixel, on pictures of noise from "
         << sizes.front().text() << " to " << sizes.back().text()
         << ", less the creation\nof the result picture; and the overhead of a call. "
            "`./dev bench --peers` measures and writes this page.\n\n"
            "![Time per pixel by size](scaling.svg)\n\n";
    writeEnvironment(page, environment);
    page << "\n| Member |";
    for (const PictureSize size : sizes) page << " " << size.text() << " |";
    page << "\n|---|";
    for (std::size_t i = 0; i < sizes.size(); ++i) page << "---:|";
    page << "\n";
    for (const std::string& row : rows) {
        page << "| " << row << " |";
        for (const PictureSize size : sizes) page << " " << nanoseconds(workOf(row, size)) << " |";
        page << "\n";
    }
    page << "\n## A call on one pixel\n\nThe whole call, including host services and the creation of the result "
            "picture, in "
            "nanoseconds.\n\n| Member | ns |\n|---|---:|\n";
    for (const CallOverhead& overhead : callOverheads)
        page << "| " << overhead.row << " | " << format("%.0f", overhead.seconds * 1e9) << " |\n";

    // A column for each member, named in the first line, and a line for each size.
    std::ofstream file = create(data / "scaling.dat");
    file << "pixels";
    for (const std::string& row : rows) file << " \"" << row << '"';
    file << '\n';
    for (const PictureSize size : sizes) {
        file << size.pixels();
        for (const std::string& row : rows) file << ' ' << workOf(row, size);
        file << '\n';
    }
}

}  // namespace pxkbench
