/// The default values that declarations give their parameters.
#pragma once

#include "host/objects/values.h"
#include "host/registration/declarations.h"

namespace pxkhost {

/// The value that a parameter's default text stands for. Throws HostError when the text does not fit the type.
Value defaultValue(const Parameter& parameter);

}  // namespace pxkhost
