#include "host/files_module.h"

#include <dlfcn.h>

#include <atomic>
#include <filesystem>
#include <string>

#include "host/objects/errors.h"

namespace pxkhost {

namespace {

std::atomic<const pxkfiles::Functions*> loadedFunctions = nullptr;
static_assert(std::atomic<const pxkfiles::Functions*>::is_always_lock_free);

const pxkfiles::Functions* loadFunctions() {
    Dl_info self{};
    if (dladdr(reinterpret_cast<const void*>(&filesModule), &self) == 0) self.dli_fname = "";
    const std::filesystem::path path =
        std::filesystem::path(self.dli_fname).replace_filename("pxkfiles" PXK_MODULE_SUFFIX);
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        throw HostError("picture files need the module \"" + path.string() +
                        "\", which is missing; build the target pxkfiles");
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        throw HostError(std::string("picture files need libvips: apt install libvips42 libavif15 libcgif0 (") +
                        dlerror() + ")");
    const auto functions = reinterpret_cast<decltype(&pxk_files)>(dlsym(library, "pxk_files"));
    if (functions == nullptr) throw HostError("\"" + path.string() + "\" is not the module of picture files");
    return functions();
}

}  // namespace

const pxkfiles::Functions& filesModule() {
    if (loadedFunctions == nullptr) loadedFunctions = loadFunctions();
    return *loadedFunctions;
}

const pxkfiles::Functions* loadedFilesModule() noexcept { return loadedFunctions; }

}  // namespace pxkhost
