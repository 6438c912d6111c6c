#include "host/services.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "host/host.h"

namespace pxkhost {

namespace {

// ---- registration ----

double getHostVersion() { return Host::current().version(); }
void registerVersion(std::int32_t version) { Host::current().registry().declareVersion(version); }
void registerClass(pxk::REALclassDefinition* record) { Host::current().registry().addClass(*record); }
void registerExtension(pxk::REALclassDefinition* record) { Host::current().registry().addExtension(*record); }
void registerModule(pxk::REALmoduleDefinition* record) { Host::current().registry().addModule(*record); }
void registerMethod(pxk::REALmethodDefinition* record) { Host::current().registry().addGlobalMethod(*record); }

// ---- strings ----

REALstringStruct* makeString(const void* bytes, std::int32_t length, std::uint32_t encoding) {
    if (length < 0 || Host::current().creationFails()) return nullptr;
    const auto* const text = static_cast<const char*>(bytes);
    return String::make(length > 0 ? std::string(text, static_cast<std::size_t>(length)) : std::string(), encoding)
        .detach()
        ->handle();
}

REALstringStruct* buildString(const void* bytes, std::int32_t length) {
    return makeString(bytes, length, encoding::unknown);
}

REALstringStruct* convertString(const void* string, std::uint32_t encoding) {
    const auto* const source = fromHandle<String>(string, "REALConvertString");
    if (source == nullptr || Host::current().creationFails()) return nullptr;
    return source->converted(encoding).detach()->handle();
}

void setStringEncoding(const void* string, std::uint32_t encoding) {
    if (auto* const target = fromHandle<String>(string, "REALSetStringEncoding")) target->setEncoding(encoding);
}

std::uint32_t getStringEncoding(const void* string) {
    const auto* const source = fromHandle<String>(string, "REALGetStringEncoding");
    return source != nullptr ? source->encoding() : encoding::unknown;
}

// ---- references ----

void lockString(const void* string) {
    if (auto* const target = fromHandle<String>(string, "REALLockString")) target->retain();
}

void lockObject(const void* object) {
    if (Object* const target = Object::fromHandle(object, "REALLockObject")) target->retain();
}

// A dead object goes on to release(), which records it by name.
void unlockString(const void* string) {
    if (Object* const target = Object::anyFromHandle(string, "REALUnlockString")) target->release();
}

void unlockObject(const void* object) {
    if (Object* const target = Object::anyFromHandle(object, "REALUnlockObject")) target->release();
}

// ---- classes and instances ----

constexpr std::array<const char*, 5> exceptionClasses{"RuntimeException", "NilObjectException", "OutOfMemoryException",
                                                      "OutOfBoundsException", "IllegalCastException"};
constexpr const char* pictureClass = "Picture";

bool isExceptionClass(std::string_view name) {
    return std::find(exceptionClasses.begin(), exceptionClasses.end(), name) != exceptionClasses.end();
}

const char* applicationClass(ApplicationKind application) {
    switch (application) {
        case ApplicationKind::desktop:
            return "Application";
        case ApplicationKind::web:
            return "WebApplication";
        case ApplicationKind::console:
            break;
    }
    return "ConsoleApplication";
}

void* newInstance(const char* className) {
    Host& host = Host::current();
    if (className == nullptr || !host.offers(className) || host.creationFails()) return nullptr;
    if (std::string_view(className) == pictureClass) return Picture::unconstructed().detach()->handle();
    if (isExceptionClass(className)) return Exception::make(className).detach()->Object::handle();
    const ClassRecord* const record = host.registry().findClass(className);
    return record != nullptr ? host.newInstance(*record).detach()->handle() : nullptr;
}

void* classReference(const char* className) {
    Host& host = Host::current();
    if (className == nullptr || !host.offers(className)) return nullptr;
    const std::string_view name = className;
    const bool known = name == applicationClass(host.application()) || name == pictureClass || isExceptionClass(name) ||
                       host.registry().findClass(name) != nullptr;
    static char reference;
    return known ? &reference : nullptr;
}

// ---- methods of the host's own objects ----

void constructPicture(const void* picture, std::int32_t width, std::int32_t height) {
    auto* const target = fromHandle<Picture>(picture, "Picture.Constructor");
    if (target != nullptr && !Host::current().creationFails()) Host::current().construct(*target, width, height);
}

void assignMask(const void* picture, const void* mask) {
    if (auto* const target = fromHandle<Picture>(picture, "Picture.Mask"))
        target->setMask(Ref<Picture>::share(fromHandle<Picture>(mask, "Picture.Mask")));
}

void drawPicture(const void* graphics, const void* picture, std::int32_t x, std::int32_t y, std::int32_t w,
                 std::int32_t h, std::int32_t sx, std::int32_t sy, std::int32_t sw, std::int32_t sh) {
    auto* const target = fromHandle<Graphics>(graphics, "Graphics.DrawPicture");
    const auto* const source = fromHandle<Picture>(picture, "Graphics.DrawPicture");
    if (target != nullptr && source != nullptr) target->drawPicture(*source, x, y, w, h, sx, sy, sw, sh);
}

struct HostMethod {
    Object::Kind kind;
    const char* name;
    const char* denyName;
    void* function;
};

/// The part of a declaration in front of its parameters.
std::string_view nameOf(const char* declaration) {
    const std::string_view whole = declaration;
    return whole.substr(0, whole.find_first_of("( "));
}

bool sameName(std::string_view a, const char* b) {
    return a.size() == std::strlen(b) && strncasecmp(a.data(), b, a.size()) == 0;
}

void* loadObjectMethod(const void* object, const char* declaration) {
    static const std::array<HostMethod, 3> methods{
        {{Object::Kind::picture, "Constructor", "Picture.Constructor", reinterpret_cast<void*>(constructPicture)},
         {Object::Kind::picture, "Mask", "Picture.Mask", reinterpret_cast<void*>(assignMask)},
         {Object::Kind::graphics, "DrawPicture", "Graphics.DrawPicture", reinterpret_cast<void*>(drawPicture)}}};
    const Object* const target = Object::fromHandle(object, "REALLoadObjectMethod");
    if (target == nullptr || declaration == nullptr) return nullptr;
    const std::string_view name = nameOf(declaration);
    for (const HostMethod& method : methods)
        if (method.kind == target->kind() && sameName(name, method.name) && Host::current().offers(method.denyName))
            return method.function;
    return nullptr;
}

// ---- properties of the host's own objects ----

void setStringProperty(const void* object, const char* name, const void* string) {
    Object* const target = Object::fromHandle(object, "REALSetPropValueString");
    if (target != nullptr && target->kind() == Object::Kind::exception && sameName(name, "Message"))
        static_cast<Exception*>(target)->message =
            Ref<String>::share(fromHandle<String>(string, "REALSetPropValueString"));
}

void setGraphicsProperty(Graphics& graphics, const char* name, std::int32_t value) {
    if (sameName(name, "PenWidth")) graphics.penWidth = value;
    if (sameName(name, "PenHeight")) graphics.penHeight = value;
    if (sameName(name, "ForeColor")) graphics.foreColor = static_cast<std::uint32_t>(value);
}

void setIntegerProperty(const void* object, const char* name, std::int32_t value) {
    Object* const target = Object::fromHandle(object, "REALSetPropValueInteger");
    if (target == nullptr) return;
    if (target->kind() == Object::Kind::exception && sameName(name, "ErrorNumber"))
        static_cast<Exception*>(target)->errorNumber = value;
    if (target->kind() == Object::Kind::graphics) setGraphicsProperty(static_cast<Graphics&>(*target), name, value);
}

void setColorProperty(const void* object, const char* name, std::uint32_t value) {
    if (auto* const graphics = fromHandle<Graphics>(object, "REALSetPropValueColor"))
        setGraphicsProperty(*graphics, name, static_cast<std::int32_t>(value));
}

bool getIntegerProperty(const void* object, const char* name, std::int32_t* value) {
    const auto* const picture = fromHandle<Picture>(object, "REALGetPropValueInteger");
    if (picture == nullptr) return false;
    const bool wantsWidth = sameName(name, "Width");
    if (!wantsWidth && !sameName(name, "Height")) return false;
    if (!Host::current().offers(wantsWidth ? "Picture.Width" : "Picture.Height")) return false;
    *value = wantsWidth ? picture->reportedWidth() : picture->reportedHeight();
    return true;
}

bool getBooleanProperty(const void* object, const char* name, bool* value) {
    const auto* const picture = fromHandle<Picture>(object, "REALGetPropValueBool");
    if (picture == nullptr || !sameName(name, "HasAlphaChannel")) return false;
    if (!Host::current().offers("Picture.HasAlphaChannel")) return false;
    *value = picture->hasAlphaChannel();
    return true;
}

// ---- exceptions ----

void raiseException(const void* exception) {
    Host::current().raise(Ref<Exception>::share(fromHandle<Exception>(exception, "RuntimeRaiseException")));
}

// ---- pictures ----

bool lockDescription(const void* picture, pxk::REALpictureDescription* description, std::int32_t wantedType) {
    auto* const target = fromHandle<Picture>(picture, "REALLockPictureDescription");
    return target != nullptr && target->lock(*description, wantedType, Host::current().lockRules());
}

void unlockDescription(const void* picture) {
    if (auto* const target = fromHandle<Picture>(picture, "unlockPictureDescription"))
        target->unlock(Host::current().lockRules());
}

void clearPictureCache(const void* picture) {
    if (auto* const target = fromHandle<Picture>(picture, "REALPictureClearCache")) target->clearCache();
}

void* getGraphics(const void* picture) {
    auto* const target = fromHandle<Picture>(picture, "pluginPictureGraphicsGetter");
    if (target == nullptr || !Host::current().options().graphics) return nullptr;
    return Graphics::make(Ref<Picture>::share(target)).detach()->handle();
}

REALpictureStruct* givenAway(Ref<Picture> picture) { return picture ? picture.detach()->handle() : nullptr; }

REALpictureStruct* newPicture(std::int32_t width, std::int32_t height, std::int32_t depth) {
    Host& host = Host::current();
    if (depth != 32 || host.creationFails()) return nullptr;
    return givenAway(host.newPicture(width, height));
}

REALpictureStruct* buildPictureFromBuffer(std::int32_t width, std::int32_t height, std::int32_t type, void* pixels,
                                          std::int32_t rowBytes) {
    Host& host = Host::current();
    constexpr std::int32_t wordsOfThePictureItself = 1;
    if (type != wordsOfThePictureItself || pixels == nullptr || host.creationFails()) return nullptr;
    Ref<Picture> picture = host.newPicture(width, height);
    for (int y = 0; picture && y < height; ++y)
        std::memcpy(picture->row(y), static_cast<const char*>(pixels) + static_cast<std::ptrdiff_t>(y) * rowBytes,
                    static_cast<std::size_t>(width) * sizeof(std::uint32_t));
    return givenAway(std::move(picture));
}

REALpictureStruct* getMask(const void* picture, bool create) {
    auto* const target = fromHandle<Picture>(picture, "REALGetPictureMask");
    if (target == nullptr) return nullptr;
    if (create && !target->mask()) {
        // A new mask is black: it hides nothing.
        Ref<Picture> mask = Host::current().newPicture(target->width(), target->height());
        if (mask) mask->fill(0xFF000000u);
        target->setMask(std::move(mask));
    }
    return givenAway(target->mask());
}

std::int32_t getPictureType(const void* picture) {
    const auto* const target = fromHandle<Picture>(picture, "PluginPictureGetType");
    return target != nullptr ? target->typeCode() : 0;
}

// ---- memory blocks ----

REALmemoryBlockStruct* newMemoryBlock(std::int32_t size) {
    if (size < 0 || Host::current().creationFails()) return nullptr;
    return MemoryBlock::make(size).detach()->handle();
}

void* memoryBlockPointer(const void* block) {
    const auto* const target = fromHandle<MemoryBlock>(block, "memoryBlockGetPtr");
    return target != nullptr ? target->pointer() : nullptr;
}

std::int32_t memoryBlockSize(const void* block) {
    const auto* const target = fromHandle<MemoryBlock>(block, "memoryBlockGetSize");
    return target != nullptr ? target->size() : 0;
}

// ---- drawing ----

void drawLine(const void* graphics, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    if (auto* const target = fromHandle<Graphics>(graphics, "RuntimeGraphicsDrawLine"))
        target->drawLine(x1, y1, x2, y2);
}

struct Service {
    const char* name;
    void* function;
};

template <class Function>
Service service(const char* name, Function* function) {
    return {name, reinterpret_cast<void*>(function)};
}

}  // namespace

void* findService(const char* name) {
    static const std::array services{
        service("REALGetRBVersion", getHostVersion),
        service("RegisterPluginVersion", registerVersion),
        service("PluginRegisterClass", registerClass),
        service("PluginRegisterClassExtension", registerExtension),
        service("PluginRegisterModule", registerModule),
        service("PluginRegisterMethod", registerMethod),
        service("REALBuildString", buildString),
        service("REALBuildStringWithEncoding", makeString),
        service("REALConvertString", convertString),
        service("REALSetStringEncoding", setStringEncoding),
        service("REALGetStringEncoding", getStringEncoding),
        service("REALLockString", lockString),
        service("REALUnlockString", unlockString),
        service("REALLockObject", lockObject),
        service("REALUnlockObject", unlockObject),
        service("PluginNewInstance", newInstance),
        service("pluginObjectType", classReference),
        service("REALLoadObjectMethod", loadObjectMethod),
        service("REALSetPropValueString", setStringProperty),
        service("REALSetPropValueInteger", setIntegerProperty),
        service("REALSetPropValueInt", setIntegerProperty),
        service("REALGetPropValueInteger", getIntegerProperty),
        service("REALGetPropValueInt", getIntegerProperty),
        service("REALGetPropValueBool", getBooleanProperty),
        service("REALSetPropValueColor", setColorProperty),
        service("RuntimeRaiseException", raiseException),
        service("REALLockPictureDescription", lockDescription),
        service("unlockPictureDescription", unlockDescription),
        service("REALPictureClearCache", clearPictureCache),
        service("pluginPictureGraphicsGetter", getGraphics),
        service("newPicture", newPicture),
        service("REALBuildPictureFromBuffer", buildPictureFromBuffer),
        service("REALGetPictureMask", getMask),
        service("PluginPictureGetType", getPictureType),
        service("newMemoryBlock", newMemoryBlock),
        service("memoryBlockGetPtr", memoryBlockPointer),
        service("memoryBlockGetSize", memoryBlockSize),
        service("RuntimeGraphicsDrawLine", drawLine),
    };
    for (const Service& each : services)
        if (std::strcmp(each.name, name) == 0) return each.function;
    return nullptr;
}

}  // namespace pxkhost
