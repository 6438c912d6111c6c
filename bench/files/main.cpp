// Compares pxk with other programs that invert a picture file: see page.cpp for what is measured.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "bench/files/page.h"
#include "bench/files/picture_files.h"
#include "bench/files/programs.h"
#include "bench/rounds.h"

namespace {

using namespace pxkbench;

constexpr const char* usage =
    "pxk_files [--page=FILE] [--trial]\n"
    "\n"
    "--page     the file that the results are written to, instead of standard output\n"
    "--trial    one round on the small picture, to check that every program works; the timings mean nothing\n";

// A folder for the files, removed at the end.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "pxk_files_XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a folder like " + pattern);
        path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::filesystem::path path;
};

struct Format {
    const char* name;
    const char* extension;
};
constexpr Format jpeg = {"JPEG", ".jpg"};
constexpr Format png = {"PNG", ".png"};

struct Conversion {
    Format from;
    Format to;
};
constexpr Conversion conversions[] = {{jpeg, jpeg}, {jpeg, png}, {png, png}, {png, jpeg}};

struct SizeAndRounds {
    PictureSize size;
    int rounds;
};
constexpr PictureSize sampleSize = {640, 480};

// A program that takes part, with the time of each round.
struct Participant {
    Command command;
    std::vector<double> seconds{};
};

FileComparison compare(const Programs& programs, const std::filesystem::path& folder, Conversion conversion,
                       SizeAndRounds scale) {
    FileComparison comparison{scale.size, conversion.from.name, conversion.to.name, scale.rounds, {}, {}};
    const std::filesystem::path source = folder / ("source" + std::string(conversion.from.extension));
    const std::filesystem::path log = folder / "log";
    std::vector<Participant> participants;
    for (const Program& program : programs.present) {
        try {
            const std::filesystem::path result = folder / (program.name + conversion.to.extension);
            const Command command = program.invert(source, result);
            run(command, log);
            const double error = inversionError(source, result);
            if (error > toleranceFor(source, result))
                throw std::runtime_error("its result is no inversion, the mean error being " + std::to_string(error));
            comparison.findings.push_back(
                {program.name, 0, 0, std::filesystem::file_size(result), chromaSubsampling(result), error});
            participants.push_back({command});
        } catch (const std::exception& problem) {
            if (program.name == programs.present.front().name) throw;
            comparison.leftOut.push_back(program.name + ": " + problem.what());
        }
    }
    for (int round = 0; round < scale.rounds; ++round)
        for (Participant& participant : participants) participant.seconds.push_back(run(participant.command, log));
    for (std::size_t i = 0; i < participants.size(); ++i) {
        comparison.findings[i].seconds = median(participants[i].seconds);
        comparison.findings[i].ratio = median(ratios(participants[0].seconds, participants[i].seconds));
    }
    return comparison;
}

void measure(const std::string& page, bool trial) {
    limitToOneThread();
    const TemporaryFolder folder;
    const Programs programs = findPrograms(folder.path / "log");
    std::vector<SizeAndRounds> scales = {{sampleSize, trial ? 1 : 21}};
    if (!trial) scales.push_back({largeSize, 7});
    std::vector<FileComparison> comparisons;
    for (const SizeAndRounds& scale : scales) {
        writeSources(scale.size, folder.path);
        for (const Conversion& conversion : conversions) {
            comparisons.push_back(compare(programs, folder.path, conversion, scale));
            std::cerr << scale.size.text() << ", " << conversion.from.name << " to " << conversion.to.name
                      << ": done\n";
        }
    }
    if (page.empty()) {
        writeFilesPage(std::cout, programs, comparisons);
        return;
    }
    std::ofstream file(page);
    writeFilesPage(file, programs, comparisons);
    if (!file.flush()) throw std::runtime_error("cannot write " + page);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        std::string page;
        bool trial = false;
        for (const std::string_view argument : std::vector<std::string_view>(argv + 1, argv + argc)) {
            constexpr std::string_view pageOption = "--page=";
            if (argument.starts_with(pageOption)) {
                page = argument.substr(pageOption.size());
            } else if (argument == "--trial") {
                trial = true;
            } else {
                std::fputs(usage, argument == "--help" ? stdout : stderr);
                return argument == "--help" ? 0 : 2;
            }
        }
        measure(page, trial);
        return 0;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "pxk_files: %s\n", problem.what());
        return 1;
    }
}
