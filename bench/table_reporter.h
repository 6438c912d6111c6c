/// The figures as a table for people, a line as soon as it is known.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>
#include <vector>

namespace pxkbench {

class TableReporter : public benchmark::BenchmarkReporter {
  public:
    /// `description` says what was measured: the plugin's instruction set and the host.
    explicit TableReporter(std::string description) : description_(std::move(description)) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    /// The measurements that missed their bar.
    const std::vector<std::string>& missed() const { return missed_; }
    /// Those that came to no figure, with the reason.
    const std::vector<std::string>& failed() const { return failed_; }

  private:
    std::string description_;
    std::vector<std::string> missed_;
    std::vector<std::string> failed_;
};

}  // namespace pxkbench
