/// The services of the host, each under its own name.
///
/// Nothing of the host is linked: each service is asked of the resolver by name when it is first used. A service that
/// this host does not offer does nothing and yields 0, nil or false. Objects returned carry one reference that belongs
/// to the caller, who releases it with `REALUnlockObject` or `REALUnlockString`, unless stated otherwise.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "frame/host_records.h"

namespace pxk {

/// The resolver, kept by `REALPluginMain` before anything else happens.
extern HostResolver gResolver;

/// The host's version: a year, with the release after the point (2013.04 is later than 2013.03). 0 until known.
extern double rbversion;

/// The record version that the plugin declares to the host, 9 to 13. Hosts that take 9 want the old record layouts.
extern std::int32_t CurrentREALControlVersion;

// Start-up. `askHostVersion` leaves `rbversion` as it is when the host does not report one.
void askHostVersion();
void announceControlVersion();
void REALRegisterClass(REALclassDefinition* definition);
void REALRegisterClassExtension(REALclassDefinition* definition);
void REALRegisterModule(REALmoduleDefinition* definition);
void REALRegisterMethod(REALmethodDefinition* definition);

// Strings. Encodings are the host's 32-bit identifiers (frame/text.h).
REALstringStruct* REALBuildString(const void* bytes, std::int32_t length);
REALstringStruct* REALBuildStringWithEncoding(const void* bytes, std::int32_t length, std::uint32_t encoding);
REALstringStruct* REALConvertString(REALstringStruct* string, std::uint32_t encoding);
void REALSetStringEncoding(REALstringStruct* string, std::uint32_t encoding);
std::uint32_t REALGetStringEncoding(REALstringStruct* string);
/// Adds a reference. False when the host cannot, and there is none to release.
bool REALLockString(REALstringStruct* string);
void REALUnlockString(REALstringStruct* string);

// Objects of any kind.
/// Adds a reference. False when the host cannot, and there is none to release.
bool REALLockObject(void* object);
/// Drops a reference.
void REALUnlockObject(void* object);
REALobjectStruct* REALnewInstance(const char* className);
/// A class reference, not an object: nothing to give back.
void* REALGetClassRef(const char* className);
/// The entry point of an object's method, called with the object first, or nil.
HostFunction REALLoadObjectMethod(void* object, const char* declaration);
void REALSetPropValueString(void* object, const char* name, REALstringStruct* value);
void REALSetPropValueInteger(void* object, const char* name, std::int32_t value);
bool REALGetPropValueInteger(void* object, const char* name, std::int32_t* value);
bool REALGetPropValueBoolean(void* object, const char* name, bool* value);
void REALSetPropValueColor(void* object, const char* name, std::uint32_t color);
/// The host raises the exception when the member returns.
void REALRaiseException(REALobjectStruct* exception);

// Pictures.
bool REALLockPictureDescription(REALpictureStruct* picture, REALpictureDescription* description,
                                std::int32_t wantedType);
void REALUnlockPictureDescription(REALpictureStruct* picture);
void REALPictureClearCache(REALpictureStruct* picture);
REALgraphicsStruct* REALGetPictureGraphics(REALpictureStruct* picture);
REALpictureStruct* REALNewPicture(std::int32_t width, std::int32_t height, std::int32_t depth);
REALpictureStruct* REALBuildPictureFromBuffer(std::int32_t width, std::int32_t height, std::int32_t type, void* pixels,
                                              std::int32_t rowBytes);
REALpictureStruct* REALGetPictureMask(REALpictureStruct* picture, bool create);
/// Empty when the host cannot tell: 0 is a type of its own.
std::optional<std::int32_t> REALGetPictureType(REALpictureStruct* picture);

// Memory blocks.
REALmemoryBlockStruct* REALNewMemoryBlockOriginal(std::int32_t size);
void* REALMemoryBlockGetPtr(REALmemoryBlockStruct* block);
/// Empty when the host cannot tell.
std::optional<std::int32_t> REALMemoryBlockGetSize(REALmemoryBlockStruct* block);

// Drawing.
void GraphicsDrawLine(REALgraphicsStruct* graphics, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);

struct GiveBackObject {
    void operator()(void* object) const { REALUnlockObject(object); }
};
struct GiveBackString {
    void operator()(REALstringStruct* string) const { REALUnlockString(string); }
};

/// One reference to a host object, released when it goes out of scope.
template <class Object>
using HostReference = std::unique_ptr<Object, GiveBackObject>;
using HostString = std::unique_ptr<REALstringStruct, GiveBackString>;

/// A further reference to an object that is not nil. Empty when the host cannot add one: whoever only needs the object
/// to stay carries on without.
template <class Object>
HostReference<Object> anotherReference(Object* object) {
    return HostReference<Object>(REALLockObject(object) ? object : nullptr);
}
inline HostString anotherReference(REALstringStruct* string) {
    return HostString(REALLockString(string) ? string : nullptr);
}

}  // namespace pxk
