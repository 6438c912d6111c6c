// A plugin of the tests' own: members of every shape that a host has to cope with, well-behaved and misbehaving ones,
// registered in the form that the running host takes.
#include <cstdint>
#include <cstring>
#include <vector>

#include "frame/plugin_main.h"

namespace {

using namespace pxk;

HostResolver resolver;

template <class Signature, class... Arguments>
auto ask(const char* name, Arguments... arguments) {
    return reinterpret_cast<Signature*>(resolver(name))(arguments...);
}

void lockObject(void* object) { ask<void(void*)>("REALLockObject", object); }
void unlockObject(void* object) { ask<void(void*)>("REALUnlockObject", object); }

template <class Function>
HostFunction address(Function* function) {
    return reinterpret_cast<HostFunction>(function);
}

// ---- members of pictures ----

std::int32_t place(REALpictureStruct*, std::int32_t x, std::int32_t y) { return 100 * x + y; }

std::int32_t echoInteger(REALpictureStruct*, std::int32_t value) { return value; }
double echoDouble(REALpictureStruct*, double value) { return value; }
signed char echoBoolean(REALpictureStruct*, signed char value) { return value; }
std::uint32_t echoColor(REALpictureStruct*, std::uint32_t value) { return value; }
REALstringStruct* echoString(REALpictureStruct*, REALstringStruct* value) {
    if (value != nullptr) ask<void(void*)>("REALLockString", value);
    return value;
}
REALpictureStruct* echoPicture(REALpictureStruct*, REALpictureStruct* value) {
    if (value != nullptr) lockObject(value);
    return value;
}

REALpictureStruct* self(REALpictureStruct* picture) {
    lockObject(picture);
    return picture;
}

void variables(REALpictureStruct*, std::int32_t* count, double* half, signed char* flag,
               REALmemoryBlockStruct** block) {
    *count += 1;
    *half /= 2;
    *flag = *flag == 0 ? 1 : 0;
    if (*block == nullptr) *block = ask<REALmemoryBlockStruct*(std::int32_t)>("newMemoryBlock", 4);
}

std::int32_t given[8];

std::int32_t defaults(REALpictureStruct*, std::int32_t must, std::int32_t integer, double real, signed char flag,
                      std::uint32_t shade, REALpictureStruct* other, REALstringStruct* text) {
    const bool right = integer == -7 && real == 1.5 && flag == 1 && shade == 0x88B5C4 && other == nullptr &&
                       reinterpret_cast<const REALstringRecord*>(text)->length == 4;
    return right ? must : 0;
}

std::int32_t getLevel(REALpictureStruct*, std::int32_t index) { return given[index & 7]; }
void setLevel(REALpictureStruct*, std::int32_t index, std::int32_t value) { given[index & 7] = value; }

void raise(const char* className, const char* text, std::int32_t number) {
    void* const exception = ask<void*(const char*)>("PluginNewInstance", className);
    const auto length = static_cast<std::int32_t>(std::strlen(text));
    void* const message = ask<void*(const void*, std::int32_t)>("REALBuildString", text, length);
    ask<void(void*, std::uint32_t)>("REALSetStringEncoding", message, 0x08000100u);
    ask<void(void*, const char*, void*)>("REALSetPropValueString", exception, "Message", message);
    ask<void(void*, const char*, std::int32_t)>("REALSetPropValueInteger", exception, "ErrorNumber", number);
    ask<void(void*)>("RuntimeRaiseException", exception);
    unlockObject(exception);
    ask<void(void*)>("REALUnlockString", message);
}

REALpictureStruct* raiseAndReturn(REALpictureStruct* picture) {
    raise("OutOfBoundsException", "too far: \xC3\xBC", 3);
    return self(picture);
}

void raiseNothingElse(REALpictureStruct*) { raise("NilObjectException", "nothing there", 0); }

// ---- misbehaviour ----

void keepReference(REALpictureStruct* picture) { lockObject(picture); }
void releaseTooOften(REALpictureStruct*) {
    void* const block = ask<void*(std::int32_t)>("newMemoryBlock", 3);
    unlockObject(block);
    unlockObject(block);
}
void leakBlock(REALpictureStruct*) { ask<void*(std::int32_t)>("newMemoryBlock", 5); }
void lockDescription(REALpictureStruct* picture) {
    REALpictureDescription description{};
    for (const std::int32_t type : {bitmapContextType, gdImageType})
        ask<bool(void*, REALpictureDescription*, std::int32_t)>("REALLockPictureDescription", picture, &description,
                                                                type);
}
void unlockDescription(REALpictureStruct* picture) { ask<void(void*)>("unlockPictureDescription", picture); }

// ---- global methods ----

double sum(std::int32_t a, double b, signed char c, std::uint32_t d, std::uint32_t e) { return a + b + c + d + e; }

double many(std::int32_t a, double b, std::int32_t c, double d, std::int32_t e, double f, std::int32_t g, double h,
            std::int32_t i, double j, std::int32_t k, signed char l) {
    return a + 2 * b + 3 * c + 4 * d + 5 * e + 6 * f + 7 * g + 8 * h + 9 * i + 10 * j + 11 * k + 12 * l;
}

// Kept across calls: 1 after the first call since the plugin was loaded.
std::int32_t calls;
std::int32_t countCalls() { return ++calls; }

// ---- the class ----

struct CounterData {
    double ratio;
    REALpictureStruct* source;
    std::int32_t count;
    std::uint32_t shade;
    signed char flag;
    double scale;
    std::int32_t hidden;
};

extern REALclassDefinition counterClass;

CounterData& dataOf(REALobjectStruct* instance) {
    return *reinterpret_cast<CounterData*>(reinterpret_cast<char*>(instance) + counterClass.hostWord);
}

void constructCounter(REALobjectStruct* instance) { dataOf(instance).ratio = 0.5; }
void closeCounter(REALobjectStruct* instance) {
    CounterData& data = dataOf(instance);
    if (data.source != nullptr) unlockObject(data.source);
    data.source = nullptr;
}

double getScale(REALobjectStruct* instance, HostWord parameter) {
    return dataOf(instance).scale + static_cast<double>(parameter);
}
void setScale(REALobjectStruct* instance, HostWord parameter, double value) {
    if (value < 0) return raise("OutOfBoundsException", "scale is negative", 0);
    dataOf(instance).scale = value - static_cast<double>(parameter);
}
std::int32_t getHidden(REALobjectStruct* instance, HostWord) { return dataOf(instance).hidden; }
void setHidden(REALobjectStruct* instance, HostWord, std::int32_t value) { dataOf(instance).hidden = value; }
REALpictureStruct* getCopy(REALobjectStruct* instance, HostWord) {
    REALpictureStruct* const source = dataOf(instance).source;
    if (source != nullptr) lockObject(source);
    return source;
}

std::int32_t add(REALobjectStruct* instance, std::int32_t amount) { return dataOf(instance).count += amount; }
double getShare(REALobjectStruct* instance, std::uint32_t part) { return dataOf(instance).ratio / part; }
void setShare(REALobjectStruct* instance, std::uint32_t part, double value) { dataOf(instance).ratio = value * part; }

// ---- records ----

constexpr HostWord plain = 4;

const REALattribute deprecation{"Deprecated", "\"Something else\""};

REALmethodDefinition pictureMethods[] = {
    {address(place), nullptr, "PlacePXK(x as integer, y as integer = 5) as integer", plain, 0, nullptr},
    {address(echoInteger), nullptr, "EchoPXK(value as integer) as integer", plain, 0, nullptr},
    {address(echoDouble), nullptr, "EchoPXK(value as double) as double", plain, 0, nullptr},
    {address(echoBoolean), nullptr, "EchoPXK(value as boolean) as boolean", plain, 0, nullptr},
    {address(echoColor), nullptr, "EchoPXK(value as color) as color", plain, 0, nullptr},
    {address(echoString), nullptr, "EchoPXK(value as string) as string", plain, 0, nullptr},
    {address(echoPicture), nullptr, "EchoPXK(value as picture) as picture", plain, 0, nullptr},
    {address(self), nullptr, "SelfPXK as picture", plain, 1, &deprecation},
    {address(variables), nullptr,
     "VariablesPXK(byref count as integer, byref half as double, byref flag as boolean, byref block as memoryblock)",
     plain, 0, nullptr},
    {address(defaults), nullptr,
     "DefaultsPXK(must as integer, integer as Integer = -7, real as double=1.5, flag as boolean = true, "
     "shade as color=&c88B5C4, other as picture = nil, text as string = \"a, b\") as integer",
     plain, 0, nullptr},
    {address(getLevel), address(setLevel), "LevelPXK(index as integer) as integer", plain, 0, nullptr},
    {address(raiseAndReturn), nullptr, "RaisePXK as picture", plain, 0, nullptr},
    {address(raiseNothingElse), nullptr, "RaiseOnlyPXK", plain, 0, nullptr},
    {address(keepReference), nullptr, "KeepReferencePXK", plain, 0, nullptr},
    {address(releaseTooOften), nullptr, "ReleaseTooOftenPXK", plain, 0, nullptr},
    {address(leakBlock), nullptr, "LeakBlockPXK", plain, 0, nullptr},
    {address(lockDescription), nullptr, "LockDescriptionPXK", plain, 0, nullptr},
    {address(unlockDescription), nullptr, "UnlockDescriptionPXK", plain, 0, nullptr},
};

// The same members as a module has them.
REALmethodDefinition moduleMethods[] = {
    {address(place), nullptr, "PlacePXK(extends ref as Picture, x as integer, y as integer = 5) as integer", plain, 0,
     nullptr},
    {address(echoInteger), nullptr, "EchoPXK(extends ref as Picture, value as integer) as integer", plain, 0, nullptr},
    {address(self), nullptr, "SelfPXK(extends ref as Picture) as picture", plain, 1, &deprecation},
    {address(setLevel), nullptr, "LevelPXK(extends ref as Picture, index as integer, assigns value as integer)", plain,
     0, nullptr},
    {address(getLevel), nullptr, "LevelPXK(extends ref as Picture, index as integer) as integer", plain, 0, nullptr},
    {address(countCalls), nullptr, "CountCallsPXK as integer", plain, 0, nullptr},
};

REALmethodDefinition globalMethods[] = {
    {address(sum), nullptr, "SumPXK(a as integer, b as double, c as boolean, d as color, e as UInt32) as double", plain,
     0, nullptr},
    {address(many), nullptr,
     "ManyPXK(a as integer, b as double, c as integer, d as double, e as integer, f as double, g as integer, h as "
     "double, "
     "i as integer, j as double, k as integer, l as boolean) as double",
     plain, 0, nullptr},
    {address(countCalls), nullptr, "CountCallsPXK as integer", plain, 0, nullptr},
};

template <class Record, std::size_t size>
constexpr HostWord countOf(const Record (&)[size]) {
    return size;
}

HostFunction direct() { return reinterpret_cast<HostFunction>(directField); }

REALproperty counterProperties[] = {
    {nullptr, "Source", "Picture", plain, direct(), direct(), offsetof(CounterData, source), {}},
    {nullptr, "Count", "Integer", plain, direct(), direct(), offsetof(CounterData, count), {}},
    {nullptr, "Ratio", "Double", plain, direct(), direct(), offsetof(CounterData, ratio), {}},
    {nullptr, "Shade", "Color", plain, direct(), direct(), offsetof(CounterData, shade), {}},
    {nullptr, "Flag", "Boolean", plain, direct(), direct(), offsetof(CounterData, flag), {}},
    {nullptr, "Scale", "Double", plain, address(getScale), address(setScale), 7, {}},
    {nullptr, "Hidden", "Integer", plain, address(getHidden), address(setHidden), 0, {}},
    {nullptr, "SourceCopy", "Picture", plain, address(getCopy), nullptr, 0, {}},
};

REALmethodDefinition counterMethods[] = {
    {address(closeCounter), nullptr, "Close", plain, 0, nullptr},
    {address(add), nullptr, "Add(amount as integer = 1) as integer", plain, 0, nullptr},
    {address(getShare), address(setShare), "Share(part as UInt32) as double", plain, 0, nullptr},
};

REALmethodDefinition otherMethods[] = {{address(closeCounter), nullptr, "Close", plain, 0, nullptr}};

REALclassDefinition otherClass{};
REALclassDefinition counterClass{};
REALclassDefinition pictureExtension{};
REALmoduleDefinition module{};

template <std::size_t size>
void useMethods(auto& record, REALmethodDefinition (&methods)[size]) {
    record.methods = methods;
    record.methodCount = size;
}

}  // namespace

