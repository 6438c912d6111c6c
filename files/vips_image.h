/// Images of libvips, and the steps from one to the pixels of a picture and back.
#pragma once

#include <vips/vips.h>

#include <cstdint>
#include <memory>
#include <span>

#include "files/pxkfiles.h"

namespace pxkfiles {

struct ReleaseObject {
    void operator()(void* object) const { g_object_unref(object); }
};

/// A picture of libvips: a recipe for pixels, which are made when they are asked for.
using Image = std::unique_ptr<VipsImage, ReleaseObject>;

/// Starts libvips: once, without its cache, its printing, and loaders that are not safe with foreign bytes.
/// @throws FileProblem
void startVips();

/// Loads the part of libvips that reads and writes AVIF and HEIC: once.
void loadHeifModule();

/// The pixels of a picture as 0xAARRGGBB, made strip by strip, so that a file that breaks off costs no more memory than
/// it has pixels. Samples are one (grey), two (with alpha), three or four a pixel, of 8 bits, or of 16 that count up to
/// `largestSample` and are rounded.
/// @throws FileProblem or std::bad_alloc
std::unique_ptr<std::uint32_t[]> wordsOf(VipsImage& image, int largestSample);

/// A picture of libvips over words in memory, which must outlive it; without alpha, red, green and blue alone.
Image imageOver(Picture& picture, bool withAlpha);

}  // namespace pxkfiles
