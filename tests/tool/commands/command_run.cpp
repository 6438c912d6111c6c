#include "tool/commands/command_run.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace pxk::tool {
namespace {

constexpr unsigned secondsToLive = 120;

struct Pipe {
    int reading = -1;
    int writing = -1;
};

Pipe newPipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
    return {ends[0], ends[1]};
}

Pipe newTerminal() {
    Pipe terminal;
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 60;
    if (::openpty(&terminal.reading, &terminal.writing, nullptr, nullptr, &size) != 0)
        throw std::runtime_error("no pty");
    return terminal;
}

[[noreturn]] void becomeTool(std::string program, const std::string& directory,
                             const std::vector<std::string>& arguments, int in, int out, int error) {
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(error, STDERR_FILENO);
    for (int other = STDERR_FILENO + 1; other < 100; ++other) ::close(other);
    std::vector<char*> argv;
    argv.push_back(program.data());
    std::vector<std::string> copies = arguments;
    for (std::string& each : copies) argv.push_back(each.data());
    argv.push_back(nullptr);
    ::alarm(secondsToLive);
    if (::chdir(directory.c_str()) == 0) ::execv(argv[0], argv.data());
    ::_exit(127);
}

/// Reads both until both are at their end.
void readAll(int out, std::string& outText, int error, std::string& errorText) {
    std::array<pollfd, 2> open{{{out, POLLIN, 0}, {error, POLLIN, 0}}};
    const std::array<std::string*, 2> texts{&outText, &errorText};
    std::array<char, 4096> piece{};
    while (open[0].fd >= 0 || open[1].fd >= 0) {
        if (::poll(open.data(), open.size(), -1) < 0) break;
        for (std::size_t i = 0; i < open.size(); ++i) {
            if (open[i].fd < 0 || open[i].revents == 0) continue;
            // A terminal whose other side is gone reads as an error.
            const auto count = ::read(open[i].fd, piece.data(), piece.size());
            if (count > 0) {
                texts[i]->append(piece.data(), static_cast<std::size_t>(count));
            } else {
                ::close(open[i].fd);
                open[i].fd = -1;
            }
        }
    }
}

CommandResult run(const std::string& program, const std::string& directory, const std::vector<std::string>& arguments,
                  const std::string& input, Pipe out, Pipe error) {
    const Pipe in = newPipe();
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) becomeTool(program, directory, arguments, in.reading, out.writing, error.writing);
    // Small enough for the pipe to hold; its other end is still open here, so that nothing can break it.
    if (!input.empty() && ::write(in.writing, input.data(), input.size()) < 0) throw std::runtime_error("no input");
    for (const int end : {in.reading, in.writing, out.writing, error.writing}) ::close(end);
    CommandResult result;
    readAll(out.reading, result.out, error.reading, result.error);
    int status = 0;
    ::waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

}  // namespace

CommandResult runTool(const std::string& directory, const std::vector<std::string>& arguments,
                      const std::string& input) {
    return run(PXK_TOOL_PATH, directory, arguments, input, newPipe(), newPipe());
}

CommandResult runProgram(const std::string& program, const std::string& directory,
                         const std::vector<std::string>& arguments) {
    return run(program, directory, arguments, "", newPipe(), newPipe());
}

CommandResult runToolOnTerminal(const std::string& directory, const std::vector<std::string>& arguments,
                                Terminal terminal) {
    const bool onOutput = terminal == Terminal::output;
    return run(PXK_TOOL_PATH, directory, arguments, "", onOutput ? newTerminal() : newPipe(),
               onOutput ? newPipe() : newTerminal());
}

}  // namespace pxk::tool
