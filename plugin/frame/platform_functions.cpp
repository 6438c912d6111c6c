#include "frame/platform_functions.h"

#ifdef _WIN32
// Declared here rather than taken from the platform's header, which the build does not need.
extern "C" __declspec(dllimport) void* __stdcall GetModuleHandleA(const char*);
extern "C" __declspec(dllimport) void* __stdcall GetProcAddress(void*, const char*);
#else
#include <dlfcn.h>
#endif

namespace pxk {

void* findPlatformFunction(const char* name) {
#ifdef _WIN32
    return GetProcAddress(GetModuleHandleA(nullptr), name);
#else
    return dlsym(RTLD_DEFAULT, name);
#endif
}

}  // namespace pxk
