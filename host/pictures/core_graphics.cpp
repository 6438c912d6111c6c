// The six bitmap-context getters, for plugins that look them up in the running process.
#include <cstddef>
#include <cstdint>

#include "host/pictures/bitmap_context.h"

using pxkhost::BitmapContext;

extern "C" {

[[gnu::visibility("default")]] void* CGBitmapContextGetData(const BitmapContext* context) { return context->data(); }

[[gnu::visibility("default")]] std::size_t CGBitmapContextGetWidth(const BitmapContext* context) {
    return context->width();
}

[[gnu::visibility("default")]] std::size_t CGBitmapContextGetHeight(const BitmapContext* context) {
    return context->height();
}

[[gnu::visibility("default")]] std::size_t CGBitmapContextGetBytesPerRow(const BitmapContext* context) {
    return context->bytesPerRow();
}

[[gnu::visibility("default")]] std::size_t CGBitmapContextGetBitsPerPixel(const BitmapContext* context) {
    return context->bitsPerPixel();
}

[[gnu::visibility("default")]] std::uint32_t CGBitmapContextGetAlphaInfo(const BitmapContext* context) {
    return context->alphaInfo();
}

}  // extern "C"
