#include "picture/draw_picture.h"

#include <gd.h>

#include <cstring>

#include "picture/description_lock.h"

namespace pxk {

namespace {

using DrawPicture = void (*)(REALgraphicsStruct*, REALpictureStruct*, std::int32_t x, std::int32_t y, std::int32_t w,
                             std::int32_t h, std::int32_t sx, std::int32_t sy, std::int32_t sw, std::int32_t sh);

bool isTrueColor(const gdImage* image) {
    return image != nullptr && image->pixels == nullptr && image->tpixels != nullptr;
}

// The whole image, whatever the rectangle.
void copyRows(const gdImage* dest, const gdImage* src) {
    if (!isTrueColor(dest) || !isTrueColor(src) || dest->sx != src->sx || dest->sy != src->sy) return;
    for (int y = 0; y < src->sy; ++y) {
        std::memcpy(dest->tpixels[y], src->tpixels[y], static_cast<std::size_t>(src->sx) * sizeof(int));
    }
}

void copyDirectly(REALpictureStruct* dest, REALpictureStruct* src) {
    REALpictureDescription srcDescription{};
    const DescriptionLock srcLock(src, srcDescription, gdImageType);
    if (!srcLock.locked()) return;
    REALpictureDescription destDescription{};
    const DescriptionLock destLock(dest, destDescription, gdImageType);
    if (!destLock.locked()) return;
    copyRows(static_cast<const gdImage*>(destDescription.platformImage),
             static_cast<const gdImage*>(srcDescription.platformImage));
}

}  // namespace

void GraphicsDrawPicture(REALpictureStruct* dest, REALpictureStruct* src, int /*x*/, int /*y*/, int w, int h,
                         int /*sx*/, int /*sy*/, int sw, int sh) {
    const HostReference<REALgraphicsStruct> graphics(REALGetPictureGraphics(dest));
    if (graphics != nullptr && src != nullptr) {
        const auto drawPicture = reinterpret_cast<DrawPicture>(REALLoadObjectMethod(
            graphics.get(),
            "DrawPicture(Image as Picture, x as Integer, y as Integer, w as Integer, h as Integer, sx as Integer = 0, "
            "sy as Integer = 0, sw as Integer = -10000, sh as Integer = -10000)"));
        if (drawPicture != nullptr) {
            drawPicture(graphics.get(), src, 0, 0, w, h, 0, 0, sw, sh);
            return;
        }
    }
    if (dest != nullptr && src != nullptr && w == sw && h == sh) copyDirectly(dest, src);
}

}  // namespace pxk
