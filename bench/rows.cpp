#include "bench/rows.h"

#include <iterator>
#include <stdexcept>

namespace pxkbench {
namespace {

// The host's share in the cost of every member that returns a new picture.
Call newPicture(const Workspace& work) {
    return [&work](Outcome*) {
        if (!work.host.newPicture(work.size.width, work.size.height))
            throw std::runtime_error("the host created no picture");
    };
}

}  // namespace

std::vector<Row> allRows(pxk::Isa isa) {
    std::vector<Row> all = {{"New Picture", newPicture, &copyLimit, Makes::nothing, {0, 1.0}}};
    for (std::vector<Row>& some : std::vector{pointOperationRows(isa), channelRows(isa), analysisRows(), utilityRows()})
        std::move(some.begin(), some.end(), std::back_inserter(all));
    return all;
}

}  // namespace pxkbench
