#include "fuzz/fuzz_host.h"

#include <sanitizer/lsan_interface.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "frame/plugin_main.h"

namespace pxk::fuzz {

namespace {

std::unique_ptr<pxkhost::Host> openHost;

void open(pxkhost::ApplicationKind application) {
    // What the plugin registers stays for the life of the process.
    const __lsan::ScopedDisabler registered;
    openHost = std::make_unique<pxkhost::Host>(
        pxkhost::Options{.entry = REALPluginMain, .version = 2019.03, .application = application});
}

void writeSeeds(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder);
    int number = 0;
    for (const Bytes& seed : seeds()) {
        std::ofstream file(folder / ("seed" + std::to_string(++number)), std::ios::binary);
        file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!file) {
            std::fprintf(stderr, "cannot write a seed into %s\n", folder.c_str());
            std::exit(EXIT_FAILURE);
        }
    }
}

}  // namespace

pxkhost::Host& host() { return *openHost; }

int choosePictures(std::uint8_t choice) {
    if (host().application() == pxkhost::ApplicationKind::console) return 8;
    const int format = 1 + choice % 6;
    host().setNewPictures({.layout = static_cast<pxkhost::PixelLayout>(format), .rowPadding = choice / 6U % 4 * 4});
    return format;
}

void require(bool condition, const char* what) {
    if (condition) return;
    std::fprintf(stderr, "finding: %s\n", what);
    std::abort();
}

void requireBalancedBooks() {
    require(host().accounting().problems().empty(), "a reference or lock was not balanced");
    require(host().accounting().livingCount() == 0, "an object was not given back");
}

// libFuzzer leaves arguments that start with two dashes to us.
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments);
extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    constexpr std::string_view seedsFlag = "--seeds=";
    pxkhost::ApplicationKind application = pxkhost::ApplicationKind::desktop;
    for (int i = 1; i < *count; ++i) {
        const std::string_view argument = (*arguments)[i];
        if (argument == "--console") application = pxkhost::ApplicationKind::console;
        if (argument.starts_with(seedsFlag)) {
            writeSeeds(argument.substr(seedsFlag.size()));
            std::exit(EXIT_SUCCESS);
        }
    }
    open(application);
    return 0;
}

}  // namespace pxk::fuzz
