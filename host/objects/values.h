/// Values as a program of the host language hands them to members, their type known at run time only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/registration/declarations.h"
#include "host/objects/object.h"

namespace pxkhost {

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

    /// This value where a value of another kind belongs: an integer serves as a double or a colour, a colour as an
    /// integer, nil as any object. Empty when nothing of that kind.
    std::optional<Value> as(ValueKind wanted) const;
};

/// The kind's name in a declaration: "integer", "memoryblock", ...
const char* kindName(ValueKind kind);

/// The value that a parameter's default text stands for. Throws HostError when the text does not fit the type.
Value defaultValue(const Parameter& parameter);

}  // namespace pxkhost
