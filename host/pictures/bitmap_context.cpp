#include "host/pictures/bitmap_context.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include "host/objects/errors.h"

namespace pxkhost {

BitmapContext::BitmapContext(int width, int height, const BitmapFormat& format, Fill fill)
    : width_(static_cast<std::size_t>(width)), height_(static_cast<std::size_t>(height)), format_(format) {
    if (format.rowPadding % sizeof(std::uint32_t) != 0)
        throw HostError("a row padding of " + std::to_string(format.rowPadding) +
                        " bytes leaves rows between pixel words; use a multiple of 4");
    bytesPerRow_ = width_ * sizeof(std::uint32_t) + format.rowPadding;
    if (bytesPerRow_ != 0 && height_ > std::numeric_limits<std::size_t>::max() / bytesPerRow_) throw std::bad_alloc();
    void* const memory = fill == Fill::white ? std::malloc(bytesPerRow_ * height_) : std::calloc(height_, bytesPerRow_);
    if (memory == nullptr) throw std::bad_alloc();
    if (fill == Fill::white) std::memset(memory, 0xFF, bytesPerRow_ * height_);
    pixels_.reset(static_cast<std::uint32_t*>(memory));
}

void BitmapContext::Free::operator()(void* memory) const { std::free(memory); }

Surface BitmapContext::surface() const {
    return {.layout = format_.layout,
            .width = static_cast<int>(width_),
            .height = static_cast<int>(height_),
            .rowBytes = bytesPerRow_,
            .pixels = pixels_.get()};
}

}  // namespace pxkhost
