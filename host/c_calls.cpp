// The C interface: members called by name, instances and their properties.
#include <string>
#include <utility>
#include <vector>

#include "host/c_interface.h"

using namespace pxkhost;

// The C enumeration is that of C++ under other names.
static_assert(PXK_NOTHING == static_cast<int>(ValueKind::nothing));
static_assert(PXK_COLOR == static_cast<int>(ValueKind::color));
static_assert(PXK_MEMORY_BLOCK == static_cast<int>(ValueKind::memoryBlock));
static_assert(PXK_INSTANCE == static_cast<int>(ValueKind::instance));

namespace {

void requireKind(const Object& object, Object::Kind kind, ValueKind declared) {
    if (object.kind() != kind)
        throw HostError(std::string("a value of kind ") + kindName(declared) + " holds " + object.describe());
}

/// The value with a reference of its own to its object.
Value valueFromC(const pxk_value& value) {
    const auto kind = static_cast<ValueKind>(numberOf(value.kind));
    switch (kind) {
        case ValueKind::nothing:
            return {};
        case ValueKind::integer:
            return Value::ofInteger(value.as.integer);
        case ValueKind::real:
            return Value::ofReal(value.as.real);
        case ValueKind::boolean:
            return Value::ofBoolean(value.as.boolean != 0);
        case ValueKind::color:
            return Value::ofColor(value.as.color);
        case ValueKind::picture:
        case ValueKind::memoryBlock:
        case ValueKind::string:
        case ValueKind::instance:
            break;
        default:
            throw HostError("a value of the unknown kind " + std::to_string(numberOf(value.kind)));
    }
    Object* const object = fromC(value.as.object);
    if (object != nullptr) {
        if (kind == ValueKind::picture) requireKind(*object, Object::Kind::picture, kind);
        if (kind == ValueKind::memoryBlock) requireKind(*object, Object::Kind::memoryBlock, kind);
        if (kind == ValueKind::string) requireKind(*object, Object::Kind::string, kind);
        if (kind == ValueKind::instance) requireKind(*object, Object::Kind::instance, kind);
    }
    return Value::ofObject(kind, Ref<Object>::share(object));
}

/// The value, its reference going to the caller.
pxk_value valueToC(Value value) {
    pxk_value result{};
    result.kind = static_cast<pxk_kind>(value.kind);
    switch (value.kind) {
        case ValueKind::nothing:
            break;
        case ValueKind::integer:
            result.as.integer = value.integer;
            break;
        case ValueKind::real:
            result.as.real = value.real;
            break;
        case ValueKind::boolean:
            result.as.boolean = value.boolean ? 1 : 0;
            break;
        case ValueKind::color:
            result.as.color = value.color;
            break;
        default:
            result.as.object = toC(value.object.detach());
    }
    return result;
}

std::vector<Value> valuesFromC(const pxk_value* arguments, std::size_t count) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(valueFromC((&required(arguments, "arguments"))[i]));
    return values;
}

}  // namespace

extern "C" {

int pxk_call(pxk_host* host, pxk_object* self, const char* name, pxk_value* arguments, size_t count,
             pxk_value* result) {
    if (result != nullptr) *result = pxk_value{};
    return guarded<int>(host, PXK_FAILED, [&] {
        Host& open = required(host, "host").host;
        std::vector<Value> values = valuesFromC(arguments, count);
        const Member& member = open.find(fromC(self), &required(name, "name"), values);
        const auto& parameters = member.declaration.parameters;
        Value returned = open.call(member, fromC(self), values);
        for (std::size_t i = 0; i < count; ++i) {
            if (!parameters[i].byRef) continue;
            const bool sameObject = isObject(values[i].kind) && toC(values[i].object.get()) == arguments[i].as.object &&
                                    arguments[i].kind != PXK_NOTHING;
            if (!sameObject) arguments[i] = valueToC(std::move(values[i]));
        }
        if (result != nullptr) *result = valueToC(std::move(returned));
        return PXK_OK;
    });
}

int pxk_assign(pxk_host* host, pxk_object* self, const char* name, const pxk_value* arguments, size_t count,
               pxk_value value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        required(host, "host")
            .host.assignByName(fromC(self), &required(name, "name"), valuesFromC(arguments, count), valueFromC(value));
        return PXK_OK;
    });
}

pxk_object* pxk_new_instance(pxk_host* host, const char* class_name) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        return toC(required(host, "host").host.newInstance(&required(class_name, "class_name")));
    });
}

int pxk_get_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value* value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        pxk_value& target = required(value, "value");
        target = valueToC(
            required(host, "host").host.property(expected<Instance>(instance, "instance"), &required(name, "name")));
        return PXK_OK;
    });
}

int pxk_set_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        required(host, "host")
            .host.setProperty(expected<Instance>(instance, "instance"), &required(name, "name"), valueFromC(value));
        return PXK_OK;
    });
}

}  // extern "C"
