/// The host's pictures.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "host/objects/object.h"
#include "host/pictures/bitmap_context.h"
#include "host/pictures/file_metadata.h"
#include "host/pictures/gd_image.h"

namespace pxkhost {

/// Which unlocks a host expects besides those of the locks that it granted.
struct LockRules {
    bool refusalsAreUnlocked = false;      ///< a refused lock, too, must be followed by an unlock
    bool missingLocksAreUnlocked = false;  ///< an unlock without any lock is no mistake
};

class Picture final : public Object {
  public:
    /// A console picture: a true-colour libgd image, opaque black. Empty when it cannot be made.
    static Ref<Picture> console(int width, int height);

    /// A console picture that takes over an image, which must not be nil.
    static Ref<Picture> console(GdImage image);

    /// A console picture with a palette instead of true colour, which plugins refuse to open.
    static Ref<Picture> palette(int width, int height);

    /// A desktop picture: a bitmap context, opaque white, or transparent with an alpha channel.
    static Ref<Picture> desktop(int width, int height, const BitmapFormat& format = {}, bool hasAlpha = false);

    /// A picture that is only ever drawn, such as a vector picture: it cannot be locked, it has a size and it can be
    /// the source of DrawPicture. Its pixels are kept in `format`.
    static Ref<Picture> drawnOnly(int width, int height, bool hasAlpha = false, const BitmapFormat& format = {});

    /// An instance of the class "Picture" whose constructor has not run: no pixels, 0 x 0.
    static Ref<Picture> unconstructed();

    /// What the constructor does on consoles and desktops: gives a picture without pixels an alpha channel and
    /// transparent pixels. False when it has pixels already, a size is below 1, or there is no memory.
    bool constructConsole(int width, int height);
    bool constructDesktop(int width, int height, const BitmapFormat& format);

    int width() const { return surface_.width; }
    int height() const { return surface_.height; }
    PixelLayout layout() const { return surface_.layout; }

    /// The pixels, including those of a drawn-only picture. Empty (no rows) for palette and unconstructed pictures.
    const Surface& surface() const { return surface_; }
    std::uint32_t* row(int y) const { return surface_.row(y); }

    /// A pixel as 0xAARRGGBB. Throws HostError outside the picture.
    Argb pixel(int x, int y) const;
    void setPixel(int x, int y, Argb pixel);
    void fill(Argb pixel);

    /// All pixels in row-major order.
    std::vector<Argb> pixels() const;
    /// Throws HostError unless there are width * height pixels.
    void setPixels(std::span<const Argb> pixels);

    /// The image of a console picture, nil for others.
    gdImage* gd() const;

    /// The bitmap of a desktop or drawn-only picture, nil for others.
    const BitmapContext* bitmap() const;

    bool hasAlphaChannel() const { return hasAlpha_; }
    void setHasAlphaChannel(bool hasAlpha) { hasAlpha_ = hasAlpha; }

    /// The mask: white where the picture is transparent. May be nil.
    const Ref<Picture>& mask() const { return mask_; }
    void setMask(Ref<Picture> mask) { mask_ = std::move(mask); }

    /// The metadata of the file that the picture was read from, or that was copied from another picture; may be nil.
    const std::shared_ptr<const FileMetadata>& metadata() const { return metadata_; }
    void setMetadata(std::shared_ptr<const FileMetadata> metadata) { metadata_ = std::move(metadata); }

    /// What PluginPictureGetType answers: 8 for bitmaps, 10 for libgd images, 3 for drawn-only pictures, unless set.
    std::int32_t typeCode() const { return typeCode_; }
    void setTypeCode(std::int32_t code) { typeCode_ = code; }

    /// What the properties "Width" and "Height" answer, when not the size of the pixels.
    void pretendSize(int width, int height) { pretendedSize_ = {width, height}; }
    int reportedWidth() const { return pretendedSize_ ? pretendedSize_->first : width(); }
    int reportedHeight() const { return pretendedSize_ ? pretendedSize_->second : height(); }

    /// Makes every lock fail, as it always does for drawn-only pictures.
    void refuseLocks(bool refuse) { locksRefused_ = refuse; }

    /// Fills the description when the picture can give an image of the wanted type (8 or 10).
    bool lock(pxk::REALpictureDescription& description, std::int32_t wantedType, const LockRules& rules);
    void unlock(const LockRules& rules);

    /// Description locks held now, granted so far, and refused so far.
    int locks() const { return locks_; }
    int timesLocked() const { return timesLocked_; }
    int timesRefused() const { return timesRefused_; }

    /// Forgets the locks held, for tests that leave one behind on purpose.
    void forgiveLocks();

    std::vector<std::string> openLocks() const override;

    void clearCache() { ++cacheClears_; }
    int cacheClears() const { return cacheClears_; }

    REALpictureStruct* handle() const { return static_cast<REALpictureStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::picture;

  private:
    using Storage = std::variant<std::monostate, GdImage, BitmapContext>;

    Picture(Storage storage, std::int32_t typeCode, bool hasAlpha);
    void takeStorage(Storage storage);
    bool canBeConstructed(int width, int height) const;
    void dispose() override;
    std::string details() const override;

    pxk::REALobjectHeader header_{};
    Storage storage_;
    Surface surface_;
    Ref<Picture> mask_;
    std::shared_ptr<const FileMetadata> metadata_;
    std::int32_t typeCode_;
    bool hasAlpha_;
    bool locksRefused_ = false;
    int locks_ = 0;
    int refusalsToUndo_ = 0;
    int timesLocked_ = 0;
    int timesRefused_ = 0;
    int cacheClears_ = 0;
    std::optional<std::pair<int, int>> pretendedSize_;
};

/// True when both pictures have the same size and the same pixels, whatever their layouts.
bool samePixels(const Picture& a, const Picture& b);

}  // namespace pxkhost
