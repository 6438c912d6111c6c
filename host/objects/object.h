/// The part that all objects of the host share: the header that a plugin sees and the reference count.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/objects/reference.h"
#include "plugin/frame/host_records.h"

namespace pxkhost {

class ObjectList;

class Object {
  public:
    enum class Kind { string, memoryBlock, picture, graphics, exception, instance };

    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    /// Adds a reference.
    void retain() noexcept;

    /// Releases a reference; the last release ends the object. Any release after that is recorded as a problem.
    void release() noexcept;

    Kind kind() const { return kind_; }

    /// The references held at this moment.
    std::int64_t references() const { return references_; }

    /// How often a reference was taken, including the one from creation, and released.
    std::uint64_t timesTaken() const { return timesTaken_; }
    std::uint64_t timesGivenBack() const { return timesGivenBack_; }

    /// What a plugin knows the object by: the address of its header.
    void* handle() const { return header_; }

    /// The name that reports use, for example "picture 3 (10 x 8)". Numbers start at 1 with every host opened.
    std::string describe() const;

    /// What is locked at this moment and should not be when the object ends, one line each.
    virtual std::vector<std::string> openLocks() const { return {}; }

    /// The object behind a handle, alive or dead; nil for nil. A handle of something else is recorded as a problem
    /// that names its `user`, and yields nil.
    static Object* anyFromHandle(const void* handle, const char* user);

    /// The same, but an object used after its last release is also a problem and yields nil.
    static Object* fromHandle(const void* handle, const char* user);

    /// The same for an object of one kind; any other is a problem and yields nil.
    static Object* fromHandle(const void* handle, Kind kind, const char* user);

  protected:
    explicit Object(Kind kind);

    /// Names the header in front of the record that the plugin sees. Every constructor calls it once.
    void publish(pxk::REALobjectHeader& header);

    /// Releases what the object holds. Called once, at the last release.
    virtual void dispose() = 0;

    /// What describe() adds in brackets; empty for nothing.
    virtual std::string details() const { return {}; }

  private:
    friend class Accounting;
    friend class ObjectList;

    Kind kind_;
    bool alive_ = true;
    std::uint32_t number_ = 0;
    pxk::REALobjectHeader* header_ = nullptr;
    std::int64_t references_ = 1;
    std::uint64_t timesTaken_ = 1;
    std::uint64_t timesGivenBack_ = 0;
    ObjectList* list_ = nullptr;
    Object* previous_ = nullptr;
    Object* next_ = nullptr;
};

const char* kindName(Object::Kind kind);

/// The object of type T behind a handle; see Object::fromHandle.
template <class T>
T* fromHandle(const void* handle, const char* user) {
    return static_cast<T*>(Object::fromHandle(handle, T::ownKind, user));
}

}  // namespace pxkhost
