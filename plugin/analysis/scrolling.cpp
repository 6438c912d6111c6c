#include "analysis/scrolling.h"

#include <cstdlib>
#include <cstring>
#include <numeric>

#include "analysis/row_copy_kernels.h"
#include "frame/allocation.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

constexpr int fillByte = 255;

// Rows are always reached one by one: those of a libgd image lie anywhere.
class ScrolledPicture : public PictureEditor {
  public:
    bool open(REALpictureStruct* pictureToScroll) { return GetPictureEditor(pictureToScroll, true, true); }

    std::size_t bytesPerRow() const { return static_cast<std::size_t>(rowBytes); }

    unsigned char* bytesAt(std::int32_t y) const { return reinterpret_cast<unsigned char*>(rowAt(y)); }

    void copyRow(std::int32_t from, std::int32_t to) {
        if (memcpyStalls(bytesAt(from), bytesAt(to))) {
            copyBackwards(bytesAt(from), bytesAt(to), bytesPerRow());
        } else {
            std::memcpy(bytesAt(to), bytesAt(from), bytesPerRow());
        }
    }

    void fillRows(std::int32_t begin, std::int32_t end) {
        for (std::int32_t y = begin; y < end; ++y) std::memset(rowAt(y), fillByte, bytesPerRow());
    }

  private:
    // String moves, which memcpy uses, slow down to a twentieth on some processors when the result lies less than 64
    // bytes behind the source in its page. Neighbouring rows of a libgd image often lie so.
    static bool memcpyStalls(const unsigned char* from, const unsigned char* to) {
        constexpr std::uintptr_t page = 4096;
        const auto behind = (reinterpret_cast<std::uintptr_t>(to) - reinterpret_cast<std::uintptr_t>(from)) % page;
        return behind > 0 && behind < 64;
    }

    decltype(RowCopyKernels::backwards) copyBackwards = kernels<RowCopyKernels>().backwards;
};

// The rotation that is the same as one by `delta` of `size` rows or columns, and near 0: above -half, and not above
// half (above half + 1 for an odd size). Its sign decides how large a picture can be rotated.
std::int32_t normalised(int delta, std::int32_t size) {
    const std::int32_t half = size / 2;
    std::int32_t rotation = delta % size;
    if (rotation >= half) rotation -= size;
    if (rotation <= -half) rotation += size;
    return rotation;
}

// Rows move in chains, each to where the last one has just been read and is still in the cache.
void shiftRows(ScrolledPicture& editor, std::int32_t distance) {
    const std::int32_t height = editor.height;
    const std::int32_t chains = std::abs(distance);
    const std::int32_t start = distance > 0 ? height - chains : 0;
    for (std::int32_t first = start; first < start + chains; ++first) {
        std::int32_t to = first;
        for (std::int32_t from = to - distance; from >= 0 && from < height; from -= distance) {
            editor.copyRow(from, to);
            to = from;
        }
    }
    const std::int32_t freed = distance > 0 ? 0 : height - chains;
    editor.fillRows(freed, freed + chains);
}

bool ScrollVertical(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    if (delta >= editor.height || delta <= -editor.height) {
        editor.fillRows(0, editor.height);
    } else {
        shiftRows(editor, delta);
    }
    return true;
}

// The same with closed chains: one row of each is kept aside meanwhile.
void rotateRows(ScrolledPicture& editor, std::int32_t rotation, unsigned char* aside) {
    const std::int32_t height = editor.height;
    const auto sourceOf = [=](std::int32_t y) {
        const std::int32_t from = y - rotation;
        return from < 0 ? from + height : from < height ? from : from - height;
    };
    const std::int32_t cycles = std::gcd(height, rotation);
    for (std::int32_t first = 0; first < cycles; ++first) {
        std::memcpy(aside, editor.rowAt(first), editor.bytesPerRow());
        std::int32_t to = first;
        for (std::int32_t from = sourceOf(to); from != first; from = sourceOf(to)) {
            editor.copyRow(from, to);
            to = from;
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
    // Rotating takes one row of memory, but larger pictures are still refused, for compatibility: as if the rows that
    // stay, or upwards the whole picture, had to be copied aside.
    const auto rowsAside = static_cast<std::uint64_t>(rotation > 0 ? editor.height - rotation : editor.height);
    if (rowsAside * editor.bytesPerRow() > largestAllocation) return false;
    const auto aside = allocateZeroed<unsigned char>(editor.bytesPerRow());
    if (aside == nullptr) return false;
    rotateRows(editor, rotation, aside.get());
    return true;
}

// A move of the pixels within a row, by less than its width.
class RowMove {
  public:
    RowMove(std::int32_t width, std::int32_t distance)
        : toTheRight_(distance > 0), distance_(std::abs(distance)), kept_(width - distance_) {}

    // The pixels at the one edge, which the move overwrites, and those at the other, which it leaves behind.
    std::uint32_t* leaving(std::uint32_t* row) const { return toTheRight_ ? row + kept_ : row; }
    std::uint32_t* free(std::uint32_t* row) const { return toTheRight_ ? row : row + kept_; }
    std::size_t edgeBytes() const { return bytes(distance_); }

    void move(std::uint32_t* row) const {
        std::memmove(toTheRight_ ? row + distance_ : row, toTheRight_ ? row : row + distance_, bytes(kept_));
    }

  private:
    static std::size_t bytes(std::int32_t pixels) { return static_cast<std::size_t>(pixels) * sizeof(std::uint32_t); }

    bool toTheRight_;
    std::int32_t distance_;
    std::int32_t kept_;
};

bool ScrollHorizontal(REALpictureStruct* picture, int delta) {
    if (delta == 0) return true;
    ScrolledPicture editor;
    if (!editor.open(picture)) return false;
    const std::int32_t width = editor.width;
    if (delta >= width || delta <= -width) {
        editor.fillRows(0, editor.height);
        return true;
    }
    const RowMove move(width, delta);
    for (std::int32_t y = 0; y < editor.height; ++y) {
        std::uint32_t* row = editor.rowAt(y);
        move.move(row);
        std::memset(move.free(row), fillByte, move.edgeBytes());
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
    const RowMove move(editor.width, rotation);
    for (std::int32_t y = 0; y < editor.height; ++y) {
        std::uint32_t* row = editor.rowAt(y);
        std::memcpy(aside.get(), move.leaving(row), move.edgeBytes());
        move.move(row);
        std::memcpy(move.free(row), aside.get(), move.edgeBytes());
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

// Unlike the vertical scroll, this one reports no failure: deliberate, kept for compatibility.
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
