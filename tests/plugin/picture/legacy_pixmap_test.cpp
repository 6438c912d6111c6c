// Pixel maps unlocked through a framework of the system.
#include "picture/legacy_pixmap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

// A stand-in for a framework of the system. The program exports these functions, and the plugin
// finds them by name as it would find the system's own.
namespace {

std::vector<std::string> callLog;
bool frameworkLoads = false;
PixMap** unlocked = nullptr;

void recordUnlock(PixMap** pixMap) { unlocked = pixMap; }

using Object = const void*;
const char folder[] = "folder";
const char place[] = "place";
const char bundle[] = "bundle";

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default"), used))

EXPORTED std::int16_t FSFindFolder(std::int16_t disk, std::uint32_t kind, unsigned char create, void* found) {
    EXPECT_EQ(disk, -32767);
    EXPECT_EQ(kind, 0x6672616DU);
    EXPECT_EQ(create, 1);
    std::memset(found, 7, 80);
    callLog.emplace_back("find");
    return 0;
}
EXPORTED Object CFURLCreateFromFSRef(Object, const void*) { return folder; }
EXPORTED Object __CFStringMakeConstantString(const char* text) { return text; }
EXPORTED Object CFURLCreateCopyAppendingPathComponent(Object, Object start, Object component, unsigned char) {
    EXPECT_EQ(start, folder);
    EXPECT_STREQ(static_cast<const char*>(component), "ApplicationServices.framework");
    return place;
}
EXPORTED Object CFBundleCreate(Object, Object where) {
    EXPECT_EQ(where, place);
    return bundle;
}
EXPORTED unsigned char CFBundleLoadExecutable(Object) {
    callLog.emplace_back("load");
    return frameworkLoads;
}
EXPORTED void* CFBundleGetFunctionPointerForName(Object, Object name) {
    EXPECT_STREQ(static_cast<const char*>(name), "UnlockPixels");
    callLog.emplace_back("function");
    return reinterpret_cast<void*>(recordUnlock);
}
EXPORTED void CFRelease(Object object) {
    callLog.push_back(std::string("release ") + static_cast<const char*>(object));
}

namespace pxk {
namespace {

TEST(LegacyPixMap, IsUnlockedByAFrameworkThatIsLookedForUntilItLoads) {
    PixMap* pixMap = nullptr;
    UnlockPixels(&pixMap);
    EXPECT_EQ(unlocked, nullptr) << "without the framework nothing happens";
    EXPECT_EQ(callLog, (std::vector<std::string>{"find", "load", "release bundle", "release place", "release folder"}));

    callLog.clear();
    frameworkLoads = true;
    UnlockPixels(&pixMap);
    EXPECT_EQ(unlocked, &pixMap);
    EXPECT_EQ(callLog, (std::vector<std::string>{"find", "load", "release place", "release folder", "function"}));

    callLog.clear();
    unlocked = nullptr;
    UnlockPixels(&pixMap);
    EXPECT_EQ(unlocked, &pixMap);
    EXPECT_EQ(callLog, std::vector<std::string>()) << "bundle and function are kept";
}

}  // namespace
}  // namespace pxk
