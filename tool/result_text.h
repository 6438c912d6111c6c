/// The results of a chain, as lines for people and as JSON for machines.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "chain_runner.h"

namespace pxk::tool {

/// JSON whose fields stay in the order in which they were set.
using Json = nlohmann::ordered_json;

/// A value in the words of the host's language: 12, 0.5, true, nil, &cRRGGBB; a string is its own text, a picture or
/// memory block is its size.
std::string asText(const Value& value);

/// Numbers, booleans and text as themselves, a colour as "&cRRGGBB", nil as null, a picture as its size, the bytes of
/// a memory block or of a string that is no text as an array of numbers.
Json asJson(const Value& value);

/// All that a run printed: its value, then "name = value" for what was written back.
std::vector<std::string> linesOf(const Outcome& outcome);

/// JSON on one line, malformed UTF-8 replaced.
std::string oneLine(const Json& json);

}  // namespace pxk::tool
