#include "host/pictures/picture.h"

#include <algorithm>
#include <new>
#include <utility>

#include "host/objects/accounting.h"
#include "host/objects/errors.h"

namespace pxkhost {

namespace {

constexpr std::int32_t drawnOnlyTypeCode = 3;

}  // namespace

Picture::Picture(Storage storage, std::int32_t typeCode, bool hasAlpha)
    : Object(ownKind), typeCode_(typeCode), hasAlpha_(hasAlpha) {
    publish(header_);
    takeStorage(std::move(storage));
}

void Picture::takeStorage(Storage storage) {
    storage_ = std::move(storage);
    if (const gdImage* image = gd())
        surface_ = surfaceOf(*image);
    else if (const BitmapContext* context = bitmap())
        surface_ = context->surface();
}

Ref<Picture> Picture::console(int width, int height) {
    GdImage image = makeTrueColourImage(width, height);
    return image ? console(std::move(image)) : nullptr;
}

Ref<Picture> Picture::console(GdImage image) {
    return Ref<Picture>::adopt(new Picture(std::move(image), pxk::gdImageType, false));
}

Ref<Picture> Picture::palette(int width, int height) {
    GdImage image = makePaletteImage(width, height);
    return image ? console(std::move(image)) : nullptr;
}

Ref<Picture> Picture::desktop(int width, int height, const BitmapFormat& format, bool hasAlpha) {
    if (width < 1 || height < 1) return nullptr;
    const auto fill = hasAlpha ? BitmapContext::Fill::transparent : BitmapContext::Fill::white;
    try {
        return Ref<Picture>::adopt(
            new Picture(BitmapContext(width, height, format, fill), pxk::bitmapContextType, hasAlpha));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Ref<Picture> Picture::drawnOnly(int width, int height, bool hasAlpha, const BitmapFormat& format) {
    Ref<Picture> picture = desktop(width, height, format, hasAlpha);
    if (picture) {
        picture->refuseLocks(true);
        picture->setTypeCode(drawnOnlyTypeCode);
    }
    return picture;
}

Ref<Picture> Picture::unconstructed() {
    return Ref<Picture>::adopt(new Picture(std::monostate{}, pxk::bitmapContextType, true));
}

bool Picture::canBeConstructed(int width, int height) const {
    return std::holds_alternative<std::monostate>(storage_) && width >= 1 && height >= 1;
}

bool Picture::constructConsole(int width, int height) {
    if (!canBeConstructed(width, height)) return false;
    GdImage image = makeTrueColourImage(width, height);
    if (!image) return false;
    typeCode_ = pxk::gdImageType;
    takeStorage(std::move(image));
    fill(0);
    return true;
}

bool Picture::constructDesktop(int width, int height, const BitmapFormat& format) {
    if (!canBeConstructed(width, height)) return false;
    try {
        takeStorage(BitmapContext(width, height, format, BitmapContext::Fill::transparent));
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

gdImage* Picture::gd() const {
    const auto* const image = std::get_if<GdImage>(&storage_);
    return image != nullptr ? image->get() : nullptr;
}

const BitmapContext* Picture::bitmap() const { return std::get_if<BitmapContext>(&storage_); }

Argb Picture::pixel(int x, int y) const {
    if (!surface_.contains(x, y))
        throw HostError("pixel (" + std::to_string(x) + ", " + std::to_string(y) + ") lies outside " + describe());
    return surface_.get(x, y);
}

void Picture::setPixel(int x, int y, Argb pixel) {
    if (!surface_.contains(x, y))
        throw HostError("pixel (" + std::to_string(x) + ", " + std::to_string(y) + ") lies outside " + describe());
    surface_.set(x, y, pixel);
}

void Picture::fill(Argb pixel) {
    const std::uint32_t word = wordFromArgb(surface_.layout, pixel);
    for (int y = 0; y < height(); ++y) std::fill_n(surface_.row(y), width(), word);
}

std::vector<Argb> Picture::pixels() const {
    std::vector<Argb> result;
    result.reserve(static_cast<std::size_t>(width()) * static_cast<std::size_t>(height()));
    for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x) result.push_back(surface_.get(x, y));
    return result;
}

void Picture::setPixels(std::span<const Argb> pixels) {
    const std::size_t wanted = static_cast<std::size_t>(width()) * static_cast<std::size_t>(height());
    if (pixels.size() != wanted)
        throw HostError(describe() + " takes " + std::to_string(wanted) + " pixels, not " +
                        std::to_string(pixels.size()));
    auto next = pixels.begin();
    for (int y = 0; y < height(); ++y)
        for (int x = 0; x < width(); ++x) surface_.set(x, y, *next++);
}

bool Picture::lock(pxk::REALpictureDescription& description, std::int32_t wantedType, const LockRules& rules) {
    void* image = nullptr;
    if (!locksRefused_ && wantedType == pxk::gdImageType) image = gd();
    if (!locksRefused_ && wantedType == pxk::bitmapContextType) image = std::get_if<BitmapContext>(&storage_);
    if (image == nullptr) {
        ++timesRefused_;
        if (rules.refusalsAreUnlocked) ++refusalsToUndo_;
        return false;
    }
    const gdImage* const palette = gd();
    description = {.type = wantedType,
                   .platformImage = image,
                   .width = palette != nullptr ? palette->sx : width(),
                   .height = palette != nullptr ? palette->sy : height(),
                   .forTheHost = {}};
    ++locks_;
    ++timesLocked_;
    return true;
}

void Picture::unlock(const LockRules& rules) {
    if (refusalsToUndo_ > 0)
        --refusalsToUndo_;
    else if (locks_ > 0)
        --locks_;
    else if (!rules.missingLocksAreUnlocked)
        Accounting::instance().addProblem(describe() + " was unlocked without a lock");
}

void Picture::forgiveLocks() {
    locks_ = 0;
    refusalsToUndo_ = 0;
}

std::vector<std::string> Picture::openLocks() const {
    std::vector<std::string> lines;
    if (locks_ > 0) lines.push_back(describe() + " was left locked " + std::to_string(locks_) + " times");
    if (refusalsToUndo_ > 0)
        lines.push_back(describe() + ": a refused lock was not followed by the unlock that hosts before 2012.0 need");
    return lines;
}

void Picture::dispose() {
    for (std::string& line : openLocks()) Accounting::instance().addProblem(std::move(line));
    // The surface keeps its size, by which the picture is still named when it is released once too often.
    storage_ = std::monostate{};
    mask_ = nullptr;
}

std::string Picture::details() const { return std::to_string(width()) + " x " + std::to_string(height()); }

bool samePixels(const Picture& a, const Picture& b) {
    return a.width() == b.width() && a.height() == b.height() && a.pixels() == b.pixels();
}

}  // namespace pxkhost
