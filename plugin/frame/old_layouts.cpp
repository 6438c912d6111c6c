#include "frame/old_layouts.h"

#include <algorithm>

#include "frame/allocation.h"
#include "frame/host_services.h"

namespace pxk {

namespace {

HostWord wordOf(const void* pointer) { return reinterpret_cast<HostWord>(pointer); }

// The first `kept` words of each of `count` records of `length` words.
HostWord* shorten(const void* records, HostWord count, std::size_t length, std::size_t kept) {
    if (records == nullptr || count <= 0) return nullptr;
    const auto recordCount = static_cast<std::uint64_t>(count);
    if (recordCount > largestAllocation / (kept * sizeof(HostWord))) return nullptr;
    HostWord* shortened = allocateZeroed<HostWord>(recordCount * kept).release();
    if (shortened == nullptr) return nullptr;
    const auto* source = static_cast<const HostWord*>(records);
    for (std::size_t i = 0; i < recordCount; ++i) std::copy_n(source + i * length, kept, shortened + i * kept);
    return shortened;
}

// An array and its count lie side by side in every record.
void putArray(HostWord* place, const HostWord* array, HostWord count) {
    place[0] = wordOf(array);
    place[1] = array == nullptr ? 0 : count;
}

HostWord* fixMethods(const REALmethodDefinition* methods, HostWord count) {
    return shorten(methods, count, wordCount<REALmethodDefinition>, 4);
}

}  // namespace

HostWord* FixProperties(const REALproperty* properties, HostWord count) {
    return shorten(properties, count, wordCount<REALproperty>, 10);
}

HostWord* FixClass(const REALclassDefinition* definition) {
    HostWord* old = allocateZeroed<HostWord>(oldClassWords).release();
    if (old == nullptr) return nullptr;
    const REALclassDefinition& from = *definition;
    old[0] = CurrentREALControlVersion;
    old[1] = wordOf(from.name);
    old[2] = wordOf(from.superName);
    old[3] = from.dataSize;
    old[4] = from.hostWord;
    old[5] = wordOf(from.constructor);
    old[6] = wordOf(from.destructor);
    putArray(old + 7, FixProperties(from.properties, from.propertyCount), from.propertyCount);
    putArray(old + 9, fixMethods(from.methods, from.methodCount), from.methodCount);
    putArray(old + 11, shorten(from.events, from.eventCount, 2, 2), from.eventCount);
    old[13] = wordOf(from.eventInstances);
    old[14] = from.eventInstanceCount;
    old[15] = wordOf(from.interfaces);
    // Words 16 and 17, the bind descriptions and their count, stay 0: old hosts have none.
    putArray(old + 18, shorten(from.constants, from.constantCount, 5, 3), from.constantCount);
    old[20] = from.flags;
    putArray(old + 21, FixProperties(from.sharedProperties, from.sharedPropertyCount), from.sharedPropertyCount);
    putArray(old + 23, fixMethods(from.sharedMethods, from.sharedMethodCount), from.sharedMethodCount);
    return old;
}

HostWord* FixModule(const REALmoduleDefinition* definition) {
    HostWord* old = allocateZeroed<HostWord>(oldModuleWords).release();
    if (old == nullptr) return nullptr;
    const REALmoduleDefinition& from = *definition;
    old[0] = CurrentREALControlVersion;
    old[1] = wordOf(from.name);
    putArray(old + 2, fixMethods(from.methods, from.methodCount), from.methodCount);
    putArray(old + 4, shorten(from.constants, from.constantCount, 5, 3), from.constantCount);
    putArray(old + 6, FixProperties(from.properties, from.propertyCount), from.propertyCount);
    putArray(old + 8, shorten(from.sixWordRecords, from.sixWordRecordCount, 6, 4), from.sixWordRecordCount);
    putArray(old + 10, shorten(from.sevenWordRecords, from.sevenWordRecordCount, 7, 5), from.sevenWordRecordCount);
    return old;
}

}  // namespace pxk
