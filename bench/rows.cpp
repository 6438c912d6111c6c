#include "bench/rows.h"

#include <iterator>
#include <stdexcept>

namespace pxkbench {
namespace {

// What every member that gives a new picture pays the host for it.
Call newPicture(const Workspace& work) {
    return [&work](Outcome*) {
        if (!work.host.newPicture(work.size.width, work.size.height)) throw std::runtime_error("no picture was made");
    };
}

}  // namespace

std::vector<Row> allRows(pxk::Isa set) {
    std::vector<Row> all = {{"New Picture", newPicture, &copyLimit, Makes::nothing, {0, 1.0}}};
    for (std::vector<Row>& some : std::vector{pointOperationRows(set), channelRows(set), analysisRows(), utilityRows()})
        std::move(some.begin(), some.end(), std::back_inserter(all));
    return all;
}

}  // namespace pxkbench
