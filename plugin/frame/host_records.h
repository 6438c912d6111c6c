/// The records that cross the boundary between the host and a plugin, word by word.
///
/// Every field of the registration records is one *host word*: a pointer-sized field, 4 bytes in a 32-bit build and
/// 8 bytes in a 64-bit build. The host keeps pointers into the registration records for the life of the process, so
/// whoever fills them leaves them in place.
#pragma once

#include <cstddef>
#include <cstdint>

// The host's objects. A plugin only ever sees pointers to them; a pointer returned to the host carries one reference.
struct REALobjectStruct;
struct REALpictureStruct;
struct REALstringStruct;
struct REALmemoryBlockStruct;
struct REALgraphicsStruct;

namespace pxk {

using HostWord = std::intptr_t;

/// The address of a function of any type, as the registration records and the resolver carry it.
using HostFunction = void*;

/// Given the ASCII name of a host entry point, returns its address, or nil when this host does not offer it.
using HostResolver = void* (*)(const char* name);

/// A name and value attached to a registered member, both NUL-terminated.
struct REALattribute {
    const char* name;
    const char* value;
};

/// A method, or a parameterised property when `setter` is set. Six words.
struct REALmethodDefinition {
    HostFunction function = {};
    HostFunction setter = {};
    const char* declaration = {};
    HostWord flags = {};
    HostWord attributeCount = {};
    const REALattribute* attributes = {};
};

/// The getter and setter of a property that is a plain field of the instance data: every bit of the word set. Tables
/// write it as `(void*)-1`, since for a cast of a constant the compiler would make code that runs when the library
/// loads.
inline constexpr HostWord directField = -1;

/// A property of a class. Twelve words; the first ten are the old layout.
/// With `directField` in getter and setter the host itself reads and writes the instance data at byte `parameter`;
/// otherwise they are functions called with (instance, parameter) and (instance, parameter, value).
struct REALproperty {
    const char* group = {};
    const char* name = {};
    const char* type = {};
    HostWord flags = {};
    HostFunction getter = {};
    HostFunction setter = {};
    HostWord parameter = {};
    HostWord reserved[5] = {};
};

/// A class, or the extension of a class of the host. Twenty-nine words; the first twenty-five are the old layout.
struct REALclassDefinition {
    HostWord version = {};
    const char* name = {};
    const char* superName = {};
    HostWord dataSize = {};
    /// Written by the host at registration: the byte offset from an object handle to this class's instance data.
    HostWord hostWord = {};
    HostFunction constructor = {};
    HostFunction destructor = {};
    REALproperty* properties = {};
    HostWord propertyCount = {};
    REALmethodDefinition* methods = {};
    HostWord methodCount = {};
    void* events = {};
    HostWord eventCount = {};
    void* eventInstances = {};
    HostWord eventInstanceCount = {};
    const char* interfaces = {};
    void* bindDescriptions = {};
    HostWord bindDescriptionCount = {};
    void* constants = {};
    HostWord constantCount = {};
    HostWord flags = {};
    REALproperty* sharedProperties = {};
    HostWord sharedPropertyCount = {};
    REALmethodDefinition* sharedMethods = {};
    HostWord sharedMethodCount = {};
    HostWord reserved[4] = {};
};

/// A module: global functions under one name. Twenty-four words; the first twelve are the old layout, in which the
/// records of every array are shorter.
struct REALmoduleDefinition {
    HostWord version = {};
    const char* name = {};
    REALmethodDefinition* methods = {};
    HostWord methodCount = {};
    void* constants = {};
    HostWord constantCount = {};
    REALproperty* properties = {};
    HostWord propertyCount = {};
    void* sixWordRecords = {};
    HostWord sixWordRecordCount = {};
    void* sevenWordRecords = {};
    HostWord sevenWordRecordCount = {};
    HostWord reserved[12] = {};
};

/// Filled by `REALLockPictureDescription`.
struct REALpictureDescription {
    std::int32_t type;
    void* platformImage;
    std::int32_t width;
    std::int32_t height;
    HostWord forTheHost[12];
};

/// The header in front of every object, string and memory block.
struct REALobjectHeader {
    HostWord words[2];
};

/// A memory block as hosts before 2017.0 expose it.
struct REALmemoryBlockRecord {
    REALobjectHeader header;
    std::int32_t size;
    void* bytes;
};

/// A string's bytes; nil is allowed when the length is 0.
struct REALstringRecord {
    REALobjectHeader header;
    std::int32_t length;
    const void* bytes;
};

template <class Record>
inline constexpr std::size_t wordCount = sizeof(Record) / sizeof(HostWord);

static_assert(wordCount<REALmethodDefinition> == 6);
static_assert(wordCount<REALproperty> == 12);
static_assert(wordCount<REALclassDefinition> == 29);
static_assert(wordCount<REALmoduleDefinition> == 24);

/// Picture types asked of `REALLockPictureDescription`.
inline constexpr std::int32_t bitmapContextType = 8;
inline constexpr std::int32_t gdImageType = 10;

}  // namespace pxk
