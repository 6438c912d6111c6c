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

// Times tasks of one host. What a task needs is made once, as long as the pictures stay the same.
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
            found->second();  // warms the memory
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

// An order is where the row is in memory, which is the same place in both processes, and the picture.
constexpr const char* orderFormat = "%" SCNuPTR " %d %d %d";

void serve(const std::filesystem::path& plugin, std::FILE* orders, std::FILE* answers) {
    try {
        Timer timer(plugin);
        std::uintptr_t row = 0;
        int content = 0;
        PictureSize size;
        while (std::fscanf(orders, orderFormat, &row, &content, &size.width, &size.height) == 4) {
            try {
                const Task task = {reinterpret_cast<const Row*>(row), static_cast<Content>(content), size};
                std::fprintf(answers, "ok %.12g\n", timer.time(task));
            } catch (const std::exception& problem) {
                std::fprintf(answers, "no %s\n", problem.what());
            }
            std::fflush(answers);
        }
    } catch (const std::exception& problem) {
        std::fprintf(answers, "no %s\n", problem.what());
    }
}

}  // namespace

Worker::Worker(const std::filesystem::path& plugin) {
    int orders[2];
    int answers[2];
    if (pipe(orders) != 0 || pipe(answers) != 0) throw std::runtime_error("there are no more pipes");
    process_ = fork();
    if (process_ < 0) throw std::runtime_error("there are no more processes");
    if (process_ == 0) {
        close(orders[1]);
        close(answers[0]);
        const File from(fdopen(orders[0], "r"));
        const File to(fdopen(answers[1], "w"));
        serve(plugin, from.get(), to.get());
        std::fflush(to.get());
        _exit(0);
    }
    close(orders[0]);
    close(answers[1]);
    orders_.reset(fdopen(orders[1], "w"));
    answers_.reset(fdopen(answers[0], "r"));
}

Worker::~Worker() {
    orders_.reset();  // the end of its orders ends the worker
    waitpid(process_, nullptr, 0);
}

double Worker::time(const Task& task) {
    std::fprintf(orders_.get(), "%" PRIuPTR " %d %d %d\n", reinterpret_cast<std::uintptr_t>(task.row),
                 static_cast<int>(task.content), task.size.width, task.size.height);
    std::fflush(orders_.get());
    char line[512];
    if (std::fgets(line, sizeof line, answers_.get()) == nullptr)
        throw std::runtime_error("the plugin's process ended");
    double seconds = 0;
    if (std::sscanf(line, "ok %lf", &seconds) == 1) return seconds;
    std::string words = std::string(line).substr(3);
    words.erase(words.find_last_not_of('\n') + 1);
    throw std::runtime_error(words);
}

}  // namespace pxkbench
