#include "picture/picture_editor.h"

#include <gd.h>

#include <utility>

#include "frame/platform_functions.h"
#include "picture/description_lock.h"
#include "picture/legacy_pixmap.h"
#include "picture/picture_making.h"

namespace pxk {

bool IsDesktop = false;
bool IsConsole = false;

namespace {

// Asked again at every opening until the host knows one of the classes.
void findKindOfApplication() {
    if (IsDesktop || IsConsole) return;
    const bool desktop = REALGetClassRef("Application") != nullptr;
    const bool web = REALGetClassRef("WebApplication") != nullptr;
    const bool console = REALGetClassRef("ConsoleApplication") != nullptr;
    IsDesktop = desktop;
    IsConsole = !desktop && (web || console);
}

bool canBeWritten(REALpictureStruct* picture) {
    const std::optional<std::int32_t> type = REALGetPictureType(picture);
    return !type || (*type != 0 && *type != 1 && *type != 3);
}

struct BitmapContext {
    void* data = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;
    std::size_t bitsPerPixel = 0;
    std::uint32_t alphaInfo = 0;

    // False where one of the platform's getters is missing.
    bool read(void* context) {
        static constinit PlatformFunction<void*(void*)> getData("CGBitmapContextGetData");
        static constinit PlatformFunction<std::size_t(void*)> getWidth("CGBitmapContextGetWidth");
        static constinit PlatformFunction<std::size_t(void*)> getHeight("CGBitmapContextGetHeight");
        static constinit PlatformFunction<std::size_t(void*)> getBytesPerRow("CGBitmapContextGetBytesPerRow");
        static constinit PlatformFunction<std::size_t(void*)> getBitsPerPixel("CGBitmapContextGetBitsPerPixel");
        static constinit PlatformFunction<std::uint32_t(void*)> getAlphaInfo("CGBitmapContextGetAlphaInfo");
        if (!getData.find() || !getWidth.find() || !getHeight.find() || !getBytesPerRow.find() ||
            !getBitsPerPixel.find() || !getAlphaInfo.find()) {
            return false;
        }
        data = getData(context);
        width = getWidth(context);
        height = getHeight(context);
        bytesPerRow = getBytesPerRow(context);
        bitsPerPixel = getBitsPerPixel(context);
        alphaInfo = getAlphaInfo(context) & 7;
        return true;
    }
};

}  // namespace

PictureEditor::~PictureEditor() { close(); }
PictureReader::~PictureReader() = default;
PictureWriter::~PictureWriter() = default;

void PictureEditor::close() {
    if (pixMap != nullptr) UnlockPixels(std::exchange(pixMap, nullptr));
    // Even when a service throws, the reference is released last, and nothing twice.
    const HostReference<REALpictureStruct> held = std::move(reference_);
    REALpictureStruct* const closed = std::exchange(picture, nullptr);
    const bool locked = std::exchange(descriptionLocked, false);
    if (closed == nullptr) return;
    if (locked) REALUnlockPictureDescription(closed);
    if (writable) REALPictureClearCache(closed);
}

void PictureEditor::hold(REALpictureStruct* opened) {
    reference_ = anotherReference(opened);
    picture = opened;
    descriptionLocked = true;
    bytesPerPixel = 4;
    column = row = 0;
}

void PictureEditor::adopt(HostReference<REALpictureStruct> maker) {
    if (reference_ == nullptr) reference_ = std::move(maker);
}

bool PictureEditor::GetPictureEditor(REALpictureStruct* pictureToOpen, bool mayCopy, bool willWrite) {
    close();
    if (pictureToOpen == nullptr) return false;
    writable = willWrite;
    allowCopy = mayCopy;
    findKindOfApplication();
    if (willWrite && !canBeWritten(pictureToOpen)) return false;
    return GetPictureEditorInternal(pictureToOpen, mayCopy, willWrite, 1);
}

bool PictureEditor::GetPictureEditorInternal(REALpictureStruct* pictureToOpen, bool mayCopy, bool willWrite,
                                             int level) {
    hasAlphaChannel = hasAlphaChannelProperty(pictureToOpen);
    if (!IsConsole && GetPictureEditorCGBitmapContext(pictureToOpen, hasAlphaChannel)) return true;
    if (!IsDesktop && GetPictureEditorGDImagePtr(pictureToOpen)) return true;
    if (level != 1 || IsConsole || !mayCopy || willWrite) return false;
    HostReference<REALpictureStruct> copy = copyByDrawing(pictureToOpen);
    if (copy == nullptr || !GetPictureEditorInternal(copy.get(), mayCopy, false, 2)) return false;
    adopt(std::move(copy));
    return true;
}

bool PictureEditor::GetPictureEditorCGBitmapContext(REALpictureStruct* pictureToOpen, bool alpha) {
    DescriptionLock lock(pictureToOpen, description, bitmapContextType);
    if (!lock.locked()) return false;
    IsDesktop = true;
    BitmapContext context;
    if (description.type != bitmapContextType || description.platformImage == nullptr ||
        !context.read(description.platformImage)) {
        return false;
    }
    if (context.alphaInfo < 1 || context.alphaInfo > 6) {
        // A context without a usable alpha byte stays locked. This is deliberate, kept for compatibility.
        lock.keep();
        return false;
    }
    if (context.bitsPerPixel != 32 || context.data == nullptr) return false;
    hold(pictureToOpen);
    lock.keep();
    format = static_cast<std::int32_t>(context.alphaInfo);
    rowBytes = static_cast<std::int32_t>(context.bytesPerRow);
    contextAlpha = alpha;
    pixels = rowPointer = static_cast<std::uint32_t*>(context.data);
    width = static_cast<std::int32_t>(context.width);
    height = static_cast<std::int32_t>(context.height);
    return true;
}

bool PictureEditor::GetPictureEditorGDImagePtr(REALpictureStruct* pictureToOpen) {
    DescriptionLock lock(pictureToOpen, description, gdImageType);
    if (!lock.locked()) return false;
    IsConsole = true;
    const auto* image = static_cast<const gdImage*>(description.platformImage);
    if (description.type != gdImageType || image == nullptr || image->pixels != nullptr || image->tpixels == nullptr ||
        image->trueColor == 0) {
        return false;
    }
    hold(pictureToOpen);
    lock.keep();
    format = gdFormat;
    width = description.width;
    height = description.height;
    // Unsigned, since a host may describe any width.
    rowBytes = static_cast<std::int32_t>(4U * static_cast<std::uint32_t>(width));
    gdRows = image->tpixels;
    pixels = rowPointer = reinterpret_cast<std::uint32_t*>(gdRows[0]);
    return true;
}

REALpictureStruct* PictureEditor::RenderPictureWriter() {
    HostReference<REALpictureStruct> rendered;
    if (picture != nullptr) {
        rendered = anotherReference(picture);
        REALPictureClearCache(picture);
        if (rendered == nullptr) rendered = std::move(reference_);
    } else if (ownedBuffer != nullptr) {
        constexpr std::int32_t pixelType = 1;
        rendered.reset(REALBuildPictureFromBuffer(width, height, pixelType, ownedBuffer, rowBytes));
    }
    close();
    return rendered.release();
}

bool PictureWriter::openNew(HostReference<REALpictureStruct> newPicture) {
    if (newPicture == nullptr || !GetPictureEditor(newPicture.get(), false, true)) return false;
    adopt(std::move(newPicture));
    return true;
}

bool PictureWriter::NewPictureWriter(std::int32_t newWidth, std::int32_t newHeight) {
    if (!isPictureSide(newWidth) || !isPictureSide(newHeight)) return false;
    return openNew(makeOpaquePicture(newWidth, newHeight));
}

bool PictureWriter::NewPictureWriter(const PictureReader& reader) {
    if (!reader.hasAlphaChannel) return NewPictureWriter(reader.width, reader.height);
    if (reader.width < 1 || reader.height < 1) return false;
    return openNew(makeAlphaPicture(reader.width, reader.height));
}

}  // namespace pxk
