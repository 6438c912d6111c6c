#include "bench/compare/worker.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cinttypes>
#include <map>
#include <stdexcept>

#include "bench/rounds.h"
#include "host/host.h"

namespace pxkbench {
namespace {

// Times tasks in one host. What a task needs is prepared once, as long as the size and content stay the same.
class Timer {
  public:
    explicit Timer(const std::filesystem::path& plugin) : host_(optionsFor(plugin)) {}
    ~Timer() {
        calls_.clear();
        dropWorkspaces();
    }

    double time(const Task& task) {
        if (task.size != size_ || task.content != content_) calls_.clear();
        size_ = task.size;
        content_ = task.content;
        const Workspace& work = workspaceFor(host_, size_, content_);
        auto found = calls_.find(task.row);
        if (found == calls_.end()) {
            found = calls_.emplace(task.row, timed(task.row->prepare(work))).first;
            found->second();  // warms up the memory
        }
        const double call = timeOnce(found->second, task.size);
        if (task.size == onePixel || task.row->makes == Makes::nothing) return call;
        return call - timeOnce([&] { host_.newPicture(task.size.width, task.size.height); }, task.size);
    }

  private:
    static pxkhost::Options optionsFor(const std::filesystem::path& plugin) {
        pxkhost::Options options;
        options.plugin = plugin;
        return options;
    }

    pxkhost::Host host_;
    PictureSize size_{};
    Content content_ = Content::photo;
    std::map<const Row*, std::function<void()>> calls_;
};

// A request is the row's address, which is the same in both processes, and the picture's content and size.
constexpr const char* requestFormat = "%" SCNuPTR " %d %d %d";

void serve(const std::filesystem::path& plugin, std::FILE* requests, std::FILE* replies) {
    try {
        Timer timer(plugin);
        std::uintptr_t row = 0;
        int content = 0;
        PictureSize size;
        while (std::fscanf(requests, requestFormat, &row, &content, &size.width, &size.height) == 4) {
            try {
                const Task task = {reinterpret_cast<const Row*>(row), static_cast<Content>(content), size};
                std::fprintf(replies, "ok %.12g\n", timer.time(task));
            } catch (const std::exception& problem) {
                std::fprintf(replies, "no %s\n", problem.what());
            }
            std::fflush(replies);
        }
    } catch (const std::exception& problem) {
        std::fprintf(replies, "no %s\n", problem.what());
    }
}

}  // namespace

Worker::Worker(const std::filesystem::path& plugin) {
    int requests[2];
    int replies[2];
    if (pipe(requests) != 0 || pipe(replies) != 0) throw std::runtime_error("cannot create a pipe");
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("cannot create a process");
    if (process_ == 0) {
        close(requests[1]);
        close(replies[0]);
        const File from(fdopen(requests[0], "r"));
        const File to(fdopen(replies[1], "w"));
        serve(plugin, from.get(), to.get());
        std::fflush(to.get());
        _exit(0);
    }
    close(requests[0]);
    close(replies[1]);
    requests_.reset(fdopen(requests[1], "w"));
    replies_.reset(fdopen(replies[0], "r"));
}

Worker::~Worker() {
    requests_.reset();  // the worker ends at the end of its requests
    waitpid(process_, nullptr, 0);
}

double Worker::time(const Task& task) {
    std::fprintf(requests_.get(), "%" PRIuPTR " %d %d %d\n", reinterpret_cast<std::uintptr_t>(task.row),
                 static_cast<int>(task.content), task.size.width, task.size.height);
    std::fflush(requests_.get());
    char line[512];
    if (std::fgets(line, sizeof line, replies_.get()) == nullptr)
        throw std::runtime_error("the plugin's process ended");
    double seconds = 0;
    if (std::sscanf(line, "ok %lf", &seconds) == 1) return seconds;
    std::string message = std::string(line).substr(3);
    message.erase(message.find_last_not_of('\n') + 1);
    throw std::runtime_error(message);
}

}  // namespace pxkbench
