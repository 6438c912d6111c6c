/// The picture files that are inverted, and checks of the results, both with libgd.
#pragma once

#include <filesystem>
#include <string>

#include "bench/workspace.h"

namespace pxkbench {

/// Writes the sample picture, scaled to `size`, to `folder`/source.png, without alpha, and to `folder`/source.jpg, at
/// quality 85 with 4:2:0 chroma subsampling.
void writeSources(PictureSize size, const std::filesystem::path& folder);

/// The mean absolute difference of the channels, in steps of 8 bits, between a result and the inverse of its source.
/// Throws std::runtime_error if a file cannot be read or the sizes differ.
double inversionError(const std::filesystem::path& source, const std::filesystem::path& result);

/// The most that the error may be: 0 between PNG files. JPEG encoders and decoders may each differ in rounding and in
/// how chroma is interpolated; a picture that is not inverted at all is off by far more.
double toleranceFor(const std::filesystem::path& source, const std::filesystem::path& result);

/// The chroma subsampling of a JPEG file, such as "4:2:0", or "-" for any other file.
std::string chromaSubsampling(const std::filesystem::path& file);

}  // namespace pxkbench
