#include "host/calls/caller.h"

#include "host/objects/errors.h"

#ifdef PXK_WITH_FFI
#include <ffi.h>

#include <deque>
#include <vector>
#endif

namespace pxkhost {

#ifdef PXK_WITH_FFI

namespace {

ffi_type* ffiType(ValueKind kind) {
    switch (kind) {
        case ValueKind::nothing:
            return &ffi_type_void;
        case ValueKind::integer:
            return &ffi_type_sint32;
        case ValueKind::real:
            return &ffi_type_double;
        case ValueKind::boolean:
            return &ffi_type_sint8;
        case ValueKind::color:
            return &ffi_type_uint32;
        default:
            return &ffi_type_pointer;
    }
}

/// Room for a value of any kind as it crosses the boundary.
union Cell {
    std::int32_t integer;
    double real;
    signed char boolean;
    std::uint32_t color;
    void* pointer;
};

Cell cellOf(const Value& value) {
    Cell cell{};
    switch (value.kind) {
        case ValueKind::integer:
            cell.integer = value.integer;
            break;
        case ValueKind::real:
            cell.real = value.real;
            break;
        case ValueKind::boolean:
            cell.boolean = value.boolean ? 1 : 0;
            break;
        case ValueKind::color:
            cell.color = value.color;
            break;
        default:
            cell.pointer = value.object ? value.object->handle() : nullptr;
    }
    return cell;
}

Value valueOf(ValueKind kind, const Cell& cell) {
    switch (kind) {
        case ValueKind::integer:
            return Value::ofInteger(cell.integer);
        case ValueKind::real:
            return Value::ofReal(cell.real);
        case ValueKind::boolean:
            return Value::ofBoolean(booleanFrom(cell.boolean));
        case ValueKind::color:
            return Value::ofColor(cell.color);
        default:
            return Value::ofObject(kind,
                                   Ref<Object>::adopt(Object::fromHandle(cell.pointer, "what a member gave back")));
    }
}

/// The arguments of one call, in the form that libffi takes.
class ArgumentList {
  public:
    void add(ValueKind kind, const Cell& cell) { add(ffiType(kind), cell); }

    /// A variable; `cell` is changed when the function writes to it.
    void addReference(Cell& cell) { add(&ffi_type_pointer, Cell{.pointer = &cell}); }

    std::vector<ffi_type*> types;
    std::vector<void*> values;

  private:
    void add(ffi_type* type, const Cell& cell) {
        cells_.push_back(cell);
        types.push_back(type);
        values.push_back(&cells_.back());
    }

    std::deque<Cell> cells_;
};

Value callThroughFfi(void* function, ArgumentList& list, ValueKind result) {
    ffi_cif interface;
    if (ffi_prep_cif(&interface, FFI_DEFAULT_ABI, static_cast<unsigned>(list.types.size()), ffiType(result),
                     list.types.data()) != FFI_OK)
        throw HostError("libffi cannot call a function of this signature");

    // libffi widens small integer results to a whole word.
    union {
        ffi_arg word;
        double real;
        void* pointer;
    } returned{};
    ffi_call(&interface, FFI_FN(function), &returned, list.values.data());
    if (result == ValueKind::nothing) return {};
    Cell cell{};
    if (result == ValueKind::real)
        cell.real = returned.real;
    else if (isObject(result))
        cell.pointer = returned.pointer;
    else if (result == ValueKind::boolean)
        cell.boolean = static_cast<signed char>(returned.word);
    else
        cell.color = static_cast<std::uint32_t>(returned.word);
    return valueOf(result, cell);
}

}  // namespace

bool canCallByName() { return true; }

Value callFunction(void* function, Object* self, const Declaration& declaration, std::span<Value> arguments,
                   const Value* assigned) {
    const auto& parameters = declaration.parameters;
    std::vector<Cell> variables(parameters.size());
    ArgumentList list;
    if (self != nullptr) list.add(ValueKind::instance, Cell{.pointer = self->handle()});
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        variables[i] = cellOf(arguments[i]);
        if (parameters[i].byRef)
            list.addReference(variables[i]);
        else
            list.add(arguments[i].kind, variables[i]);
    }
    if (assigned != nullptr) list.add(assigned->kind, cellOf(*assigned));

    Value result = callThroughFfi(function, list, assigned != nullptr ? ValueKind::nothing : declaration.result.kind);
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (!parameters[i].byRef) continue;
        const bool sameObject = isObject(arguments[i].kind) && cellOf(arguments[i]).pointer == variables[i].pointer;
        if (!sameObject) arguments[i] = valueOf(arguments[i].kind, variables[i]);
    }
    return result;
}

#else

bool canCallByName() { return false; }

Value callFunction(void*, Object*, const Declaration& declaration, std::span<Value>, const Value*) {
    throw HostError("\"" + declaration.name + "\" cannot be called by name in a build without libffi");
}

#endif

}  // namespace pxkhost
