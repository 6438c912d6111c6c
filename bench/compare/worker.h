/// A child process with a host and one plugin, which times calls on request: a process can have only one host.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/rows.h"

namespace pxkbench {

/// A row of the table, on pictures of one content and size.
struct Task {
    const Row* row = nullptr;
    Content content = Content::photo;
    PictureSize size{};

    std::string name() const { return row->name + "/" + contentName(content) + "/" + size.text(); }
};

class Worker {
  public:
    /// Forks the process. It can time any task of the rows that exist by now, which it has a copy of.
    explicit Worker(const std::filesystem::path& plugin);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// The seconds that a task's call takes, less the creation of its result picture except on one pixel. Throws
    /// std::runtime_error with the worker's message when the call fails.
    double time(const Task& task);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    pid_t process_ = -1;
    File requests_;
    File replies_;
};

}  // namespace pxkbench
