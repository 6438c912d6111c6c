/// The chain that a command line gives.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "chain.h"
#include "error.h"
#include "plan.h"

namespace pxk::tool {

/// Reads -e and -f, and fits what they say to the plugin. A mistake in the chain is thrown as UsageError, which points
/// at its place.
class ChainSource {
  public:
    /// Adds the options to a command; this must outlive it.
    void addOptions(CLI::App& command);

    bool isGiven() const { return !pieces_.empty() || !file_.empty(); }

    /// Reads the chain, if there is one.
    void read();

    /// The plan for the chain that was read; an empty one when there is none.
    Plan planFor(OpenHost& host, bool startsWithPicture) const;

  private:
    [[noreturn]] void fail(const ChainError& error) const;

    std::vector<std::string> pieces_;
    std::string file_;
    std::string text_;
    std::string place_ = "the chain";
    Chain chain_;
};

}  // namespace pxk::tool
