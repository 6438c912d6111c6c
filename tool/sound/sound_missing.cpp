/// Sound files in a build without libsndfile: none can be read.
#include "chain/error.h"
#include "tool/sound/sound.h"

namespace pxk::tool {

std::vector<float> readSound(const std::string& /*path*/) {
    throw chain::WorkError("this pxk cannot read sound files: it was built without libsndfile");
}

}  // namespace pxk::tool
