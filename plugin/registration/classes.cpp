// The plugin's own classes, in their published order.
#include <span>

#include "frame/registration_tables.h"

namespace pxk {

std::span<REALclassDefinition* const> pluginClasses() { return {}; }

}  // namespace pxk
