/// The results of a chain, as lines of text and as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "chain/runner.h"

namespace pxk::tool {

/// JSON whose fields stay in the order in which they were set.
using Json = nlohmann::ordered_json;

/// A value as the host's language writes it: 12, 0.5, true, nil, &cRRGGBB; a string is its own text, a picture or
/// memory block is its size.
std::string asText(const chain::Value& value);

/// Numbers, booleans and text as themselves, a colour as "&cRRGGBB", nil as null, a picture as its size, the bytes of
/// a memory block or of a binary string as an array of numbers.
Json asJson(const chain::Value& value);

/// What a run prints: its value, then "name = value" for each value that was written back.
std::vector<std::string> linesOf(const chain::Outcome& outcome);

/// JSON on one line. Malformed UTF-8 is replaced, and every control character is escaped.
std::string oneLine(const Json& json);

}  // namespace pxk::tool
