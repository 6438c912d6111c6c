/// Runs a plan on one picture.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "chain/files.h"
#include "chain/open_host.h"
#include "chain/plan.h"

namespace pxk::chain {

/// The result of a run.
struct Outcome {
    Object picture;  ///< the current picture at the end; none when the chain had none
    Value value;     ///< what the last call returned unless it was a picture, otherwise PXK_NOTHING
    std::vector<std::pair<std::string, Value>> variables;  ///< what the last call wrote back, by name
};

/// Runs a plan on `picture`, which may be none when the plan needs none. `files` resolves the names in its arguments.
/// Throws WorkError naming the step: when a member raised an exception or returned nil, when Run returned false, when a
/// statement before the last returned false, or when a file named as an argument could not be read.
Outcome runPlan(OpenHost& host, const Files& files, const Plan& plan, Object picture);

/// Reads every file that the plan's arguments name, so that a mistake shows before the first of many pictures is worked
/// on. Throws WorkError naming the step.
void checkFiles(OpenHost& host, const Files& files, const Plan& plan);

}  // namespace pxk::chain
