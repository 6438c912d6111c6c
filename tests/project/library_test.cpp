// The built plugin: what it exports, what it needs, and that it comes and goes without a trace.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace pxk::project {

namespace {

const std::string plugin = PXK_PLUGIN;

/// What `command` prints, line by line. A command that fails fails the test.
std::vector<std::string> linesFrom(const std::string& command) {
    std::vector<std::string> lines(1);
    FILE* pipe = popen(("LC_ALL=C " + command).c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run " << command;
        return {};
    }
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe)) {
        if (c == '\n') {
            lines.emplace_back();
        } else {
            lines.back() += static_cast<char>(c);
        }
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    lines.pop_back();
    return lines;
}

/// The plugin's object files whose names end in `ending`.
std::vector<std::string> objectFiles(const std::string& ending) {
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(PXK_PLUGIN_OBJECTS)) {
        if (entry.path().string().ends_with(ending)) files.push_back(entry.path().string());
    }
    return files;
}

}  // namespace

TEST(Library, ExportsItsEntryPointAlone) {
    std::set<std::string> names;
    for (const std::string& line : linesFrom("nm -D --defined-only '" + plugin + "'")) {
        names.insert(line.substr(line.rfind(' ') + 1));
    }
    EXPECT_EQ(names, std::set<std::string>{"REALPluginMain"});
}

TEST(Library, NeedsTheRuntimesOnly) {
    const std::regex needed(".*\\(NEEDED\\).*\\[(.*)\\]");
    const std::regex runtime("(libstdc\\+\\+|libm|libgcc_s|libc|ld-linux[-a-z0-9_]*)\\.so\\.[0-9]+");
    bool foundOne = false;
    for (const std::string& line : linesFrom("readelf -d '" + plugin + "'")) {
        std::smatch match;
        if (!std::regex_match(line, match, needed)) continue;
        foundOne = true;
        EXPECT_TRUE(std::regex_match(match[1].str(), runtime)) << "needs " << match[1];
    }
    EXPECT_TRUE(foundOne);
}

// A weak or unique function in a kernel file may be the copy that the whole library uses, compiled for a processor
// that need not be the one it runs on.
TEST(Library, HasNoSharedFunctionsInItsKernels) {
    const std::vector<std::string> kernels = objectFiles("_kernels.cpp.o");
    EXPECT_FALSE(kernels.empty());
    const std::regex shared("[0-9a-f]* *[wWvVu] .*");
    for (const std::string& file : kernels) {
        for (const std::string& line : linesFrom("nm -C --defined-only '" + file + "'")) {
            EXPECT_FALSE(std::regex_match(line, shared)) << file << ": " << line;
        }
    }
}

TEST(Library, RunsNoCodeOfItsOwnAtLoad) {
    const std::vector<std::string> objects = objectFiles(".cpp.o");
    EXPECT_FALSE(objects.empty());
    for (const std::string& file : objects) {
        for (const std::string& line : linesFrom("readelf -SW '" + file + "'")) {
            EXPECT_EQ(line.find(".init_array"), std::string::npos) << file;
            EXPECT_EQ(line.find(".ctors"), std::string::npos) << file;
        }
    }
}

TEST(Library, UnloadsWhenClosed) {
    void* library = dlopen(plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_NE(dlsym(library, "REALPluginMain"), nullptr);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(plugin.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

}  // namespace pxk::project
