/// Values as a program of the host language hands them to members, their type known at run time only.
#pragma once

#include <cstdint>
#include <optional>

#include "host/objects/object.h"

namespace pxkhost {

/// The types of values. An instance is of any class of the plugin.
enum class ValueKind { nothing, integer, real, boolean, color, picture, memoryBlock, string, instance };

/// True for the kinds whose values are objects.
bool isObject(ValueKind kind);

/// The kind's name in a declaration: "integer", "memoryblock", ...
const char* kindName(ValueKind kind);

/// A boolean that a plugin handed over: one byte, 0 or 1. Any other value reads as true, as programs take it, and is
/// recorded in the accounting as a problem.
bool booleanFrom(signed char byte);

struct Value {
    ValueKind kind = ValueKind::nothing;
    std::int32_t integer = 0;
    double real = 0;
    bool boolean = false;
    std::uint32_t color = 0;  ///< 0xRRGGBB
    Ref<Object> object;       ///< nil is a value of every kind of object

    static Value ofInteger(std::int32_t value);
    static Value ofReal(double value);
    static Value ofBoolean(bool value);
    static Value ofColor(std::uint32_t value);
    static Value ofObject(ValueKind kind, Ref<Object> object);
    /// 0, false or nil.
    static Value zeroOf(ValueKind kind);

    /// This value converted to another kind: an integer serves as a double or a colour, a colour as an integer, nil as
    /// any object. Empty when there is no such conversion.
    std::optional<Value> as(ValueKind wanted) const;
};

}  // namespace pxkhost
