// The C interface: pictures and their pixels.
#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "host/c_interface.h"

using namespace pxkhost;

namespace {

constexpr int largestSide = 32767;

const Picture* asPicture(const pxk_object* object) {
    const Object* const given = fromC(object);
    return given != nullptr && given->kind() == Object::Kind::picture ? static_cast<const Picture*>(given) : nullptr;
}

}  // namespace

extern "C" {

pxk_object* pxk_new_picture(pxk_host* host, int32_t width, int32_t height) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        const Host& open = required(host, "host").host;
        if (width < 1 || height < 1 || width > largestSide || height > largestSide)
            throw HostError("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                            " pixels cannot be; each side is 1 to " + std::to_string(largestSide));
        Ref<Picture> picture = open.newPicture(width, height);
        if (!picture) throw std::bad_alloc();
        return toC(std::move(picture));
    });
}

int32_t pxk_picture_width(const pxk_object* picture) {
    const Picture* const given = asPicture(picture);
    return given != nullptr ? given->width() : 0;
}

int32_t pxk_picture_height(const pxk_object* picture) {
    const Picture* const given = asPicture(picture);
    return given != nullptr ? given->height() : 0;
}

int pxk_get_pixels(pxk_host* host, pxk_object* picture, uint32_t* pixels) {
    return guarded<int>(host, PXK_FAILED, [&] {
        std::ranges::copy(expected<Picture>(picture, "picture").pixels(), &required(pixels, "pixels"));
        return PXK_OK;
    });
}

int pxk_set_pixels(pxk_host* host, pxk_object* picture, const uint32_t* pixels) {
    return guarded<int>(host, PXK_FAILED, [&] {
        auto& target = expected<Picture>(picture, "picture");
        const auto count = static_cast<std::size_t>(target.width()) * static_cast<std::size_t>(target.height());
        target.setPixels({&required(pixels, "pixels"), count});
        return PXK_OK;
    });
}

}  // extern "C"
