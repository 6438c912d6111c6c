/// How far a run over several pictures has come, on one line of a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace pxk::tool {

/// Draws on standard error; draws nothing when that is no terminal or `wanted` is false. The line is gone at the end.
class ProgressBar {
  public:
    ProgressBar(std::size_t total, bool wanted);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Shows that `done` of all are done and `name` is in work.
    void show(std::size_t done, const std::string& name);
    /// Takes the bar off the terminal, so that a line can be printed.
    void clear();

  private:
    std::size_t total_;
    bool drawn_ = false;
    bool enabled_;
};

/// The bar's text in at most `width` columns: "[####------]  4/10 name".
std::string progressText(std::size_t done, std::size_t total, const std::string& name, std::size_t width);

}  // namespace pxk::tool
