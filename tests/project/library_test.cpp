// The built plugin: what it exports, what it needs, and that it comes and goes without a trace.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <algorithm>
#include <filesystem>
#include <memory>
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

/// Whether a library is a runtime of C or C++, as "libm.so.6" is.
bool isRuntime(const std::string& library) {
    const std::size_t suffix = library.find(".so.");
    const bool numbered = suffix != std::string::npos && suffix + 4 < library.size() &&
                          library.find_first_not_of("0123456789", suffix + 4) == std::string::npos;
    const std::string name = library.substr(0, suffix);
    const std::set<std::string> runtimes = {"libstdc++", "libm", "libgcc_s", "libc"};
    return numbered && (runtimes.contains(name) || name.starts_with("ld-linux"));
}

/// What nm calls the kind of a symbol: the letter behind its address.
char kindOfSymbol(const std::string& line) {
    const std::size_t behindAddress = std::min(line.find(' '), line.size());
    const std::size_t kind = line.find_first_not_of(' ', behindAddress);
    return kind == std::string::npos ? ' ' : line[kind];
}

// Weak, and unique in the whole process.
const std::string sharedKinds = "wWvVu";

}  // namespace

TEST(Library, ExportsItsEntryPointAlone) {
    std::set<std::string> names;
    for (const std::string& line : linesFrom("nm -D --defined-only '" + plugin + "'")) {
        names.insert(line.substr(line.rfind(' ') + 1));
    }
    EXPECT_EQ(names, std::set<std::string>{"REALPluginMain"});
}

TEST(Library, NeedsTheRuntimesOnly) {
    bool foundOne = false;
    for (const std::string& line : linesFrom("readelf -d '" + plugin + "'")) {
        if (line.find("(NEEDED)") == std::string::npos) continue;
        foundOne = true;
        const std::size_t start = line.find('[') + 1;
        const std::string library = line.substr(start, line.find(']', start) - start);
        EXPECT_TRUE(isRuntime(library)) << "needs " << library;
    }
    EXPECT_TRUE(foundOne);
}

// A weak or unique function in a kernel file may be the copy that the whole library uses, compiled for a processor
// that need not be the one it runs on.
TEST(Library, HasNoSharedFunctionsInItsKernels) {
    const std::vector<std::string> kernels = objectFiles("_kernels.cpp.o");
    EXPECT_FALSE(kernels.empty());
    for (const std::string& file : kernels) {
        for (const std::string& line : linesFrom("nm -C --defined-only '" + file + "'")) {
            EXPECT_EQ(sharedKinds.find(kindOfSymbol(line)), std::string::npos) << file << ": " << line;
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
