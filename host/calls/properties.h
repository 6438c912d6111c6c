/// Properties of instances, as a program reads and assigns them.
#pragma once

#include "host/objects/instances.h"
#include "host/objects/values.h"
#include "host/registration/members.h"

namespace pxkhost {

/// Reads and writes a property, in place or through its accessors; needs no libffi. Reading an object takes a
/// reference; assigning one to a field takes a reference and gives back the one of the object replaced. An exception
/// that an accessor raised is left to the caller to throw.
Value getProperty(Instance& instance, const Member& property);
void setProperty(Instance& instance, const Member& property, const Value& value);

}  // namespace pxkhost
