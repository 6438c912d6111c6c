/// The pages of results, docs/performance.md and docs/scaling.md, and the data of their charts.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bench/peers/comparison.h"

namespace pxkbench {

/// What the results were measured with.
struct Environment {
    std::string instructionSet;
    std::vector<std::string> libraries;
    std::vector<std::string> absentLibraries;
};

/// The time of a call on one pixel.
struct CallOverhead {
    std::string row;
    double seconds;
};

/// The time of a member on pictures of one size.
struct ScalingFinding {
    std::string row;
    PictureSize size;
    double work;  ///< seconds per call less the creation of the result picture
    double call;
};

/// Writes `folder`/performance.md and `data`/performance.dat.
void writePerformancePage(const std::filesystem::path& folder, const std::filesystem::path& data,
                          const Environment& environment, const std::vector<Finding>& findings);

/// Writes `folder`/scaling.md and `data`/scaling.dat.
void writeScalingPage(const std::filesystem::path& folder, const std::filesystem::path& data,
                      const Environment& environment, const std::vector<ScalingFinding>& findings,
                      const std::vector<CallOverhead>& callOverheads);

}  // namespace pxkbench
