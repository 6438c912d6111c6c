/// A plan, run on one picture.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "open_host.h"
#include "plan.h"

namespace pxk::tool {

/// What a run leaves behind.
struct Outcome {
    Object picture;  ///< the current picture at the end; none when the chain had none
    Value value;     ///< what the last call gave when that is not a picture, otherwise of kind PXK_NOTHING
    std::vector<std::pair<std::string, Value>> variables;  ///< what the last call wrote back, by name
};

/// Runs a plan on `picture`, which may be none when the plan needs none. Throws WorkError naming the step: when a
/// member raised an exception or gave nil, when Run gave false, when a call before the last line gave false, or when
/// a file named as an argument could not be read.
Outcome runPlan(OpenHost& host, const Plan& plan, Object picture);

}  // namespace pxk::tool
