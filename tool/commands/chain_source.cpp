#include "tool/commands/chain_source.h"

#include "chain/diagnostic.h"
#include "chain/files.h"
#include "chain/parser.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "tool/commands/exit_code.h"

namespace pxk::tool {

void ChainSource::addOptions(CLI::App& command) {
    auto* chain = command
                      .add_option("-e,--chain", pieces_,
                                  "A chain of calls (see pxk help chain); given again, it continues on a new line")
                      ->allow_extra_args(false)
                      ->type_name("CHAIN");
    command.add_option("-f,--file", file_, "Read the chain from a file; - is standard input")
        ->type_name("FILE")
        ->excludes(chain);
}

void ChainSource::read() {
    if (!isGiven()) return;
    if (!file_.empty()) {
        text_ = chain::withoutByteOrderMark(chain::readFile(file_, true));
        place_ = file_ == "-" ? "standard input" : file_;
    }
    for (const std::string& each : pieces_) text_ += (text_.empty() ? "" : "\n") + each;
    if (text_.empty()) throw UsageError("the chain is empty; write a call such as InvertPXK");
    pointingAtMistakes([&] { chain_ = chain::parseChain(text_); });
}

chain::Plan ChainSource::planFor(chain::OpenHost& host, bool startsWithPicture) const {
    chain::Plan plan;
    pointingAtMistakes([&] { plan = chain::makePlan(chain_, host, chain::DiskFiles(), startsWithPicture); });
    return plan;
}

void ChainSource::pointingAtMistakes(const std::function<void()>& action) const {
    try {
        action();
    } catch (const chain::ChainError& error) {
        throw UsageError(place_ + ", " + chain::pointAt(text_, error));
    }
}

}  // namespace pxk::tool
