#include "host/gd_image.h"

#include <algorithm>

#ifndef PXK_WITH_GD
#include <cstdlib>
#endif

namespace pxkhost {

#ifdef PXK_WITH_GD

void GdImageDeleter::operator()(gdImage* image) const { gdImageDestroy(image); }

// libgd writes a warning to stderr for sizes below 1.
GdImage makeTrueColourImage(int width, int height) {
    return GdImage(width < 1 || height < 1 ? nullptr : gdImageCreateTrueColor(width, height));
}

GdImage makePaletteImage(int width, int height) {
    return GdImage(width < 1 || height < 1 ? nullptr : gdImageCreate(width, height));
}

bool drawGdLine(gdImage& image, int x1, int y1, int x2, int y2, int thickness, Argb colour) {
    gdImageSetThickness(&image, thickness);
    gdImageLine(&image, x1, y1, x2, y2, static_cast<int>(wordFromArgb(PixelLayout::gd, colour)));
    return true;
}

#else

namespace {

template <class Pixel>
void freeRows(Pixel** rows, int height) {
    if (rows == nullptr) return;
    for (int y = 0; y < height; ++y) std::free(rows[y]);
    std::free(rows);
}

template <class Pixel>
Pixel** makeRows(int width, int height) {
    auto** const rows = static_cast<Pixel**>(std::calloc(static_cast<std::size_t>(height), sizeof(Pixel*)));
    for (int y = 0; rows != nullptr && y < height; ++y) {
        rows[y] = static_cast<Pixel*>(std::calloc(static_cast<std::size_t>(width), sizeof(Pixel)));
        if (rows[y] == nullptr) {
            freeRows(rows, height);
            return nullptr;
        }
    }
    return rows;
}

GdImage makeImage(int width, int height) {
    if (width < 1 || height < 1) return nullptr;
    auto* const image = static_cast<gdImage*>(std::calloc(1, sizeof(gdImage)));
    if (image != nullptr) {
        image->sx = width;
        image->sy = height;
    }
    return GdImage(image);
}

}  // namespace

void GdImageDeleter::operator()(gdImage* image) const {
    freeRows(image->pixels, image->sy);
    freeRows(image->tpixels, image->sy);
    std::free(image);
}

GdImage makeTrueColourImage(int width, int height) {
    GdImage image = makeImage(width, height);
    if (!image) return nullptr;
    image->trueColor = 1;
    image->tpixels = makeRows<int>(width, height);
    return image->tpixels != nullptr ? std::move(image) : nullptr;
}

GdImage makePaletteImage(int width, int height) {
    GdImage image = makeImage(width, height);
    if (!image) return nullptr;
    image->pixels = makeRows<unsigned char>(width, height);
    return image->pixels != nullptr ? std::move(image) : nullptr;
}

bool drawGdLine(gdImage&, int, int, int, int, int, Argb) { return false; }

#endif

Surface surfaceOf(const gdImage& image) {
    if (image.trueColor == 0 || image.tpixels == nullptr) return {};
    // libgd's rows are of int, the same words.
    return {.layout = PixelLayout::gd,
            .width = image.sx,
            .height = image.sy,
            .rows = reinterpret_cast<std::uint32_t* const*>(image.tpixels)};
}

}  // namespace pxkhost
