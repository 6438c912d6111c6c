/// The table of measurements: one row for each way of calling a member.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "bench/limits.h"
#include "bench/outcome.h"
#include "bench/workspace.h"
#include "picture/isa.h"

namespace pxkbench {

/// Calls a member once on a workspace's pictures and releases its result. Stores the outcome unless the pointer is nil,
/// as it is when calls are timed.
using Call = std::function<void(Outcome*)>;

/// The call without its outcome, for timing.
inline std::function<void()> timed(Call call) {
    return [call = std::move(call)] { call(nullptr); };
}

/// Prepares a call: looks up and creates what it needs, once. The call throws when the member fails, since a refusal
/// must not count as a fast result.
using Prepare = std::function<Call(const Workspace&)>;

/// The most time that a member's work may take, as a multiple of its limit, on each size; 0 for no threshold.
struct Thresholds {
    double small = 0;
    double large = 0;
};

inline constexpr Thresholds noThresholds = {};

/// Whether a call creates a result picture. The cost of creating one is then measured as well and subtracted, since it
/// is the host's and the same for every member.
enum class Makes { nothing, picture };

struct Row {
    std::string name;  ///< the call as a program would write it
    Prepare prepare;
    const Limit* limit = nullptr;
    Makes makes = Makes::nothing;
    Thresholds thresholds = noThresholds;
    /// What it is measured on: several contents where the time depends on them.
    std::vector<Content> contents = {Content::photo};
    /// One pixel shows the call overhead.
    std::vector<PictureSize> sizes = {onePixel, smallSize, largeSize};
};

/// All rows, with the thresholds that apply to an instruction set.
std::vector<Row> allRows(pxk::Isa isa);

std::vector<Row> pointOperationRows(pxk::Isa isa);
std::vector<Row> channelRows(pxk::Isa isa);
std::vector<Row> analysisRows();
std::vector<Row> utilityRows();

}  // namespace pxkbench
