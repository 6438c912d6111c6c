/// A small plugin with a member of every kind that a chain can meet: each type of argument and result, values written
/// back, properties that can be assigned to, exceptions, nil, a class. Its members do next to nothing with pixels, so
/// that what the tests see is the tool's doing.
#include <cstddef>
#include <cstring>
#include <iterator>
#include <string_view>

#include "plugin/frame/host_records.h"

namespace {

using namespace pxk;
using Picture = REALpictureStruct*;
using String = REALstringStruct*;
using MemoryBlock = REALmemoryBlockStruct*;
using Object = REALobjectStruct*;

HostResolver resolve = nullptr;

template <class Function>
Function service(const char* name) {
    return reinterpret_cast<Function>(resolve(name));
}

template <class Handle>
Handle kept(Handle object) {
    if (object != nullptr) service<void (*)(void*)>("REALLockObject")(object);
    return object;
}

void released(void* object) {
    if (object != nullptr) service<void (*)(void*)>("REALUnlockObject")(object);
}

String newString(std::string_view bytes, std::uint32_t encoding) {
    return service<String (*)(const void*, std::int32_t, std::uint32_t)>("REALBuildStringWithEncoding")(
        bytes.data(), static_cast<std::int32_t>(bytes.size()), encoding);
}

constexpr std::uint32_t utf8 = 0x08000100;
constexpr std::uint32_t unknownEncoding = 0xFFFF;

// ---- methods of a picture

double sum(Picture /*self*/, std::int32_t a, double b) { return a + b; }

signed char isTrue(Picture /*self*/, signed char value) { return value; }

std::int32_t bits(Picture /*self*/, std::uint32_t color) { return static_cast<std::int32_t>(color); }

Picture same(Picture self) { return kept(self); }

Picture other(Picture /*self*/, Picture picture) { return kept(picture); }

Picture nothing(Picture /*self*/) { return nullptr; }

Picture leak(Picture self) { return kept(kept(self)); }

String echo(Picture /*self*/, String text) {
    const auto* record = reinterpret_cast<const REALstringRecord*>(text);
    return newString({static_cast<const char*>(record->bytes), static_cast<std::size_t>(record->length)}, utf8);
}

String binary(Picture /*self*/) { return newString(std::string_view("\0\1\2\xFF", 4), unknownEncoding); }

MemoryBlock block(Picture /*self*/, std::int32_t size) {
    return service<MemoryBlock (*)(std::int32_t)>("newMemoryBlock")(size);
}

std::int32_t blockSize(Picture /*self*/, MemoryBlock memory) {
    return memory == nullptr ? -1 : service<std::int32_t (*)(MemoryBlock)>("memoryBlockGetSize")(memory);
}

signed char halves(Picture /*self*/, std::int32_t number, std::int32_t* low, std::int32_t* high) {
    *low = number / 2;
    *high = number - *low;
    return 1;
}

void measure(Picture self, std::int32_t* width, MemoryBlock* memory) {
    service<bool (*)(Picture, const char*, std::int32_t*)>("REALGetPropValueInteger")(self, "Width", width);
    if (*memory == nullptr) *memory = block(self, 3);
}

Picture raise(Picture /*self*/, String message) {
    auto* const exception = service<Object (*)(const char*)>("PluginNewInstance")("NilObjectException");
    service<void (*)(Object, const char*, String)>("REALSetPropValueString")(exception, "Message", message);
    service<void (*)(Object)>("RuntimeRaiseException")(exception);
    released(exception);
    return nullptr;
}

std::int32_t levels[4];

std::int32_t getLevel(Picture /*self*/, std::int32_t index) { return levels[index & 3]; }

void setLevel(Picture /*self*/, std::int32_t index, std::int32_t value) { levels[index & 3] = value; }

// ---- global methods

Picture pair(Picture /*first*/, Picture second) { return kept(second); }

Picture tone(Picture source, std::uint32_t /*color*/) { return kept(source); }

std::int32_t answer() { return 42; }

// ---- a class

struct Copier {
    Picture source;
    Picture destination;
    std::int32_t times;
    double ratio;
    double table[2];
};

Copier& dataOf(Object instance);

void closeCopier(Object instance) {
    Copier& copier = dataOf(instance);
    released(copier.source);
    released(copier.destination);
    copier.source = copier.destination = nullptr;
}

void constructCopier(Object instance) { dataOf(instance).ratio = 0.25; }

signed char runCopier(Object instance) {
    Copier& copier = dataOf(instance);
    if (copier.times < 0) return 0;
    if (copier.ratio != 0.0 && copier.table[1] < 1000.0) copier.destination = kept(copier.source);
    return 1;
}

double getRatio(Object instance, HostWord /*parameter*/) { return dataOf(instance).ratio; }

void setRatio(Object instance, HostWord /*parameter*/, double value) { dataOf(instance).ratio = value; }

double getTable(Object instance, std::uint32_t index) { return dataOf(instance).table[index & 1U]; }

void setTable(Object instance, std::uint32_t index, double value) { dataOf(instance).table[index & 1U] = value; }

// ---- the records

template <class Function>
HostFunction address(Function* function) {
    return reinterpret_cast<HostFunction>(function);
}

constexpr HostWord version = 13;
constexpr HostWord flags = 4;

const REALattribute deprecated{"Deprecated", "\"EchoPXK\""};

REALmethodDefinition pictureMethods[] = {
    {address(sum), nullptr, "SumPXK(a as integer, b as double = 0.5) as double", flags, 0, nullptr},
    {address(isTrue), nullptr, "IsPXK(value as boolean) as boolean", flags, 0, nullptr},
    {address(bits), nullptr, "BitsPXK(col as color) as integer", flags, 0, nullptr},
    {address(same), nullptr, "SamePXK as picture", flags, 0, nullptr},
    {address(other), nullptr, "OtherPXK(pic as picture) as picture", flags, 0, nullptr},
    {address(nothing), nullptr, "NothingPXK as picture", flags, 0, nullptr},
    {address(leak), nullptr, "LeakPXK as picture", flags, 0, nullptr},
    {address(echo), nullptr, "EchoPXK(text as string) as string", flags, 0, nullptr},
    {address(binary), nullptr, "BinaryPXK as string", flags, 1, &deprecated},
    {address(block), nullptr, "BlockPXK(size as integer) as memoryblock", flags, 0, nullptr},
    {address(blockSize), nullptr, "BlockSizePXK(block as memoryblock) as integer", flags, 0, nullptr},
    {address(halves), nullptr, "HalvesPXK(number as integer, byref low as integer, byref high as integer) as boolean",
     flags, 0, nullptr},
    {address(measure), nullptr, "MeasurePXK(byref width as integer, byref block as memoryblock)", flags, 0, nullptr},
    {address(raise), nullptr, "RaisePXK(message as string) as picture", flags, 0, nullptr},
    {address(getLevel), address(setLevel), "LevelPXK(index as integer) as integer", flags, 0, nullptr},
};

REALmethodDefinition globalMethods[] = {
    {address(pair), nullptr, "PairPXK(first as picture, second as picture) as picture", flags, 0, nullptr},
    {address(tone), nullptr, "TonePXK(source as picture, col as color) as picture", flags, 0, nullptr},
    {address(answer), nullptr, "AnswerPXK as integer", flags, 0, nullptr},
};

constexpr HostWord place(std::size_t offset) { return static_cast<HostWord>(offset); }

HostFunction field = reinterpret_cast<HostFunction>(directField);

REALproperty copierProperties[] = {
    {nullptr, "SourcePicture", "Picture", flags, field, field, place(offsetof(Copier, source)), {}},
    {nullptr, "DestinationPicture", "Picture", flags, field, field, place(offsetof(Copier, destination)), {}},
    {nullptr, "Times", "Integer", flags, field, field, place(offsetof(Copier, times)), {}},
    {nullptr, "Ratio", "Double", flags, address(getRatio), address(setRatio), 0, {}},
};

REALmethodDefinition copierMethods[] = {
    {address(closeCopier), nullptr, "Close", flags, 0, nullptr},
    {address(runCopier), nullptr, "Run as boolean", flags, 0, nullptr},
    {address(getTable), address(setTable), "Table(index as UInt32) as double", flags, 0, nullptr},
};

REALclassDefinition copierClass{};
REALclassDefinition idleClass{};
REALclassDefinition pictureExtension{};

Copier& dataOf(Object instance) {
    return *reinterpret_cast<Copier*>(reinterpret_cast<char*>(instance) + copierClass.hostWord);
}

void fillClasses() {
    copierClass.version = version;
    copierClass.name = "PictureCopierPXK";
    copierClass.dataSize = sizeof(Copier);
    copierClass.constructor = address(constructCopier);
    copierClass.destructor = address(closeCopier);
    copierClass.properties = copierProperties;
    copierClass.propertyCount = std::ssize(copierProperties);
    copierClass.methods = copierMethods;
    copierClass.methodCount = std::ssize(copierMethods);
    copierClass.flags = flags;

    idleClass.version = version;
    idleClass.name = "IdlePXK";
    idleClass.dataSize = 16;
    idleClass.flags = flags;

    pictureExtension.version = version;
    pictureExtension.name = "Picture";
    pictureExtension.methods = pictureMethods;
    pictureExtension.methodCount = std::ssize(pictureMethods);
    pictureExtension.flags = flags;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] void REALPluginMain(pxk::HostResolver resolver) {
    resolve = resolver;
    fillClasses();
    service<void (*)(std::int32_t)>("RegisterPluginVersion")(static_cast<std::int32_t>(version));
    service<void (*)(REALclassDefinition*)>("PluginRegisterClass")(&copierClass);
    service<void (*)(REALclassDefinition*)>("PluginRegisterClass")(&idleClass);
    service<void (*)(REALclassDefinition*)>("PluginRegisterClassExtension")(&pictureExtension);
    for (REALmethodDefinition& each : globalMethods) {
        service<void (*)(REALmethodDefinition*)>("PluginRegisterMethod")(&each);
    }
}
