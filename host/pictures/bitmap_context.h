/// The desktop host's bitmaps, read by plugins through the Core Graphics getters that this library exports.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "host/pictures/surface.h"

namespace pxkhost {

/// What a new bitmap is like.
struct BitmapFormat {
    PixelLayout layout = PixelLayout::premultipliedFirst;
    /// Padding bytes after the pixels of each row, a multiple of 4.
    std::size_t rowPadding = 16;
    /// The depth that the context reports. The memory holds 32-bit pixels whatever this says.
    std::size_t bitsPerPixel = 32;
};

class BitmapContext {
  public:
    enum class Fill { white, transparent };

    /// Throws HostError for a padding that is no multiple of 4, std::bad_alloc when there is no memory.
    BitmapContext(int width, int height, const BitmapFormat& format, Fill fill);

    void* data() const { return pixels_.get(); }
    std::size_t width() const { return width_; }
    std::size_t height() const { return height_; }
    std::size_t bytesPerRow() const { return bytesPerRow_; }
    std::size_t bitsPerPixel() const { return format_.bitsPerPixel; }
    std::uint32_t alphaInfo() const { return static_cast<std::uint32_t>(format_.layout); }
    Surface surface() const;

  private:
    struct Free {
        void operator()(void* memory) const;
    };

    std::size_t width_;
    std::size_t height_;
    BitmapFormat format_;
    std::size_t bytesPerRow_;
    std::unique_ptr<std::uint32_t, Free> pixels_;
};

}  // namespace pxkhost
