/// Calls of functions whose signature is known at run time only.
#pragma once

#include <span>

#include "host/objects/values.h"
#include "host/registration/declarations.h"

namespace pxkhost {

/// True when calls by name are part of this build.
bool canCallByName();

/// Calls a member's function with the platform's C convention. `self` is nil for global methods. `arguments` has one
/// value for every parameter, already of the parameter's kind; byref parameters are written back into it, an object
/// written back replacing the one passed. `assigned` is the value behind the arguments of a setter, or nil.
/// Throws HostError in a build without libffi.
Value callFunction(void* function, Object* self, const Declaration& declaration, std::span<Value> arguments,
                   const Value* assigned = nullptr);

}  // namespace pxkhost
