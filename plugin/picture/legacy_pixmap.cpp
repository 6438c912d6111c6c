#include "picture/legacy_pixmap.h"

#include <cstdint>

#include "frame/platform_functions.h"

namespace pxk {

namespace {

using CFTypeRef = const void*;

// The system's record of a file's location; only its size matters here.
struct FSRef {
    unsigned char hidden[80];
};

constexpr std::int16_t kOnAppropriateDisk = -32767;
constexpr std::uint32_t frameworksFolder = 0x6672616D;  // 'fram'

using UnlockPixelsFunction = void (*)(PixMap**);

CFTypeRef applicationServices = nullptr;
UnlockPixelsFunction unlockPixels = nullptr;

// A reference to an object of the system, released when it goes out of scope.
class SystemReference {
  public:
    explicit SystemReference(CFTypeRef object) : object_(object) {}
    SystemReference(const SystemReference&) = delete;
    SystemReference& operator=(const SystemReference&) = delete;
    ~SystemReference() {
        static constinit PlatformFunction<void(CFTypeRef)> CFRelease("CFRelease");
        if (object_ != nullptr) CFRelease(object_);
    }
    CFTypeRef get() const { return object_; }
    CFTypeRef release() {
        CFTypeRef object = object_;
        object_ = nullptr;
        return object;
    }

  private:
    CFTypeRef object_;
};

// What the compiler's own constant strings are made with: the string is the system's and is never released.
CFTypeRef constantString(const char* text) {
    static constinit PlatformFunction<CFTypeRef(const char*)> makeConstantString("__CFStringMakeConstantString");
    return makeConstantString(text);
}

CFTypeRef loadApplicationServices() {
    static constinit PlatformFunction<std::int16_t(std::int16_t, std::uint32_t, unsigned char, FSRef*)> FSFindFolder(
        "FSFindFolder");
    static constinit PlatformFunction<CFTypeRef(CFTypeRef, const FSRef*)> CFURLCreateFromFSRef("CFURLCreateFromFSRef");
    static constinit PlatformFunction<CFTypeRef(CFTypeRef, CFTypeRef, CFTypeRef, unsigned char)>
        CFURLCreateCopyAppendingPathComponent("CFURLCreateCopyAppendingPathComponent");
    static constinit PlatformFunction<CFTypeRef(CFTypeRef, CFTypeRef)> CFBundleCreate("CFBundleCreate");
    static constinit PlatformFunction<unsigned char(CFTypeRef)> CFBundleLoadExecutable("CFBundleLoadExecutable");

    FSRef folder{};
    if (FSFindFolder.find() == nullptr || FSFindFolder(kOnAppropriateDisk, frameworksFolder, 1, &folder) != 0) {
        return nullptr;
    }
    const SystemReference folderPlace(CFURLCreateFromFSRef(nullptr, &folder));
    if (folderPlace.get() == nullptr) return nullptr;
    const SystemReference place(CFURLCreateCopyAppendingPathComponent(
        nullptr, folderPlace.get(), constantString("ApplicationServices.framework"), 0));
    if (place.get() == nullptr) return nullptr;
    SystemReference bundle(CFBundleCreate(nullptr, place.get()));
    if (bundle.get() == nullptr || CFBundleLoadExecutable(bundle.get()) == 0) return nullptr;
    return bundle.release();
}

UnlockPixelsFunction functionOf(CFTypeRef bundle) {
    static constinit PlatformFunction<void*(CFTypeRef, CFTypeRef)> CFBundleGetFunctionPointerForName(
        "CFBundleGetFunctionPointerForName");
    return reinterpret_cast<UnlockPixelsFunction>(
        CFBundleGetFunctionPointerForName(bundle, constantString("UnlockPixels")));
}

}  // namespace

void UnlockPixels(PixMap** pixMap) {
    if (applicationServices == nullptr) applicationServices = loadApplicationServices();
    if (applicationServices != nullptr && unlockPixels == nullptr) unlockPixels = functionOf(applicationServices);
    if (unlockPixels != nullptr) unlockPixels(pixMap);
}

}  // namespace pxk
