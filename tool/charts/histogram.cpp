#include "tool/charts/histogram.h"

#include <cstring>

#include "chain/error.h"

namespace pxk::tool {
namespace {

Counters countersIn(const chain::Value& block) {
    Counters counters{};
    const std::string_view bytes = block.isNil() ? std::string_view() : bytesOf(block.asObject());
    if (bytes.size() != sizeof counters) throw chain::WorkError("CountColorsPXK returned no histogram of 256 counters");
    std::memcpy(counters.data(), bytes.data(), sizeof counters);
    return counters;
}

}  // namespace

Histogram histogramOf(chain::OpenHost& host, const chain::Object& picture) {
    const chain::Value noBlock = chain::Value::initial(PXK_MEMORY_BLOCK);
    std::vector<chain::Value> arguments{noBlock, noBlock, noBlock, chain::Value::integer(0)};
    host.call(picture, "CountColorsPXK", arguments);
    if (arguments[3].asInteger() < 0) throw chain::WorkError("CountColorsPXK could not count the picture's colours");
    // The second block is declared as blue and holds green, the third the other way round.
    return {countersIn(arguments[0]), countersIn(arguments[1]), countersIn(arguments[2])};
}

std::string asCsv(const Histogram& histogram) {
    std::string lines = "value,red,green,blue\n";
    for (std::size_t value = 0; value < histogram.red.size(); ++value) {
        lines.append(std::to_string(value));
        for (const Counters* each : {&histogram.red, &histogram.green, &histogram.blue}) {
            lines.append(",").append(std::to_string((*each)[value]));
        }
        lines.append("\n");
    }
    return lines;
}

}  // namespace pxk::tool
