/// The options -e and -f, which give a chain.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "chain/chain.h"
#include "chain/error.h"
#include "chain/plan.h"

namespace pxk::tool {

/// Reads the chain and makes its plan. A mistake in the chain is thrown as UsageError, which points at it.
class ChainSource {
  public:
    /// Adds the options to a command; this must outlive it.
    void addOptions(CLI::App& command);

    bool isGiven() const { return !pieces_.empty() || !file_.empty(); }

    /// Whether the chain comes from standard input.
    bool isStandardInput() const { return file_ == "-"; }

    /// Reads the chain, if there is one.
    void read();

    /// The plan for the chain that was read; an empty one when there is none.
    chain::Plan planFor(chain::OpenHost& host, bool startsWithPicture) const;

    /// Calls `action`; a ChainError that it throws becomes a UsageError that points at the mistake.
    void pointingAtMistakes(const std::function<void()>& action) const;

  private:
    std::vector<std::string> pieces_;
    std::string file_;
    std::string text_;
    std::string place_ = "the chain";
    chain::Chain chain_;
};

}  // namespace pxk::tool
