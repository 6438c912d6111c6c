#include "error.h"
#include "sound.h"

namespace pxk::tool {

std::vector<float> readSound(const std::string& /*path*/) {
    throw WorkError("this pxk reads no sound files, since it was built without libsndfile");
}

}  // namespace pxk::tool
