/// The table of what is measured: one row for each way of calling a member.
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

/// Calls a member once on a workspace's pictures and gives its result back to the host. What comes out of it is left
/// in the outcome, unless that is nil, as it is when calls are timed.
using Call = std::function<void(Outcome*)>;

/// The call as it is timed.
inline std::function<void()> timed(Call call) {
    return [call = std::move(call)] { call(nullptr); };
}

/// Gets a call ready: what it needs is found or made here, once. It fails when the member does not do its work, for a
/// member that refuses must not count as fast.
using Prepare = std::function<Call(const Workspace&)>;

/// The most that a member's work may cost, as a multiple of its limit; 0 where nothing is asked.
struct Bars {
    double small = 0;
    double large = 0;
};

inline constexpr Bars noBars = {};

/// Whether a call makes a result picture. The cost of making one is then measured beside and taken off, since it is the
/// host's work and the same for every member.
enum class Makes { nothing, picture };

struct Row {
    std::string name;  ///< as a program would write the call
    Prepare prepare;
    const Limit* limit = nullptr;
    Makes makes = Makes::nothing;
    Bars bars = noBars;
    /// What it is measured on: more than one content where that makes a difference.
    std::vector<Content> contents = {Content::photo};
    /// One pixel shows what a call costs by itself.
    std::vector<PictureSize> sizes = {onePixel, smallSize, largeSize};
};

/// Every row, with the bars that hold for an instruction set.
std::vector<Row> allRows(pxk::Isa set);

std::vector<Row> pointOperationRows(pxk::Isa set);
std::vector<Row> channelRows(pxk::Isa set);
std::vector<Row> analysisRows();
std::vector<Row> utilityRows();

}  // namespace pxkbench
