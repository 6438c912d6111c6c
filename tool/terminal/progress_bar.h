/// A progress bar on one line of a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace pxk::tool {

/// Draws on standard error, unless that is not a terminal or `wanted` is false. The destructor removes the bar.
class ProgressBar {
  public:
    ProgressBar(std::size_t total, bool wanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Shows that `done` of all are done and that `name` is being worked on.
    void show(std::size_t done, const std::string& name);
    /// Removes the bar, so that a line can be printed.
    void clear();
    /// Removes the bar that is shown at this moment, if any. Async-signal-safe.
    static void eraseInterrupted();

  private:
    std::size_t total_;
    bool enabled_;
};

/// The bar's text in at most `width` columns: "[####------]  4/10 name".
std::string progressText(std::size_t done, std::size_t total, const std::string& name, std::size_t width);

}  // namespace pxk::tool
