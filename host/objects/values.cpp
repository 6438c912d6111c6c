#include "host/objects/values.h"

#include <string>
#include <utility>

#include "host/objects/accounting.h"

namespace pxkhost {

bool booleanFrom(signed char byte) {
    if (byte != 0 && byte != 1)
        Accounting::instance().addProblem("a boolean was " + std::to_string(byte) + ", neither 0 nor 1");
    return byte != 0;
}

Value Value::ofInteger(std::int32_t value) {
    Value result;
    result.kind = ValueKind::integer;
    result.integer = value;
    return result;
}

Value Value::ofReal(double value) {
    Value result;
    result.kind = ValueKind::real;
    result.real = value;
    return result;
}

Value Value::ofBoolean(bool value) {
    Value result;
    result.kind = ValueKind::boolean;
    result.boolean = value;
    return result;
}

Value Value::ofColor(std::uint32_t value) {
    Value result;
    result.kind = ValueKind::color;
    result.color = value;
    return result;
}

Value Value::ofObject(ValueKind kind, Ref<Object> object) {
    Value result;
    result.kind = kind;
    result.object = std::move(object);
    return result;
}

Value Value::zeroOf(ValueKind kind) {
    Value result;
    result.kind = kind;
    return result;
}

std::optional<Value> Value::as(ValueKind wanted) const {
    if (kind == wanted) return *this;
    if (kind == ValueKind::integer && wanted == ValueKind::real) return ofReal(integer);
    if (kind == ValueKind::integer && wanted == ValueKind::color) return ofColor(static_cast<std::uint32_t>(integer));
    if (kind == ValueKind::color && wanted == ValueKind::integer) return ofInteger(static_cast<std::int32_t>(color));
    // Nil is a value of every class.
    if (isObject(kind) && isObject(wanted) && !object) return zeroOf(wanted);
    return std::nullopt;
}

bool isObject(ValueKind kind) {
    return kind == ValueKind::picture || kind == ValueKind::memoryBlock || kind == ValueKind::string ||
           kind == ValueKind::instance;
}

const char* kindName(ValueKind kind) {
    switch (kind) {
        case ValueKind::nothing:
            return "nothing";
        case ValueKind::integer:
            return "integer";
        case ValueKind::real:
            return "double";
        case ValueKind::boolean:
            return "boolean";
        case ValueKind::color:
            return "color";
        case ValueKind::picture:
            return "picture";
        case ValueKind::memoryBlock:
            return "memoryblock";
        case ValueKind::string:
            return "string";
        case ValueKind::instance:
            return "object";
    }
    return "value";
}

}  // namespace pxkhost
