/// Signals in the middle of the work: nothing unfinished stays behind, and the tool ends by the signal.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <thread>
#include <utility>

#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using Clock = std::chrono::steady_clock;
using testing::IsSubsetOf;

constexpr unsigned secondsToLive = 120;

/// The tool at work in a folder, its output discarded unless it is on a terminal.
class RunningTool {
  public:
    enum class Output { discarded, terminal };

    RunningTool(const std::string& folder, std::vector<std::string> arguments, rlim_t largestFile = RLIM_INFINITY,
                Output output = Output::discarded) {
        child_ = output == Output::terminal ? ::forkpty(&terminal_, nullptr, nullptr, nullptr) : ::fork();
        if (child_ != 0) return;
        const rlimit noCore{0, 0};
        const rlimit fileSize{largestFile, RLIM_INFINITY};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::setrlimit(RLIMIT_FSIZE, &fileSize);
        if (output == Output::discarded && ::freopen("/dev/null", "w", stderr) == nullptr) ::_exit(127);
        ::alarm(secondsToLive);
        arguments.insert(arguments.begin(), PXK_TOOL_PATH);
        std::vector<char*> argv;
        for (std::string& each : arguments) argv.push_back(each.data());
        argv.push_back(nullptr);
        if (::chdir(folder.c_str()) == 0) ::execv(argv[0], argv.data());
        ::_exit(127);
    }

    ~RunningTool() {
        if (child_ > 0) wait();
        if (terminal_ >= 0) ::close(terminal_);
    }
    RunningTool(const RunningTool&) = delete;
    RunningTool& operator=(const RunningTool&) = delete;

    void signal(int number) const { ::kill(child_, number); }

    /// The exit code, or the negative number of the signal that ended it.
    int wait() {
        int status = 0;
        ::waitpid(std::exchange(child_, 0), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    /// What it writes to its terminal, until `text` is part of it or the tool is at its end.
    std::string readUntil(const std::string& text) const {
        std::string seen;
        char byte = 0;
        while (seen.find(text) == std::string::npos && ::read(terminal_, &byte, 1) == 1) seen += byte;
        return seen;
    }

  private:
    pid_t child_ = 0;
    int terminal_ = -1;
};

class Interruption : public testing::Test {
  protected:
    Interruption() {
        std::filesystem::create_directory(folder.path("out"));
        for (const char* name : {"a.png", "b.png", "c.png"}) folder.writePicture(name, colourful(900, 700));
    }

    std::vector<std::string> results() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path("out")))
            names.push_back(entry.path().filename().string());
        return names;
    }

    static std::vector<std::string> batch(const char* format) {
        return {"a.png", "b.png", "c.png", "-e", "Invert", "-o", "out/", "--format", format};
    }

    PictureFolder folder;
};

TEST_F(Interruption, LeavesNothingUnfinishedAtAnyMoment) {
    constexpr int moments = 200;
    constexpr std::array<int, 3> signals = {SIGINT, SIGTERM, SIGHUP};
    std::mt19937 random(20);
    int ended = 0;
    for (const char* format : {"bmp", "ppic"}) {
        const Clock::time_point start = Clock::now();
        ASSERT_EQ(RunningTool(folder.path(), batch(format)).wait(), 0);
        const auto whole = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
        std::uniform_int_distribution<std::int64_t> moment(0, whole.count());
        for (int i = 0; i < moments / 2; ++i) {
            const int signal = signals[static_cast<std::size_t>(i) % signals.size()];
            RunningTool tool(folder.path(), batch(format));
            std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
            tool.signal(signal);
            const int status = tool.wait();
            EXPECT_THAT(status, testing::AnyOf(0, -signal));
            if (status != 0) ++ended;
            const std::string extension = std::string(".") + format;
            EXPECT_THAT(results(), IsSubsetOf({"a" + extension, "b" + extension, "c" + extension}));
        }
        for (const std::string& name : results()) {
            EXPECT_GT(folder.readText("out/" + name).size(), 900U * 700U * 3U) << name;
            std::filesystem::remove(folder.path("out/" + name));
        }
    }
    EXPECT_GT(ended, moments / 4);
}

TEST_F(Interruption, LeavesNothingWhenAFileGrowsTooLarge) {
    for (const char* format : {"bmp", "ppic"}) {
        EXPECT_EQ(RunningTool(folder.path(), batch(format), 100000).wait(), -SIGXFSZ) << format;
        EXPECT_THAT(results(), testing::IsEmpty()) << format;
    }
}

TEST_F(Interruption, TakesTheProgressBarAway) {
    RunningTool tool(folder.path(), batch("avif"), RLIM_INFINITY, RunningTool::Output::terminal);
    tool.readUntil("b.png\x1b[K");
    tool.signal(SIGINT);
    EXPECT_EQ(tool.readUntil("\r\x1b[K"), "\r\x1b[K");
    EXPECT_EQ(tool.readUntil("more"), "");
    EXPECT_EQ(tool.wait(), -SIGINT);
}

TEST_F(Interruption, DoesNotStopWhatIgnoresTheSignal) {
    ::signal(SIGHUP, SIG_IGN);
    RunningTool tool(folder.path(), batch("png"));
    ::signal(SIGHUP, SIG_DFL);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    tool.signal(SIGHUP);
    EXPECT_EQ(tool.wait(), 0);
}

}  // namespace
}  // namespace pxk::tool
