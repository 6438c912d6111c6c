/// Prints the results as a table, each line as soon as it is available.
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

    /// The measurements that exceed their threshold.
    const std::vector<std::string>& exceeding() const { return exceeding_; }
    /// The measurements that failed, with the reason.
    const std::vector<std::string>& failed() const { return failed_; }

  private:
    std::string description_;
    std::vector<std::string> exceeding_;
    std::vector<std::string> failed_;
};

}  // namespace pxkbench
