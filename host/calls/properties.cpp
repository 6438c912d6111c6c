#include "host/calls/properties.h"

#include <cstring>
#include <utility>

#include "host/objects/errors.h"

namespace pxkhost {

namespace {

template <class T>
T readField(const std::byte* field) {
    T value;
    std::memcpy(&value, field, sizeof value);
    return value;
}

template <class T>
void writeField(std::byte* field, T value) {
    std::memcpy(field, &value, sizeof value);
}

std::byte* fieldOf(const Instance& instance, const PropertyRecord& property) {
    return instance.data() + property.parameter;
}

/// A property's value from wherever it is kept: `read` is given a type and yields a value of it.
template <class Read>
Value readAs(ValueKind kind, Read read) {
    switch (kind) {
        case ValueKind::integer:
            return Value::ofInteger(read.template operator()<std::int32_t>());
        case ValueKind::real:
            return Value::ofReal(read.template operator()<double>());
        case ValueKind::boolean:
            return Value::ofBoolean(read.template operator()<signed char>() != 0);
        case ValueKind::color:
            return Value::ofColor(read.template operator()<std::uint32_t>());
        default:
            return {};
    }
}

template <class Write>
void writeAs(const Value& value, Write write) {
    switch (value.kind) {
        case ValueKind::integer:
            return write(value.integer);
        case ValueKind::real:
            return write(value.real);
        case ValueKind::boolean:
            return write(static_cast<signed char>(value.boolean ? 1 : 0));
        case ValueKind::color:
            return write(value.color);
        default:
            return write(value.object ? value.object->handle() : nullptr);
    }
}

void assignObject(std::byte* field, const Value& value) {
    Object* const before = Object::fromHandle(readField<void*>(field), "an object property");
    Ref<Object> held = value.object;
    writeField(field, held ? held->handle() : nullptr);
    held.detach();
    if (before != nullptr) before->release();
}

}  // namespace

Value getProperty(Instance& instance, const Member& property) {
    const PropertyRecord& record = *property.property;
    const ValueKind kind = property.declaration.result.kind;
    if (record.isField()) {
        const std::byte* const field = fieldOf(instance, record);
        if (isObject(kind))
            return Value::ofObject(
                kind, Ref<Object>::share(Object::fromHandle(readField<void*>(field), "an object property")));
        return readAs(kind, [field]<class T>() { return readField<T>(field); });
    }
    if (record.getter == nullptr)
        throw HostError("property " + property.owner + "." + record.name + " cannot be read; it has no getter");
    const auto get = [&]<class T>() {
        return reinterpret_cast<T (*)(REALobjectStruct*, pxk::HostWord)>(record.getter)(instance.handle(),
                                                                                        record.parameter);
    };
    Value value;
    if (isObject(kind))
        value = Value::ofObject(
            kind, Ref<Object>::adopt(Object::fromHandle(get.template operator()<void*>(), "a getter's result")));
    else
        value = readAs(kind, get);
    return value;
}

void setProperty(Instance& instance, const Member& property, const Value& value) {
    const PropertyRecord& record = *property.property;
    const auto converted = value.as(property.declaration.result.kind);
    if (!converted)
        throw HostError("property " + property.owner + "." + record.name + " takes a " + record.type + ", not a " +
                        kindName(value.kind));
    if (record.isField()) {
        std::byte* const field = fieldOf(instance, record);
        if (isObject(converted->kind))
            assignObject(field, *converted);
        else
            writeAs(*converted, [field](auto word) { writeField(field, word); });
        return;
    }
    if (record.setter == nullptr)
        throw HostError("property " + property.owner + "." + record.name + " cannot be assigned; it has no setter");
    writeAs(*converted, [&](auto word) {
        using Setter = void (*)(REALobjectStruct*, pxk::HostWord, decltype(word));
        reinterpret_cast<Setter>(record.setter)(instance.handle(), record.parameter, word);
    });
}

}  // namespace pxkhost
