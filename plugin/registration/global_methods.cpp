// The global methods, in their published order.
#include <span>

#include "frame/registration_tables.h"

namespace pxk {

std::span<REALmethodDefinition> pluginGlobalMethods() { return {}; }

}  // namespace pxk
