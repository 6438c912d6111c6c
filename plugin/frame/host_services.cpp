#include "frame/host_services.h"

#include "frame/entry_point.h"

namespace pxk {

HostResolver gResolver = nullptr;
double rbversion = 0.0;
std::int32_t CurrentREALControlVersion = 0;

namespace {

void* resolve(const char* name) { return gResolver(name); }

template <class Signature>
struct HostService : EntryPoint<Signature> {
    constexpr explicit HostService(const char* name) : EntryPoint<Signature>(resolve, name) {}
};

// The property services are asked for again while they are missing. Older hosts know them by a shorter name.
template <class Signature>
struct PropertyService : EntryPoint<Signature> {
    constexpr explicit PropertyService(const char* name, const char* shortName = nullptr)
        : EntryPoint<Signature>(resolve, name, WhenMissing::askAgain, shortName) {}
};

}  // namespace

void askHostVersion() {
    HostService<double()> getRBVersion("REALGetRBVersion");
    if (getRBVersion.find() != nullptr) rbversion = getRBVersion();
}

void announceControlVersion() {
    HostService<void(std::int32_t)> registerPluginVersion("RegisterPluginVersion");
    registerPluginVersion(CurrentREALControlVersion);
}

void REALRegisterClass(REALclassDefinition* definition) {
    static constinit HostService<void(REALclassDefinition*)> pRegisterClass("PluginRegisterClass");
    pRegisterClass(definition);
}

void REALRegisterClassExtension(REALclassDefinition* definition) {
    static constinit HostService<void(REALclassDefinition*)> pRegisterClassExtension("PluginRegisterClassExtension");
    pRegisterClassExtension(definition);
}

void REALRegisterModule(REALmoduleDefinition* definition) {
    static constinit HostService<void(REALmoduleDefinition*)> pRegisterModule("PluginRegisterModule");
    pRegisterModule(definition);
}

void REALRegisterMethod(REALmethodDefinition* definition) {
    static constinit HostService<void(REALmethodDefinition*)> pRegisterMethod("PluginRegisterMethod");
    pRegisterMethod(definition);
}

REALstringStruct* REALBuildString(const void* bytes, std::int32_t length) {
    static constinit HostService<REALstringStruct*(const void*, std::int32_t)> pBuildString("REALBuildString");
    return pBuildString(bytes, length);
}

REALstringStruct* REALBuildStringWithEncoding(const void* bytes, std::int32_t length, std::uint32_t encoding) {
    static constinit HostService<REALstringStruct*(const void*, std::int32_t, std::uint32_t)> pBuildStringWithEncoding(
        "REALBuildStringWithEncoding");
    return pBuildStringWithEncoding(bytes, length, encoding);
}

REALstringStruct* REALConvertString(REALstringStruct* string, std::uint32_t encoding) {
    static constinit HostService<REALstringStruct*(REALstringStruct*, std::uint32_t)> pConvertString(
        "REALConvertString");
    return pConvertString(string, encoding);
}

void REALSetStringEncoding(REALstringStruct* string, std::uint32_t encoding) {
    static constinit HostService<void(REALstringStruct*, std::uint32_t)> pSetStringEncoding("REALSetStringEncoding");
    pSetStringEncoding(string, encoding);
}

std::uint32_t REALGetStringEncoding(REALstringStruct* string) {
    static constinit HostService<std::uint32_t(REALstringStruct*)> pGetStringEncoding("REALGetStringEncoding");
    return pGetStringEncoding(string);
}

bool REALLockString(REALstringStruct* string) {
    static constinit HostService<void(REALstringStruct*)> pLockString("REALLockString");
    pLockString(string);
    return pLockString.find() != nullptr;
}

void REALUnlockString(REALstringStruct* string) {
    static constinit HostService<void(REALstringStruct*)> pUnlockString("REALUnlockString");
    pUnlockString(string);
}

bool REALLockObject(void* object) {
    static constinit HostService<void(void*)> pLockObject("REALLockObject");
    pLockObject(object);
    return pLockObject.find() != nullptr;
}

void REALUnlockObject(void* object) {
    static constinit HostService<void(void*)> pUnlockObject("REALUnlockObject");
    pUnlockObject(object);
}

REALobjectStruct* REALnewInstance(const char* className) {
    static constinit HostService<REALobjectStruct*(const char*)> pNewInstance("PluginNewInstance");
    return pNewInstance(className);
}

void* REALGetClassRef(const char* className) {
    static constinit HostService<void*(const char*)> pGetClassRef("pluginObjectType");
    return pGetClassRef(className);
}

HostFunction REALLoadObjectMethod(void* object, const char* declaration) {
    static constinit HostService<void*(void*, const char*)> pLoadObjectMethod("REALLoadObjectMethod");
    return pLoadObjectMethod(object, declaration);
}

void REALSetPropValueString(void* object, const char* name, REALstringStruct* value) {
    static constinit PropertyService<void(void*, const char*, REALstringStruct*)> pSetPropValue(
        "REALSetPropValueString");
    pSetPropValue(object, name, value);
}

void REALSetPropValueInteger(void* object, const char* name, std::int32_t value) {
    static constinit PropertyService<void(void*, const char*, std::int32_t)> pSetPropValue("REALSetPropValueInteger",
                                                                                           "REALSetPropValueInt");
    pSetPropValue(object, name, value);
}

bool REALGetPropValueInteger(void* object, const char* name, std::int32_t* value) {
    static constinit PropertyService<bool(void*, const char*, std::int32_t*)> pGetPropValue("REALGetPropValueInteger",
                                                                                            "REALGetPropValueInt");
    return pGetPropValue(object, name, value);
}

bool REALGetPropValueBoolean(void* object, const char* name, bool* value) {
    static constinit HostService<bool(void*, const char*, bool*)> pGetPropValue("REALGetPropValueBool");
    return pGetPropValue(object, name, value);
}

// A colour is passed as its 32-bit value, so the older hosts' integer setter serves as well.
void REALSetPropValueColor(void* object, const char* name, std::uint32_t color) {
    static constinit PropertyService<void(void*, const char*, std::uint32_t)> pSetPropValue("REALSetPropValueColor",
                                                                                            "REALSetPropValueInt");
    pSetPropValue(object, name, color);
}

void REALRaiseException(REALobjectStruct* exception) {
    static constinit HostService<void(REALobjectStruct*)> pRaiseException("RuntimeRaiseException");
    pRaiseException(exception);
}

bool REALLockPictureDescription(REALpictureStruct* picture, REALpictureDescription* description,
                                std::int32_t wantedType) {
    static constinit HostService<bool(REALpictureStruct*, REALpictureDescription*, std::int32_t)>
        pLockPictureDescription("REALLockPictureDescription");
    return pLockPictureDescription(picture, description, wantedType);
}

void REALUnlockPictureDescription(REALpictureStruct* picture) {
    static constinit HostService<void(REALpictureStruct*)> pUnlockPictureDescription("unlockPictureDescription");
    pUnlockPictureDescription(picture);
}

void REALPictureClearCache(REALpictureStruct* picture) {
    static constinit HostService<void(REALpictureStruct*)> pPictureClearCache("REALPictureClearCache");
    pPictureClearCache(picture);
}

REALgraphicsStruct* REALGetPictureGraphics(REALpictureStruct* picture) {
    static constinit HostService<REALgraphicsStruct*(REALpictureStruct*)> pGetPictureGraphics(
        "pluginPictureGraphicsGetter");
    return pGetPictureGraphics(picture);
}

REALpictureStruct* REALNewPicture(std::int32_t width, std::int32_t height, std::int32_t depth) {
    static constinit HostService<REALpictureStruct*(std::int32_t, std::int32_t, std::int32_t)> pNewPicture(
        "newPicture");
    return pNewPicture(width, height, depth);
}

REALpictureStruct* REALBuildPictureFromBuffer(std::int32_t width, std::int32_t height, std::int32_t type, void* pixels,
                                              std::int32_t rowBytes) {
    static constinit HostService<REALpictureStruct*(std::int32_t, std::int32_t, std::int32_t, void*, std::int32_t)>
        pBuildPictureFromBuffer("REALBuildPictureFromBuffer");
    return pBuildPictureFromBuffer(width, height, type, pixels, rowBytes);
}

REALpictureStruct* REALGetPictureMask(REALpictureStruct* picture, bool create) {
    static constinit HostService<REALpictureStruct*(REALpictureStruct*, bool)> pGetPictureMask("REALGetPictureMask");
    return pGetPictureMask(picture, create);
}

std::optional<std::int32_t> REALGetPictureType(REALpictureStruct* picture) {
    static constinit HostService<std::int32_t(REALpictureStruct*)> pGetPictureType("PluginPictureGetType");
    if (pGetPictureType.find() == nullptr) return std::nullopt;
    return pGetPictureType(picture);
}

REALmemoryBlockStruct* REALNewMemoryBlockOriginal(std::int32_t size) {
    static constinit HostService<REALmemoryBlockStruct*(std::int32_t)> pNewMemoryBlock("newMemoryBlock");
    return pNewMemoryBlock(size);
}

void* REALMemoryBlockGetPtr(REALmemoryBlockStruct* block) {
    static constinit HostService<void*(REALmemoryBlockStruct*)> pMemoryBlockGetPtr("memoryBlockGetPtr");
    return pMemoryBlockGetPtr(block);
}

std::optional<std::int32_t> REALMemoryBlockGetSize(REALmemoryBlockStruct* block) {
    static constinit HostService<std::int32_t(REALmemoryBlockStruct*)> pMemoryBlockGetSize("memoryBlockGetSize");
    if (pMemoryBlockGetSize.find() == nullptr) return std::nullopt;
    return pMemoryBlockGetSize(block);
}

void GraphicsDrawLine(REALgraphicsStruct* graphics, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                      std::int32_t y2) {
    static constinit HostService<void(REALgraphicsStruct*, std::int32_t, std::int32_t, std::int32_t, std::int32_t)>
        pGraphicsDrawLine("RuntimeGraphicsDrawLine");
    pGraphicsDrawLine(graphics, x1, y1, x2, y2);
}

}  // namespace pxk
