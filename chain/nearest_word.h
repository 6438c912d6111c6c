/// Suggestions for misspelt words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pxk::chain {

/// The one of `words` that differs from `written` by the fewest letters inserted, deleted or replaced; empty when every
/// one differs by more than two letters and more than a third of `written`. Letter case and leading dashes do not
/// count.
std::string nearestWord(std::string_view written, const std::vector<std::string>& words);

/// "; did you mean list?", or nothing when no word is near.
std::string suggestionFor(std::string_view written, const std::vector<std::string>& words);

}  // namespace pxk::chain
