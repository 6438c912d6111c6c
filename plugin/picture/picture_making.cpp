#include "picture/picture_making.h"

#include "picture/draw_picture.h"

namespace pxk {

namespace {

// Takes a picture's mask off, and puts it back when it goes out of scope.
class DetachedMask {
  public:
    explicit DetachedMask(REALpictureStruct* picture) : picture_(picture), mask_(REALGetPictureMask(picture, false)) {
        if (mask_ == nullptr) return;
        setMask_ = reinterpret_cast<SetMask>(REALLoadObjectMethod(picture, "Mask(assigns newMask As Picture)"));
        if (setMask_ != nullptr) setMask_(picture_, nullptr);
    }
    ~DetachedMask() {
        if (setMask_ != nullptr) setMask_(picture_, mask_.get());
    }
    DetachedMask(const DetachedMask&) = delete;
    DetachedMask& operator=(const DetachedMask&) = delete;

  private:
    using SetMask = void (*)(REALpictureStruct*, REALpictureStruct*);

    REALpictureStruct* picture_;
    HostReference<REALpictureStruct> mask_;
    SetMask setMask_ = nullptr;
};

}  // namespace

bool hasAlphaChannelProperty(REALpictureStruct* picture) {
    bool value = false;
    return REALGetPropValueBoolean(picture, "HasAlphaChannel", &value) && value;
}

HostReference<REALpictureStruct> makeOpaquePicture(std::int32_t width, std::int32_t height) {
    constexpr std::int32_t depth = 32;
    return HostReference<REALpictureStruct>(REALNewPicture(width, height, depth));
}

HostReference<REALpictureStruct> makeAlphaPicture(std::int32_t width, std::int32_t height) {
    if (rbversion < 2011.04) return nullptr;
    HostReference<REALpictureStruct> picture(reinterpret_cast<REALpictureStruct*>(REALnewInstance("Picture")));
    if (picture == nullptr) return nullptr;
    using Constructor = void (*)(REALpictureStruct*, std::int32_t, std::int32_t);
    const auto construct = reinterpret_cast<Constructor>(
        REALLoadObjectMethod(picture.get(), "Constructor(width as integer, height as integer)"));
    if (construct == nullptr) return nullptr;
    construct(picture.get(), width, height);
    return picture;
}

HostReference<REALpictureStruct> copyByDrawing(REALpictureStruct* source) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    if (!REALGetPropValueInteger(source, "Width", &width) || !REALGetPropValueInteger(source, "Height", &height) ||
        width < 1 || height < 1) {
        return nullptr;
    }
    if (hasAlphaChannelProperty(source)) {
        HostReference<REALpictureStruct> copy = makeAlphaPicture(width, height);
        if (copy != nullptr) GraphicsDrawPicture(copy.get(), source, 0, 0, width, height, 0, 0, width, height);
        return copy;
    }
    const DetachedMask detached(source);
    HostReference<REALpictureStruct> copy = makeOpaquePicture(width, height);
    if (copy != nullptr) GraphicsDrawPicture(copy.get(), source, 0, 0, width, height, 0, 0, width, height);
    return copy;
}

}  // namespace pxk
