#include "host/pictures/gd_image.h"

#include <cstdlib>
#include <cstring>
#include <deque>
#include <iterator>
#include <utility>

namespace pxkhost {

namespace {

#ifdef PXK_WITH_GD

void destroyImage(gdImage* image) { gdImageDestroy(image); }

gdImage* allocateTrueColourImage(int width, int height) { return gdImageCreateTrueColor(width, height); }

gdImage* allocatePaletteImage(int width, int height) { return gdImageCreate(width, height); }

// Writing a file may have set these.
void resetFileOptions(gdImage& image) {
    gdImageSaveAlpha(&image, 0);
    gdImageInterlace(&image, 0);
}

#else

template <class Pixel>
void freeRows(Pixel** rows, int height) {
    if (rows == nullptr) return;
    for (int y = 0; y < height; ++y) std::free(rows[y]);
    std::free(rows);
}

void destroyImage(gdImage* image) {
    freeRows(image->pixels, image->sy);
    freeRows(image->tpixels, image->sy);
    std::free(image);
}

/// Gives an image its rows; what cannot be made whole is freed.
template <class Pixel>
gdImage* allocateImage(int width, int height, Pixel**(gdImage::*rows)) {
    auto* const image = static_cast<gdImage*>(std::calloc(1, sizeof(gdImage)));
    if (image == nullptr) return nullptr;
    image->sx = width;
    image->sy = height;
    bool whole =
        (image->*rows = static_cast<Pixel**>(std::calloc(static_cast<std::size_t>(height), sizeof(Pixel*)))) != nullptr;
    for (int y = 0; whole && y < height; ++y)
        whole = ((image->*rows)[y] =
                     static_cast<Pixel*>(std::calloc(static_cast<std::size_t>(width), sizeof(Pixel)))) != nullptr;
    if (whole) return image;
    destroyImage(image);
    return nullptr;
}

gdImage* allocateTrueColourImage(int width, int height) {
    gdImage* const image = allocateImage(width, height, &gdImage::tpixels);
    if (image != nullptr) image->trueColor = 1;
    return image;
}

gdImage* allocatePaletteImage(int width, int height) { return allocateImage(width, height, &gdImage::pixels); }

void resetFileOptions(gdImage&) {}

#endif

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

/// Images that were released, kept for reuse. None with a sanitizer, which would not notice uses after the release.
class Pool {
  public:
    static Pool& instance() {
        static Pool& pool = *new Pool;
        return pool;
    }

    /// An image of this size, black; nil when there is none.
    gdImage* take(int width, int height) {
        // The last one given is the likeliest to be in the processor's cache still.
        for (auto place = images_.rbegin(); place != images_.rend(); ++place) {
            gdImage* const image = *place;
            if (image->sx != width || image->sy != height) continue;
            images_.erase(std::next(place).base());
            bytes_ -= sizeOf(*image);
            for (int y = 0; y < height; ++y)
                std::memset(image->tpixels[y], 0, static_cast<std::size_t>(width) * sizeof(int));
            resetFileOptions(*image);
            return image;
        }
        return nullptr;
    }

    /// Keeps the image, or destroys it when it is too large; the oldest images make room.
    void give(gdImage* image) {
        images_.push_back(image);
        bytes_ += sizeOf(*image);
        while (!images_.empty() && (images_.size() > mostImages || bytes_ > mostBytes)) {
            bytes_ -= sizeOf(*images_.front());
            destroyImage(images_.front());
            images_.pop_front();
        }
    }

  private:
    static std::size_t sizeOf(const gdImage& image) {
        return static_cast<std::size_t>(image.sx) * static_cast<std::size_t>(image.sy) * sizeof(int);
    }

    static constexpr std::size_t mostImages = isSanitized ? 0 : 8;
    static constexpr std::size_t mostBytes = std::size_t{256} << 20;

    std::deque<gdImage*> images_;
    std::size_t bytes_ = 0;
};

bool isPossible(int width, int height) { return width > 0 && height > 0; }

}  // namespace

void GdImageDeleter::operator()(gdImage* image) const { keeps ? Pool::instance().give(image) : destroyImage(image); }

GdImage makeTrueColourImage(int width, int height) {
    if (!isPossible(width, height)) return nullptr;
    gdImage* image = Pool::instance().take(width, height);
    if (image == nullptr) image = allocateTrueColourImage(width, height);
    return {image, GdImageDeleter{.keeps = true}};
}

GdImage makePaletteImage(int width, int height) {
    return GdImage(isPossible(width, height) ? allocatePaletteImage(width, height) : nullptr);
}

#ifdef PXK_WITH_GD

bool drawGdLine(gdImage& image, int x1, int y1, int x2, int y2, int thickness, Argb colour) {
    gdImageSetThickness(&image, thickness);
    gdImageLine(&image, x1, y1, x2, y2, static_cast<int>(wordFromArgb(PixelLayout::gd, colour)));
    gdImageSetThickness(&image, 1);
    return true;
}

#else

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
