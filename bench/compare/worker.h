/// A process of its own with a host and one plugin, which times calls when told to: a process can have one host only.
#pragma once

#include <sys/types.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "bench/rows.h"

namespace pxkbench {

/// A row of the table on one kind of picture.
struct Task {
    const Row* row = nullptr;
    Content content = Content::photo;
    PictureSize size{};

    std::string name() const { return row->name + "/" + contentName(content) + "/" + size.text(); }
};

class Worker {
  public:
    /// Tasks are those of this process, which the worker has a copy of.
    explicit Worker(const std::filesystem::path& plugin);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// The seconds that a task's call takes, less the making of its result picture except on one pixel. Throws
    /// std::runtime_error with the worker's words when the plugin cannot do it.
    double time(const Task& task);

  private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    pid_t process_ = -1;
    File orders_;
    File answers_;
};

}  // namespace pxkbench