void REALPluginMain(HostResolver given_resolver) {
    resolver = given_resolver;
    const double version = ask<double()>("REALGetRBVersion");
    ask<void(std::int32_t)>("RegisterPluginVersion", 13);

    otherClass.version = 13;
    otherClass.name = "OtherPXK";
    otherClass.dataSize = 8;
    useMethods(otherClass, otherMethods);
    otherClass.methods[0].function = nullptr;
    ask<void(REALclassDefinition*)>("PluginRegisterClass", &otherClass);

    counterClass.version = 13;
    counterClass.name = "CounterPXK";
    counterClass.dataSize = sizeof(CounterData);
    counterClass.constructor = address(constructCounter);
    counterClass.destructor = address(closeCounter);
    counterClass.properties = counterProperties;
    counterClass.propertyCount = countOf(counterProperties);
    useMethods(counterClass, counterMethods);
    ask<void(REALclassDefinition*)>("PluginRegisterClass", &counterClass);

    if (version >= 2013.0 && version < 3000.0) {
        module.version = 13;
        module.name = "DoubleModulePXK";
        useMethods(module, moduleMethods);
        ask<void(REALmoduleDefinition*)>("PluginRegisterModule", &module);
        return;
    }
    pictureExtension.version = 13;
    pictureExtension.name = "Picture";
    useMethods(pictureExtension, pictureMethods);
    ask<void(REALclassDefinition*)>("PluginRegisterClassExtension", &pictureExtension);
    for (REALmethodDefinition& method : globalMethods)
        ask<void(REALmethodDefinition*)>("PluginRegisterMethod", &method);
}
