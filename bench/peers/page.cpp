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
#include <string_view>

#include "bench/peers/reasons.h"

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

// The first value of a field such as "model name" in /proc/cpuinfo.
std::string processorField(std::string_view field) {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with(field) && colon != std::string::npos) return line.substr(colon + 2);
    }
    return "unknown";
}

// A cache of the first processor, such as "L2 512K".
std::string caches() {
    std::string text;
    for (int index = 0; index < 8; ++index) {
        const std::string folder = "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/";
        std::string level;
        std::string type;
        std::string size;
        std::ifstream(folder + "level") >> level;
        std::ifstream(folder + "type") >> type;
        std::ifstream(folder + "size") >> size;
        if (size.empty() || type == "Instruction") continue;
        text += (text.empty() ? "" : ", ") + ("L" + level) + " " + size;
    }
    return text.empty() ? "caches unknown" : text;
}

void writeSetting(std::ostream& page, const Setting& setting) {
    page << "- Processor: " << processorField("model name") << " (family " << processorField("cpu family") << ", model "
         << processorField("model") << "), " << caches()
         << "; instruction set of the plugin: " << setting.instructionSet << "; one thread.\n";
    page << "- Compiler: "
         <<
#ifdef __clang__
        "clang " << __clang_version__
#else
        "g++ " << __VERSION__
#endif
         << ".\n";
    page << "- Host: the reference host with console pictures (libgd images), members called by their registered "
            "declarations.\n";
}

std::string placeOf(const Finding& finding) { return finding.row + " | " + contentName(finding.content); }

void writeTable(std::ostream& page, const std::vector<Finding>& findings, PictureSize size) {
    page << "\n## " << size.text() << "\n\n"
         << "| Member | Picture | Member ns | Best peer | Peer ns | Times as fast | Limit | Limit ns | Of the limit |\n"
         << "|---|---|---:|---|---:|---:|---|---:|---:|\n";
    for (const Finding& finding : findings) {
        if (finding.size != size) continue;
        const PeerFinding* const best = finding.best();
        const bool endToEnd = best != nullptr && best->makesResult;
        page << "| " << placeOf(finding) << " | "
             << nanoseconds(finding.perPixel(endToEnd ? finding.call : finding.work)) << " | ";
        if (best != nullptr)
            page << best->madeBy << ": " << best->call << " | " << nanoseconds(finding.perPixel(best->seconds)) << " | "
                 << format("%.2f", best->ratio);
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
            slower << "| " << placeOf(finding) << " | " << finding.size.text() << " | " << best->madeBy << ": "
                   << best->call << " | " << format("%.2f", best->ratio) << " |\n";
    }
    page << "\n## Slower than a peer\n\nOf " << compared
         << " comparisons, where the ratio is off by more than 0.03 and by more than three times the error that the "
            "spread\nof the rounds implies:\n\n";
    if (slower.str().empty())
        page << "None.\n";
    else
        page << "| Member | Picture | Size | Peer | Times as fast |\n|---|---|---|---|---:|\n" << slower.str();
}

void writeReasons(std::ostream& page, const std::vector<Finding>& findings) {
    constexpr double enough = 0.75;
    page << "\n## Below three quarters of the limit at " << largeSize.text() << "\n\n";
    std::map<std::string, std::vector<std::string>> rowsByReason;
    for (const Finding& finding : findings) {
        if (finding.size != largeSize || finding.fraction >= enough) continue;
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
    page << "\n## Every route\n\n| Member | Picture | Size | Library | Route | Peer ns | Times as fast |\n"
         << "|---|---|---|---|---|---:|---:|\n";
    for (const Finding& finding : findings)
        for (const PeerFinding& peer : finding.peers)
            page << "| " << placeOf(finding) << " | " << finding.size.text() << " | " << peer.madeBy << " | "
                 << peer.call << " | " << nanoseconds(finding.perPixel(peer.seconds)) << " | "
                 << format("%.2f", peer.ratio) << " |\n";
}

// One line for each member and picture: name, then how many times as fast as the best peer, small and large.
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
                          const Setting& setting, const std::vector<Finding>& findings) {
    std::ofstream page = create(folder / "performance.md");
    page << "# Performance\n\n"
         << "Every member beside the best routes of well-known libraries to the same result, and beside a plain loop\n"
         << "that moves the same bytes: its limit. `./dev bench --peers` measures and writes this page.\n\n"
         << "![How many times as fast as the best peer](performance.svg)\n\n";
    writeSetting(page, setting);
    page << "- Peers: ";
    for (std::size_t i = 0; i < setting.libraries.size(); ++i) page << (i == 0 ? "" : ", ") << setting.libraries[i];
    page << ".\n";
    if (!setting.absentLibraries.empty()) {
        page << "- Left out, since they were not found: ";
        for (std::size_t i = 0; i < setting.absentLibraries.size(); ++i)
            page << (i == 0 ? "" : ", ") << setting.absentLibraries[i];
        page << ".\n";
    }
    page << R"(
Member, limit and peers run in turn in one run; figures are medians of processor time in nanoseconds a pixel,
ratios medians of the ratios within rounds. A member's figure is its call less the making of the result picture,
since peers write into memory made before; where a peer makes its result anew as well, it is the whole call. Before
they are timed, the outcomes of peers are held against the member's, pixel by pixel, and may differ only by their
own rounding. Peers work on pictures in one block of memory, members on libgd images with a table of rows; only
scrolling by the C library's means is done on such rows as well. All pictures are there several times, and everyone
goes on to other ones from round to round, since where in memory they lie makes a difference of up to a fifth. The C
library is told to keep the memory that is given back, so that nobody pays for new pages.
)";
    writeSlower(page, findings);
    writeTable(page, findings, largeSize);
    writeTable(page, findings, smallSize);
    page
        << "\nNo peer: `EmbeddedMaskPXK` works on the 7-bit opacity of libgd images, and no library draws the means of "
           "samples as\n`RenderSamplesPXK` does. Where all pixels are nearly alike and the needle is nowhere, "
           "`FindPicturePXK` compares the\nwhole needle at each place, row by row in wide steps: as many pixels as "
           "the needle has, each at the price of reading it.\n";
    writeReasons(page, findings);
    writeEveryRoute(page, findings);
    writePerformanceData(data / "performance.dat", findings);
}

void writeScalingPage(const std::filesystem::path& folder, const std::filesystem::path& data, const Setting& setting,
                      const std::vector<ScalingFinding>& findings, const std::vector<FixedCost>& fixedCosts) {
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
    page << "# Scaling\n\nWhat members cost a pixel on pictures of noise from " << sizes.front().text() << " to "
         << sizes.back().text()
         << ", in nanoseconds, less the making of the\nresult picture; and what a call costs by itself. "
            "`./dev bench --peers` measures and writes this page.\n\n"
            "![Cost a pixel by size](scaling.svg)\n\n";
    writeSetting(page, setting);
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
    page << "\n## A call on one pixel\n\nThe whole call, host services and the result picture included, in "
            "nanoseconds.\n\n| Member | ns |\n|---|---:|\n";
    for (const FixedCost& cost : fixedCosts)
        page << "| " << cost.row << " | " << format("%.0f", cost.seconds * 1e9) << " |\n";

    // A column a member, named in the first line; a line a size.
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
