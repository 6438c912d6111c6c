/// The console host's images: libgd's where it is part of the build, else the same structure allocated here.
#pragma once

#include <gd.h>

#include <memory>

#include "host/pictures/surface.h"

namespace pxkhost {

/// Destroys an image, or keeps it for reuse when it came from makeTrueColourImage().
struct GdImageDeleter {
    bool keeps = false;
    void operator()(gdImage* image) const;
};
using GdImage = std::unique_ptr<gdImage, GdImageDeleter>;

/// An opaque black true-colour image; empty when it cannot be made. An image of the same size that was released
/// recently is cleared and reused, since allocating thousands of rows costs more than clearing them.
GdImage makeTrueColourImage(int width, int height);

/// A palette image, all pixels of index 0, black.
GdImage makePaletteImage(int width, int height);

/// The pixels of a true-colour image; an empty surface for a palette image.
Surface surfaceOf(const gdImage& image);

/// Draws a line of the given thickness with libgd. Without libgd nothing is drawn and the result is false.
bool drawGdLine(gdImage& image, int x1, int y1, int x2, int y2, int thickness, Argb colour);

}  // namespace pxkhost
