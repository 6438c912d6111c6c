#include "bench/files/programs.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <regex>
#include <stdexcept>

namespace pxkbench {
namespace {

constexpr const char* quality = "90";

bool isJpeg(const std::string& file) { return file.ends_with(".jpg"); }

// `command`, continued with the arguments for JPEG files if `to` is one, and then with `rest`.
Command withQuality(Command command, const std::string& to, const Command& options, const Command& rest) {
    if (isJpeg(to)) command.insert(command.end(), options.begin(), options.end());
    command.insert(command.end(), rest.begin(), rest.end());
    return command;
}

Command pxkCommand(const std::string& path, const std::string& from, const std::string& to) {
    return withQuality({path, from, "-e", "InvertPXK"}, to, {"--quality", quality}, {"-o", to});
}

Command vipsCommand(const std::string& path, const std::string& from, const std::string& to) {
    return {path, "invert", from, isJpeg(to) ? to + "[Q=" + quality + "]" : to};
}

Command gmCommand(const std::string& path, const std::string& from, const std::string& to) {
    return withQuality({path, "convert", from, "-negate"}, to, {"-quality", quality}, {to});
}

Command magickCommand(const std::string& path, const std::string& from, const std::string& to) {
    return withQuality({path, from, "-negate"}, to, {"-quality", quality}, {to});
}

// ffmpeg has a scale of its own, where 3 selects quantisation as coarse as that of quality 90.
Command ffmpegCommand(const std::string& path, const std::string& from, const std::string& to) {
    return withQuality({path, "-nostdin", "-v", "error", "-y", "-filter_threads", "1", "-threads", "1", "-i", from,
                        "-vf", "negate", "-threads", "1"},
                       to, {"-q:v", "3"}, {to});
}

struct KnownProgram {
    std::string name;
    std::vector<std::string> paths;  ///< the first that exists is used
    std::string versionArgument;
    Command (*invert)(const std::string& path, const std::string& from, const std::string& to);
};

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string versionOf(const Command& command, const std::filesystem::path& log) {
    run(command, log);
    const std::string text = textOf(log);
    std::smatch version;
    return std::regex_search(text, version, std::regex("[0-9]+([.][0-9]+)+")) ? version.str() : "of unknown version";
}

// Where a child's output goes.
class OutputTo {
  public:
    explicit OutputTo(const std::filesystem::path& log) {
        posix_spawn_file_actions_init(&actions_);
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
    }
    OutputTo(const OutputTo&) = delete;
    OutputTo& operator=(const OutputTo&) = delete;
    ~OutputTo() { posix_spawn_file_actions_destroy(&actions_); }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

double secondsIn(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

}  // namespace

Programs findPrograms(const std::filesystem::path& log) {
    const std::vector<KnownProgram> known = {
        {"pxk", {PXK_TOOL}, "--version", pxkCommand},
        {"libvips", {"/usr/bin/vips"}, "--version", vipsCommand},
        {"GraphicsMagick", {"/usr/bin/gm"}, "version", gmCommand},
        {"ImageMagick", {"/usr/bin/magick", "/usr/bin/convert"}, "-version", magickCommand},
        {"ffmpeg", {"/usr/bin/ffmpeg"}, "-version", ffmpegCommand},
    };
    Programs programs;
    for (const KnownProgram& program : known) {
        std::string found;
        for (const std::string& path : program.paths)
            if (found.empty() && std::filesystem::exists(path)) found = path;
        if (found.empty()) {
            programs.absent.push_back(program.name);
            continue;
        }
        programs.present.push_back({program.name, versionOf({found, program.versionArgument}, log),
                                    [found, invert = program.invert](const std::string& from, const std::string& to) {
                                        return invert(found, from, to);
                                    }});
    }
    return programs;
}

void limitToOneThread() {
    for (const char* name : {"VIPS_CONCURRENCY", "MAGICK_THREAD_LIMIT", "OMP_NUM_THREADS"}) setenv(name, "1", 1);
}

double run(const Command& command, const std::filesystem::path& log) {
    std::vector<char*> arguments;
    Command copy = command;
    for (std::string& argument : copy) arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    const OutputTo output(log);
    pid_t child = 0;
    if (posix_spawn(&child, arguments[0], output.actions(), nullptr, arguments.data(), environ) != 0)
        throw std::runtime_error("cannot start " + command[0]);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child) throw std::runtime_error("cannot wait for " + command[0]);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error(command[0] + " failed: " + textOf(log));
    return secondsIn(usage.ru_utime) + secondsIn(usage.ru_stime);
}

}  // namespace pxkbench
