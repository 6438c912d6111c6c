/// Explanations for members that answer nil without saying why.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "chain/open_host.h"
#include "chain/plan.h"

namespace pxk::chain {

/// Why a method returned nil, judged by its rules and what it was given: "the pictures must have the same size: source1
/// is 640 x 480, source2 is 76 x 74". Empty when these do not explain it. `self` is the picture it was called on, none
/// for a global method; `values` belong to `step.arguments`.
std::string whyNil(const PlannedStep& step, const Object& self, const std::vector<Value>& values);

/// Why these bytes are no picture as a binary string; empty when they are one.
std::string whyNoBinaryString(std::string_view bytes);

/// Why a picture cannot be copied or worked on: one side is too long. Empty when none is.
std::string whyTooLarge(const std::string& name, const Object& picture);

}  // namespace pxk::chain
