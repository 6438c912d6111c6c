/// The pages of figures, docs/performance.md and docs/scaling.md, and the data that their charts are drawn from.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "bench/peers/contest.h"

namespace pxkbench {

/// What the figures were taken with.
struct Setting {
    std::string instructionSet;
    std::vector<std::string> libraries;
    std::vector<std::string> absentLibraries;
};

/// What a call costs by itself: on one pixel.
struct FixedCost {
    std::string row;
    double seconds;
};

/// What a member costs on pictures of one size.
struct ScalingFinding {
    std::string row;
    PictureSize size;
    double work;  ///< seconds of the call less making the result picture
    double call;
};

/// Writes `folder`/performance.md and `data`/performance.dat.
void writePerformancePage(const std::filesystem::path& folder, const std::filesystem::path& data,
                          const Setting& setting, const std::vector<Finding>& findings);

/// Writes `folder`/scaling.md and `data`/scaling.dat.
void writeScalingPage(const std::filesystem::path& folder, const std::filesystem::path& data, const Setting& setting,
                      const std::vector<ScalingFinding>& findings, const std::vector<FixedCost>& fixedCosts);

}  // namespace pxkbench
