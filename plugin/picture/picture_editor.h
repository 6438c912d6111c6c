/// A host picture opened as 32-bit pixels.
///
/// The host keeps a picture's pixels in an image of its platform: a bitmap context in desktop applications, a libgd
/// true-colour image in console and web applications. The editor locks that image in place and tells where its rows are
/// and which layout they have; nothing is converted. picture/pixel_families.h defines the layouts.
#pragma once

#include <cstdint>

#include "frame/host_services.h"

struct PixMap;

namespace pxk {

/// What kind of application the plugin runs in: set once, when the host or the first picture shows it, and
/// never cleared.
extern bool IsDesktop;
extern bool IsConsole;

/// The `format` of a libgd true-colour image. Formats 1 to 6 are the alpha-info codes of bitmap contexts.
inline constexpr std::int32_t gdFormat = 8;

/// The largest side of a picture without alpha channel.
inline constexpr std::int32_t largestSide = 32767;

/// Whether a picture without alpha channel can be that wide or high.
constexpr bool isPictureSide(std::int64_t side) { return side >= 1 && side <= largestSide; }

/// An open picture holds one reference to the host picture and, usually, a lock on its description; closing gives both
/// back, on every path. Where the host cannot add references, a picture that the plugin did not make is open without
/// one. No operation raises: a picture that cannot be opened is a false or nil result.
class PictureEditor {
  public:
    PictureEditor() = default;
    PictureEditor(const PictureEditor&) = delete;
    PictureEditor& operator=(const PictureEditor&) = delete;
    virtual ~PictureEditor();

    /// Closes what was open, then opens `picture`. `allowCopy`: the caller only reads, and accepts a private copy where
    /// the picture cannot be locked. `writable`: the caller changes the pixels, so the host's cached rendering is
    /// cleared on closing and pictures of a type that cannot be written are refused.
    bool GetPictureEditor(REALpictureStruct* pictureToOpen, bool mayCopy, bool willWrite);

    /// Closes the editor and returns its picture as a reference for the caller, or nil when it holds none or, in a host
    /// that cannot add references, has none to pass on.
    REALpictureStruct* RenderPictureWriter();

    /// Puts the row cursor at the start of row `n`. A row at or beyond the height is row 0, so that a cursor stepped
    /// past the end never leaves the picture; `n` is not negative.
    void moveToRow(std::int32_t n) {
        row = n;
        column = 0;
        rowPointer = rowAt(n < height ? n : 0);
    }

    /// The start of row `n`, 0 to `height` - 1. Rows of a libgd image are not contiguous.
    std::uint32_t* rowAt(std::int32_t n) const {
        if (format == gdFormat) return reinterpret_cast<std::uint32_t*>(gdRows[n]);
        return reinterpret_cast<std::uint32_t*>(reinterpret_cast<unsigned char*>(pixels) +
                                                static_cast<std::ptrdiff_t>(n) * rowBytes);
    }

    std::int32_t rowBytes = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bytesPerPixel = 0;
    std::int32_t format = 0;
    std::uint32_t* rowPointer = nullptr;
    REALpictureDescription description{};
    /// Pixels of the editor's own, made into a picture by `RenderPictureWriter` when no host picture is held.
    void* ownedBuffer = nullptr;
    std::uint32_t* pixels = nullptr;
    std::int32_t column = 0;
    std::int32_t row = 0;
    REALpictureStruct* picture = nullptr;
    PixMap** pixMap = nullptr;
    int** gdRows = nullptr;
    bool hasAlphaChannel = false;
    bool contextAlpha = false;
    bool allowCopy = false;
    bool writable = false;
    bool descriptionLocked = false;

  protected:
    /// Takes over the reference that the open picture was made with where the editor could not add one of its own;
    /// otherwise releases it.
    void adopt(HostReference<REALpictureStruct> maker);

  private:
    bool GetPictureEditorInternal(REALpictureStruct* pictureToOpen, bool mayCopy, bool willWrite, int level);
    bool GetPictureEditorCGBitmapContext(REALpictureStruct* pictureToOpen, bool alpha);
    bool GetPictureEditorGDImagePtr(REALpictureStruct* pictureToOpen);
    void hold(REALpictureStruct* opened);
    void close();

    HostReference<REALpictureStruct> reference_;
};

/// A picture that a member receives. Opened with `GetPictureEditor(picture, true, false)`.
class PictureReader : public PictureEditor {
  public:
    ~PictureReader() override;

    /// Opens a picture to read from, in place or as a private copy.
    bool open(REALpictureStruct* pictureToRead) { return GetPictureEditor(pictureToRead, true, false); }
};

/// A picture that a member builds. Its pixels start as the host makes them.
class PictureWriter : public PictureEditor {
  public:
    ~PictureWriter() override;

    /// Makes an opaque host picture, each side 1 to 32767, and opens it.
    bool NewPictureWriter(std::int32_t newWidth, std::int32_t newHeight);

    /// Makes a host picture of the reader's size, with an alpha channel when the reader has one, and opens it.
    bool NewPictureWriter(const PictureReader& reader);

  private:
    bool openNew(HostReference<REALpictureStruct> newPicture);
};

}  // namespace pxk
