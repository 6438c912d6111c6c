#include "analysis/scrolling.h"

#include <cstring>
#include <numeric>

#include "frame/allocation.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

constexpr int fillByte = 255;

// Rows are always reached one by one: those of a libgd image lie anywhere.
struct ScrolledPicture : PictureEditor {
    bool open(REALpictureStruct* pictureToScroll) { return GetPictureEditor(pictureToScroll, true, true); }

    std::size_t bytesPerRow() const { return static_cast<std::size_t>(rowBytes); }

    void copyRow(std::int32_t from, std::int32_t to) { std::memcpy(rowAt(to), rowAt(from), bytesPerRow()); }
    void fillRows(std::int32_t begin, std::int32_t end) {
        for (std::int32_t y = begin; y < end; ++y) std::memset(rowAt(y), fillByte, bytesPerRow());
    }
};

constexpr std::size_t pixelBytes(std::int32_t pixels) { return static_cast<std::size_t>(pixels) * 4; }

// Brings a rotation by `delta` of `size` rows or columns near 0: to -size / 2 or more where `size` is even, to 0 or
// more where it is odd. The sign decides how large a picture can be rotated.
std::int32_t normalised(int delta, std::int32_t size) {
    const std::int32_t half = size / 2;
    std::int32_t rotation = delta % size;
    if (rotation >= half) rotation -= size;
    if (rotation <= -half) rotation += size;
    return rotation;
}

bool ScrollVertical(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    const std::int32_t height = editor.height;
    if (delta >= height || delta <= -height) {
        editor.fillRows(0, height);
    } else if (delta < 0) {
        for (std::int32_t y = 0; y < height + delta; ++y) editor.copyRow(y - delta, y);
        editor.fillRows(height + delta, height);
    } else {
        for (std::int32_t y = height - 1; y >= delta; --y) editor.copyRow(y - delta, y);
        editor.fillRows(0, delta);
    }
    return true;
}

// Every row moves straight to its new place, with one row put aside for each cycle that the rotation consists of.
void rotateRows(ScrolledPicture& editor, std::int32_t rotation, unsigned char* aside) {
    const std::int32_t height = editor.height;
    const std::int32_t step = rotation > 0 ? height - rotation : -rotation;
    const std::int32_t cycles = std::gcd(height, step);
    for (std::int32_t first = 0; first < cycles; ++first) {
        std::memcpy(aside, editor.rowAt(first), editor.bytesPerRow());
        std::int32_t to = first;
        for (std::int32_t from = first + step; from != first;) {
            editor.copyRow(from, to);
            to = from;
            from = from < height - step ? from + step : from - (height - step);
        }
        std::memcpy(editor.rowAt(to), aside, editor.bytesPerRow());
    }
}

bool ScrollVerticalWrap(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    if (editor.height < 1) return true;
    const std::int32_t rotation = normalised(delta, editor.height);
    if (rotation == 0) return true;
    // Rotating takes one row of memory, but what a program may rotate was settled when the rows that stay, or upwards
    // the whole picture, were copied aside.
    const auto rowsAside = static_cast<std::uint64_t>(rotation > 0 ? editor.height - rotation : editor.height);
    if (rowsAside * editor.bytesPerRow() > largestAllocation) return false;
    const auto aside = allocateZeroed<unsigned char>(editor.bytesPerRow());
    if (aside == nullptr) return false;
    rotateRows(editor, rotation, aside.get());
    return true;
}

bool ScrollHorizontal(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    const std::int32_t width = editor.width;
    if (delta >= width || delta <= -width) {
        editor.fillRows(0, editor.height);
        return true;
    }
    const std::int32_t distance = delta < 0 ? -delta : delta;
    const std::int32_t kept = width - distance;
    for (std::int32_t y = 0; y < editor.height; ++y) {
        std::uint32_t* row = editor.rowAt(y);
        std::uint32_t* from = delta < 0 ? row + distance : row;
        std::uint32_t* to = delta < 0 ? row : row + distance;
        std::memmove(to, from, pixelBytes(kept));
        std::memset(delta < 0 ? row + kept : row, fillByte, pixelBytes(distance));
    }
    return true;
}

bool ScrollHorizontalWrap(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    if (editor.width < 1) return true;
    const std::int32_t rotation = normalised(delta, editor.width);
    if (rotation == 0) return true;
    const auto aside = allocateZeroed<std::uint32_t>(static_cast<std::uint64_t>(editor.width));
    if (aside == nullptr) return true;
    // The first part of each row changes places with the rest.
    const std::int32_t first = rotation > 0 ? editor.width - rotation : -rotation;
    const std::int32_t rest = editor.width - first;
    for (std::int32_t y = 0; y < editor.height; ++y) {
        std::uint32_t* row = editor.rowAt(y);
        std::memcpy(aside.get(), row, pixelBytes(first));
        std::memmove(row, row + first, pixelBytes(rest));
        std::memcpy(row + rest, aside.get(), pixelBytes(first));
    }
    return true;
}

using Scroll = bool (*)(REALpictureStruct*, int);

bool scrollMask(REALpictureStruct* self, Scroll scroll, int delta) {
    const HostReference<REALpictureStruct> mask(self != nullptr ? REALGetPictureMask(self, false) : nullptr);
    return mask == nullptr || scroll(mask.get(), delta);
}

}  // namespace

bool ScrollVerticalPXK(REALpictureStruct* self, int delta, signed char wrap, signed char scrollmask) {
    const Scroll scroll = wrap != 0 ? ScrollVerticalWrap : ScrollVertical;
    if (scrollmask != 0 && !scrollMask(self, scroll, delta)) return false;
    return scroll(self, delta);
}

// Unlike the vertical scroll, this one has never told of a failure: programs go on as though there were none.
bool ScrollHorizontalPXK(REALpictureStruct* self, int delta, signed char wrap, signed char scrollmask) {
    const Scroll scroll = wrap != 0 ? ScrollHorizontalWrap : ScrollHorizontal;
    if (scrollmask != 0) scrollMask(self, scroll, delta);
    scroll(self, delta);
    return true;
}

bool ScrollPXK(REALpictureStruct* self, int deltaX, int deltaY, signed char wrap, signed char scrollmask) {
    ScrollHorizontalPXK(self, deltaX, wrap, scrollmask);
    return ScrollVerticalPXK(self, deltaY, wrap, scrollmask);
}

}  // namespace pxk
