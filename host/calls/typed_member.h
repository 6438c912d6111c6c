/// Calls of members through plain function pointers, with C++ types checked against the declaration once.
#pragma once

#include <cstdint>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

#include "host/objects/exceptions.h"
#include "host/objects/instances.h"
#include "host/objects/memory_blocks.h"
#include "host/objects/strings.h"
#include "host/pictures/picture.h"
#include "host/registration/members.h"

namespace pxkhost {

/// A variable handed to a byref parameter. An object that the member puts there replaces the one in the variable, whose
/// own reference is given back.
template <class T>
struct ByRef {
    T& variable;
};
template <class T>
ByRef<T> byRef(T& variable) {
    return {variable};
}

namespace native {

/// How a C++ type crosses the boundary: `Word` is the C type there. `kinds` are the kinds it may stand for.
template <class T>
struct Crossing;

template <class T, ValueKind... allowed>
struct PlainCrossing {
    using Word = T;
    static bool fits(const Parameter& parameter) {
        return !parameter.byRef && ((parameter.type.kind == allowed) || ...);
    }
    static bool fitsResult(const Type& type) { return ((type.kind == allowed) || ...); }
    static Word in(T value) { return value; }
    static T out(Word word) { return word; }
};

template <>
struct Crossing<std::int32_t> : PlainCrossing<std::int32_t, ValueKind::integer, ValueKind::color> {};
template <>
struct Crossing<std::uint32_t> : PlainCrossing<std::uint32_t, ValueKind::integer, ValueKind::color> {};
template <>
struct Crossing<double> : PlainCrossing<double, ValueKind::real> {};

template <>
struct Crossing<bool> : PlainCrossing<bool, ValueKind::boolean> {
    using Word = signed char;
    static Word in(bool value) { return value ? 1 : 0; }
    static bool out(Word word) { return booleanFrom(word); }
};

template <class T>
inline constexpr ValueKind objectKind = ValueKind::instance;
template <>
inline constexpr ValueKind objectKind<Picture> = ValueKind::picture;
template <>
inline constexpr ValueKind objectKind<MemoryBlock> = ValueKind::memoryBlock;
template <>
inline constexpr ValueKind objectKind<String> = ValueKind::string;

template <class T>
using Handle = decltype(std::declval<T&>().handle());

template <class T>
requires std::is_base_of_v<Object, T>
struct Crossing<T*> : PlainCrossing<T*, objectKind<T>> {
    using Word = Handle<T>;
    static Word in(T* object) { return object != nullptr ? object->handle() : nullptr; }
};

template <class T>
struct Crossing<Ref<T>> : PlainCrossing<T*, objectKind<T>> {
    using Word = Handle<T>;
    static Word in(const Ref<T>& object) { return Crossing<T*>::in(object.get()); }
    static Ref<T> out(Word word) { return Ref<T>::adopt(fromHandle<T>(word, "a member's result")); }
};

template <>
struct Crossing<std::nullptr_t> : PlainCrossing<std::nullptr_t, ValueKind::picture, ValueKind::memoryBlock,
                                                ValueKind::string, ValueKind::instance> {
    using Word = void*;
};

template <class T>
struct Crossing<ByRef<T>> {
    using Word = typename Crossing<T>::Word*;
    static bool fits(const Parameter& parameter) { return parameter.byRef && Crossing<T>::fitsResult(parameter.type); }
};

template <>
struct Crossing<void> {
    using Word = void;
    static bool fitsResult(const Type& type) { return type.kind == ValueKind::nothing; }
};

/// The word of one argument while a call lasts. For byref parameters it owns the variable that the member sees.
template <class T>
class Argument {
  public:
    explicit Argument(const T& value) : word_(Crossing<T>::in(value)) {}
    typename Crossing<T>::Word word() { return word_; }

  private:
    typename Crossing<T>::Word word_;
};

template <class T>
class Argument<ByRef<T>> {
  public:
    explicit Argument(const ByRef<T>& value)
        : variable_(value.variable), before_(Crossing<T>::in(variable_)), now_(before_) {}
    ~Argument() {
        if (now_ != before_) variable_ = Crossing<T>::out(now_);
    }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;
    typename Crossing<T>::Word* word() { return &now_; }

  private:
    T& variable_;
    typename Crossing<T>::Word before_;
    typename Crossing<T>::Word now_;
};

/// Throws HostError unless the member has a function (or setter) and takes `count` arguments, its object included.
void* entryOf(const Member& member, bool setter, std::size_t count);
/// The parameter that an argument of a call stands for; the object itself appears as a parameter named "self".
Parameter parameterAt(const Member& member, bool setter, std::size_t index);
[[noreturn]] void refuseArgument(const Member& member, std::size_t index);
[[noreturn]] void refuseResult(const Member& member);

}  // namespace native

template <class Signature>
class TypedMember;

template <class Result, class... Arguments>
class TypedMember<Result(Arguments...)> {
  public:
    /// `pending` is where the host keeps what a call raises; it must outlive the calls.
    TypedMember(const Member& member, bool setter, PendingException& pending)
        : function_(reinterpret_cast<Function>(native::entryOf(member, setter, sizeof...(Arguments)))),
          pending_(&pending) {
        std::size_t index = 0;
        (check<Arguments>(member, setter, index++), ...);
        if (!setter && !native::Crossing<Result>::fitsResult(member.declaration.result)) native::refuseResult(member);
    }

    /// Calls the member; throws HostException when it raised one, after releasing whatever it returned.
    Result operator()(const Arguments&... arguments) const {
        if constexpr (std::is_void_v<Result>) {
            callWith(native::Argument<Arguments>(arguments)...);
            pending_->throwIfAny();
        } else {
            Result result = native::Crossing<Result>::out(callWith(native::Argument<Arguments>(arguments)...));
            pending_->throwIfAny();
            return result;
        }
    }

    /// The bare function, for callers that handle references and exceptions themselves.
    auto raw() const { return function_; }

  private:
    using Function = typename native::Crossing<Result>::Word (*)(typename native::Crossing<Arguments>::Word...);

    template <class Argument>
    static void check(const Member& member, bool setter, std::size_t index) {
        if (!native::Crossing<Argument>::fits(native::parameterAt(member, setter, index)))
            native::refuseArgument(member, index);
    }

    template <class... Held>
    auto callWith(Held&&... held) const {
        return function_(held.word()...);
    }

    Function function_;
    PendingException* pending_;
};

}  // namespace pxkhost
