// The script ./dev when something fails: it names the command, its output and what to do, and is never silent.
//
// Each test runs a copy of the script in a folder of its own, where programs that do as the test says stand in for
// those that it calls.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace pxk::project {

namespace {

namespace fs = std::filesystem;

struct Ending {
    int exitCode;
    std::string output;
};

std::string contentOf(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

class Dev : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "pxk_dev_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
        fs::create_directory(folder_ / "bin");
        fs::copy_file(fs::path(PXK_SOURCE_DIR) / "dev", folder_ / "dev");
        standIn("apt-get", "echo apt-get \"$@\" >>calls");
        standIn("dpkg-query", "shift 3; for name; do echo \"installed $name\"; done");
        standIn("sudo", "exec \"$@\"");
        standIn("sleep", "");
        standIn("cmake", "echo cmake \"$@\" >>calls");
    }

    void TearDown() override { fs::remove_all(folder_); }

    /// Puts a program of this name in front of the real one.
    void standIn(const std::string& name, const std::string& body) const {
        const fs::path path = folder_ / "bin" / name;
        std::ofstream(path) << "#!/bin/bash\n" << body << '\n';
        fs::permissions(path, fs::perms::owner_all);
    }

    Ending run(const std::string& arguments) const {
        const std::string command =
            "cd '" + folder_.string() + "' && PATH=\"$PWD/bin:$PATH\" ./dev " + arguments + " 2>&1 </dev/null";
        Ending result{-1, ""};
        FILE* const pipe = popen(command.c_str(), "r");
        if (pipe == nullptr) return result;
        for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) result.output += static_cast<char>(c);
        const int status = pclose(pipe);
        result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return result;
    }

    /// What the stand-ins wrote down.
    std::string calls() const { return contentOf(folder_ / "calls"); }
    fs::path folder() const { return folder_; }

  private:
    fs::path folder_;
};

#define EXPECT_SAYS(result, words) \
    EXPECT_NE((result).output.find(words), std::string::npos) << "expected: " << (words) << "\nin: " << (result).output

TEST_F(Dev, InstallsPackagesThatDpkgHasNeverHeardOf) {
    standIn("dpkg-query", "exit 1");
    const Ending result = run("build");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(calls().find("install -y --no-install-recommends"), std::string::npos) << calls();
    EXPECT_NE(calls().find(" ninja-build"), std::string::npos) << calls();
    EXPECT_SAYS(result, "installing");
}

TEST_F(Dev, InstallsOnlyWhatIsMissing) {
    standIn("dpkg-query", "shift 3; for name; do [[ $name == g++ ]] || echo \"installed $name\"; done");
    EXPECT_EQ(run("build").exitCode, 0);
    EXPECT_NE(calls().find("--no-install-recommends g++\n"), std::string::npos) << calls();
}

TEST_F(Dev, InstallsNothingWhenNothingIsMissing) {
    EXPECT_EQ(run("build").exitCode, 0);
    EXPECT_EQ(calls().find("apt-get"), std::string::npos) << calls();
}

TEST_F(Dev, RetriesAnInstallationAndThenSaysWhatFailed) {
    standIn("dpkg-query", "exit 1");
    standIn("apt-get", "echo attempt >>calls; echo no network here; exit 100");
    const Ending result = run("build");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(calls(), "attempt\nattempt\nattempt\n");
    EXPECT_SAYS(result, "no network here");
    EXPECT_SAYS(result, "the whole output is in build/log/packages.log");
    EXPECT_SAYS(result, "check the network");
    EXPECT_NE(contentOf(folder() / "build/log/packages.log").find("no network here"), std::string::npos);
}

TEST_F(Dev, RecoversWhenASecondInstallationSucceeds) {
    standIn("dpkg-query", "exit 1");
    standIn("apt-get", "echo attempt >>calls; [[ $(wc -l <calls) -gt 1 ]]");
    EXPECT_EQ(run("build").exitCode, 0);
}

TEST_F(Dev, SaysWhichBuildStepFailed) {
    standIn("cmake", "[[ $1 == --build ]] || exit 0; echo the compiler is unhappy; exit 3");
    const Ending result = run("build");
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_SAYS(result, "failed with exit code 3: cmake --build --preset release");
    EXPECT_SAYS(result, "    the compiler is unhappy");
    EXPECT_SAYS(result, "the whole output is in build/log/build-release.log");
    EXPECT_SAYS(result, "rm -r build/release");
}

TEST_F(Dev, SaysWhichCommandOfTheDemoFailed) {
    fs::create_directories(folder() / "build/release");
    std::ofstream(folder() / "build/release/pxk") << "#!/bin/bash\nexit 7\n";
    fs::permissions(folder() / "build/release/pxk", fs::perms::owner_all);
    const Ending result = run("demo");
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_SAYS(result, "failed with exit code 7");
    EXPECT_SAYS(result, "InvertPXK");
}

// A program that is missing ends a script in another way than one that fails.
TEST_F(Dev, SaysSoWhenAProgramIsMissing) {
    const Ending result = run("demo");
    EXPECT_EQ(result.exitCode, 127);
    EXPECT_SAYS(result, "dev: failed with exit code 127");
}

TEST_F(Dev, ReportsAFailureOnce) {
    standIn("cmake", "exit 3");
    const std::string output = run("build").output;
    const std::size_t first = output.find("dev: failed");
    ASSERT_NE(first, std::string::npos) << output;
    EXPECT_EQ(output.find("dev: failed", first + 1), std::string::npos) << output;
}

TEST_F(Dev, BuildsWhatTheDemoRunsAndNoTests) {
    run("demo");
    EXPECT_NE(calls().find("--preset release -DPXK_WITH_TESTS=OFF"), std::string::npos) << calls();
    EXPECT_NE(calls().find("--target PicturePXK pxkfiles pxk demo_check"), std::string::npos) << calls();
}

TEST_F(Dev, CountsASuiteThatFailsAndGoesOn) {
    standIn("cmake", "echo the compiler is unhappy; exit 3");
    const Ending result = run("test clang fuzz");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_SAYS(result, "clang: 0 passed, 1 failed");
    EXPECT_SAYS(result, "fuzz: 0 passed, 1 failed");
    EXPECT_SAYS(result, "    the compiler is unhappy");
    EXPECT_SAYS(result, "build/log/configure-clang.log");
    EXPECT_TRUE(result.output.ends_with("\n0 passed, 2 failed\n")) << result.output;
}

TEST_F(Dev, PassesWhenEverySuitePasses) {
    const Ending result = run("test clang");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_TRUE(result.output.ends_with("\n1 passed, 0 failed\n")) << result.output;
}

TEST_F(Dev, NamesTheSuitesWhenOneIsUnknown) {
    const Ending result = run("test releese");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_SAYS(result, "no suite is called 'releese'; there are: quick format release");
}

TEST_F(Dev, NamesItsCommandsWhenOneIsUnknown) {
    const Ending result = run("dmeo");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_SAYS(result, "./dev demo");
    EXPECT_SAYS(result, "there is no command 'dmeo'");
}

}  // namespace pxk::project
