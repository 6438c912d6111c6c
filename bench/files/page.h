/// The page of results, docs/performance-files.md.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "bench/files/programs.h"
#include "bench/workspace.h"

namespace pxkbench {

/// What was found about one program.
struct FileFinding {
    std::string program;
    double seconds;  ///< the median over rounds
    double ratio;    ///< pxk's time divided by this program's, the median of the ratios within rounds
    std::uintmax_t bytes;
    std::string chroma;
    double error;
};

/// The inversion of one file by every program.
struct FileComparison {
    PictureSize size;
    std::string from;  ///< "PNG" or "JPEG"
    std::string to;
    int rounds;
    std::vector<FileFinding> findings;  ///< pxk's first
    std::vector<std::string> leftOut;   ///< programs, each with the reason
};

void writeFilesPage(std::ostream& page, const Programs& programs, const std::vector<FileComparison>& comparisons);

}  // namespace pxkbench
