/// What the functions of the C interface share: the open host, its last error, and objects on either side.
#pragma once

#include <cstring>
#include <deque>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "host/host.h"
#include "host/include/pxkhost.h"

struct pxk_host {
    explicit pxk_host(pxkhost::Options options) : host(std::move(options)) {
        for (const pxkhost::Member& member : host.members().all()) deprecated.push_back(member.deprecated());
    }

    pxkhost::Host host;
    std::string lastError;
    std::string inspected;
    std::string profileName;
    std::deque<std::string> deprecated;
};

namespace pxkhost {

/// The last error of the calls in this thread that had no host, or none that they could use.
std::string& processError();

/// Whether a handle is the open host's and this thread the one that opened it. Any other handle may be stale, and is
/// only compared.
bool isUsable(const pxk_host* host);

/// Throws HostError, saying why, unless the handle is usable.
void requireUsable(const pxk_host* host);

/// Runs one function of the interface: what it throws becomes `error`, and `failed` the result.
template <class Result, class Action>
Result reported(std::string& error, Result failed, Action action) noexcept {
    error.clear();
    try {
        return action();
    } catch (const std::bad_alloc&) {
        error = "there is not enough memory";
    } catch (const std::exception& exception) {
        error = exception.what();
    } catch (...) {
        error = "an unknown error";
    }
    return failed;
}

/// The same for a function that works on a host, which is checked before.
template <class Result, class Action>
Result guarded(pxk_host* host, Result failed, Action action) noexcept {
    return reported(isUsable(host) ? host->lastError : processError(), failed, [&]() -> Result {
        requireUsable(host);
        return action();
    });
}

/// What a pointer given by the caller leads to. Throws HostError for NULL.
template <class T>
T& required(T* pointer, const char* argument) {
    if (pointer == nullptr) throw HostError(std::string("argument \"") + argument + "\" is NULL");
    return *pointer;
}

/// An enumeration's number as the caller wrote it, which may be none of the enumeration's.
template <class Enumeration>
int numberOf(const Enumeration& value) {
    int number = 0;
    static_assert(sizeof value == sizeof number);
    std::memcpy(&number, &value, sizeof number);
    return number;
}

inline Object* fromC(pxk_object* object) { return reinterpret_cast<Object*>(object); }
inline const Object* fromC(const pxk_object* object) { return reinterpret_cast<const Object*>(object); }
inline pxk_object* toC(Object* object) { return reinterpret_cast<pxk_object*>(object); }

/// The same, the reference going to the caller.
template <class T>
pxk_object* toC(Ref<T> object) {
    return toC(object.detach());
}

/// An object of one kind. Throws HostError for NULL and for objects of other kinds.
template <class T>
T& expected(pxk_object* object, const char* argument) {
    Object& given = required(fromC(object), argument);
    if (given.kind() != T::ownKind)
        throw HostError(std::string("argument \"") + argument + "\" is a " + kindName(given.kind()) + ", not a " +
                        kindName(T::ownKind));
    return static_cast<T&>(given);
}

}  // namespace pxkhost
