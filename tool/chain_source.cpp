#include "chain_source.h"

#include "catalogue.h"
#include "chain_parser.h"
#include "chain_pointer.h"
#include "files.h"

namespace pxk::tool {

void ChainSource::addOptions(CLI::App& command) {
    auto* chain = command
                      .add_option("-e,--chain", pieces_,
                                  "A chain of calls, see pxk help chain; given again, it goes on on a new line")
                      ->allow_extra_args(false)
                      ->type_name("CHAIN");
    command.add_option("-f,--file", file_, "Read the chain from a file; - is standard input")
        ->type_name("FILE")
        ->excludes(chain);
}

void ChainSource::read() {
    if (!isGiven()) return;
    if (!file_.empty()) {
        text_ = readFile(file_, true);
        place_ = file_ == "-" ? "standard input" : file_;
    }
    for (const std::string& each : pieces_) text_ += (text_.empty() ? "" : "\n") + each;
    if (text_.empty()) throw UsageError("the chain is empty; write a call such as InvertPXK");
    try {
        chain_ = parseChain(text_);
    } catch (const ChainError& error) {
        fail(error);
    }
}

Plan ChainSource::planFor(OpenHost& host, bool startsWithPicture) const {
    try {
        return makePlan(chain_, Catalogue(host), host, startsWithPicture);
    } catch (const ChainError& error) {
        fail(error);
    }
}

void ChainSource::fail(const ChainError& error) const { throw UsageError(place_ + ", " + pointAt(text_, error)); }

}  // namespace pxk::tool
