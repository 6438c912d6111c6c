// The plugin's own classes, in their published order.
#include <span>

#include "channels/lut3d.h"
#include "frame/registration_tables.h"
#include "pointops/sepia.h"

namespace pxk {

std::span<REALclassDefinition* const> pluginClasses() {
    static REALclassDefinition* const classes[] = {&PictureSepiaClass, &Lut3DClass};
    return classes;
}

}  // namespace pxk
