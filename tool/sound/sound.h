/// Sound files.
#pragma once

#include <string>
#include <vector>

namespace pxk::tool {

/// The samples of a WAV, FLAC, OGG, MP3 or other file that libsndfile reads, detected from its content: full scale is
/// -1 to 1, and several channels are mixed to their mean. At least one sample, and no more than fit in a memory block.
/// Throws WorkError.
std::vector<float> readSound(const std::string& path);

}  // namespace pxk::tool
