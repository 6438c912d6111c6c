#include "pointops/saturation.h"

#include "picture/isa.h"
#include "pointops/map_picture.h"
#include "pointops/saturation_kernels.h"

namespace pxk {

REALpictureStruct* SaturationPicture(REALpictureStruct* self, std::int32_t amount) {
    return mapPicture(self, kernels<SaturationKernels>().saturate, Saturate{static_cast<std::uint32_t>(amount) + 255});
}

}  // namespace pxk
