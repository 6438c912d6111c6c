// The C interface: pictures, their pixels and files.
#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "host/c_interface.h"
#ifdef PXK_WITH_GD
#include "files/picture_files.h"
#endif

using namespace pxkhost;

namespace {

constexpr int largestSide = 32767;

const Picture* asPicture(const pxk_object* object) {
    const Object* const given = fromC(object);
    return given != nullptr && given->kind() == Object::Kind::picture ? static_cast<const Picture*>(given) : nullptr;
}

#ifdef PXK_WITH_GD

bool hasTransparency(const Surface& surface) {
    for (int y = 0; y < surface.height; ++y)
        for (int x = 0; x < surface.width; ++x)
            if (surface.row(y)[x] >> 24 != 0) return true;
    return false;
}

Ref<Picture> loadPicture(const Host& host, const char* path) {
    GdImage image(readPictureFile(path));
    const Surface loaded = surfaceOf(*image);
    const bool hasAlpha = hasTransparency(loaded);
    if (host.application() != ApplicationKind::desktop) {
        Ref<Picture> picture = Picture::console(std::move(image));
        picture->setHasAlphaChannel(hasAlpha);
        return picture;
    }
    Ref<Picture> picture = Picture::desktop(loaded.width, loaded.height, host.options().newPictures, hasAlpha);
    if (!picture) throw std::bad_alloc();
    copyPixels(loaded, picture->surface());
    return picture;
}

void savePicture(const Picture& picture, const char* path) {
    if (picture.gd() != nullptr) return writePictureFile(picture.gd(), path);
    const GdImage image = makeTrueColourImage(picture.width(), picture.height());
    if (!image) throw std::bad_alloc();
    copyPixels(picture.surface(), surfaceOf(*image));
    writePictureFile(image.get(), path);
}

#else

Ref<Picture> loadPicture(const Host&, const char*) {
    throw HostError("this build cannot read picture files; it has no libgd");
}

void savePicture(const Picture&, const char*) {
    throw HostError("this build cannot write picture files; it has no libgd");
}

#endif

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

pxk_object* pxk_load_picture(pxk_host* host, const char* path) {
    return guarded<pxk_object*>(host, nullptr,
                                [&] { return toC(loadPicture(required(host, "host").host, &required(path, "path"))); });
}

int pxk_save_picture(pxk_host* host, pxk_object* picture, const char* path) {
    return guarded<int>(host, PXK_FAILED, [&] {
        savePicture(expected<Picture>(picture, "picture"), &required(path, "path"));
        return PXK_OK;
    });
}

}  // extern "C"
