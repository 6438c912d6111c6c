#include "pointops/color_boxes.h"

#include <algorithm>
#include <array>
#include <limits>

#include "frame/allocation.h"

namespace pxk {

namespace {

constexpr std::uint32_t blockSide = BitLines::wordBits;
using Block = std::array<std::uint64_t, blockSide>;

// Turns bit x of word y into bit y of word x: exchanges the two off-diagonal quarters, then theirs, and so on.
void transpose(Block& block) {
    std::uint64_t low = 0x00000000FFFFFFFF;
    for (unsigned side = blockSide / 2; side != 0; side /= 2, low ^= low << side) {
        for (unsigned y = 0; y < blockSide; y = ((y | side) + 1) & ~side) {
            const std::uint64_t exchanged = ((block[y] >> side) ^ block[y | side]) & low;
            block[y] ^= exchanged << side;
            block[y | side] ^= exchanged;
        }
    }
}

}  // namespace

bool ColorBoxes::allocate(std::int32_t width, std::int32_t height) {
    constexpr std::int64_t mostCells = std::numeric_limits<std::int32_t>::max();
    if (width < 1 || height < 1 || (std::int64_t{width} + 2) * (std::int64_t{height} + 2) > mostCells) return false;
    width_ = static_cast<std::uint32_t>(width);
    height_ = static_cast<std::uint32_t>(height);
    rows_ = BitLines(height_ + 2, width_);
    columns_ = BitLines(width_ + 2, height_);
    unmasked_ = BitLines(height_, width_);
    // One block, which the allocator keeps for the next call where it gives several back to the system.
    storage_ = allocateZeroed<std::uint64_t>(rows_.storageWords() + columns_.storageWords() + unmasked_.storageWords());
    if (storage_ == nullptr) return false;
    rows_.placeIn(storage_.get());
    columns_.placeIn(storage_.get() + rows_.storageWords());
    unmasked_.placeIn(storage_.get() + rows_.storageWords() + columns_.storageWords());
    return true;
}

void ColorBoxes::mask() {
    rows_.summarise();
    transposeFlags();
    unmaskAll();
    // What precedes the last start in reading order is clear, and flags are only ever cleared: the search continues.
    for (std::uint32_t y = 0; y < height_; ++y) {
        for (std::uint32_t x = rows_.next(rowLine(y), 0); x != BitLines::none; x = rows_.next(rowLine(y), x + 1)) {
            mask(grownFrom(x, y));
        }
    }
}

// Rows above the start are clear, so no box grows upwards. The other sides may move in any order: the result is the
// smallest box around the start that no flagged cell adjoins.
ColorBoxes::Box ColorBoxes::grownFrom(std::uint32_t x, std::uint32_t y) const {
    Box box = {x, y, x, y};
    for (bool grown = true; grown;) {
        const Box before = box;
        while (rows_.anySet(rowLine(box.bottom + 1), box.left, box.right)) ++box.bottom;
        while (columns_.anySet(columnLine(box.left - 1), box.top, box.bottom)) --box.left;
        while (columns_.anySet(columnLine(box.right + 1), box.top, box.bottom)) ++box.right;
        grown = box.left != before.left || box.right != before.right || box.bottom != before.bottom;
    }
    return box;
}

void ColorBoxes::mask(const Box& box) {
    for (std::uint32_t y = box.top; y <= box.bottom; ++y) {
        rows_.clear(rowLine(y), box.left, box.right);
        unmasked_.clear(y, box.left, box.right);
    }
    for (std::uint32_t x = box.left; x <= box.right; ++x) columns_.clear(columnLine(x), box.top, box.bottom);
}

void ColorBoxes::transposeFlags() {
    for (std::uint32_t blockY = 0; blockY < columns_.words(); ++blockY) {
        const std::uint32_t top = blockY * blockSide;
        const std::uint32_t blockRows = std::min(blockSide, height_ - top);
        for (std::uint32_t blockX = 0; blockX < rows_.words(); ++blockX) {
            Block block{};
            std::uint64_t any = 0;
            for (std::uint32_t i = 0; i < blockRows; ++i) {
                block[i] = flags(top + i)[blockX];
                any |= block[i];
            }
            if (any == 0) continue;
            transpose(block);
            const std::uint32_t left = blockX * blockSide;
            const std::uint32_t blockColumns = std::min(blockSide, width_ - left);
            for (std::uint32_t i = 0; i < blockColumns; ++i) {
                columns_.line(columnLine(left + i))[blockY] = block[i];
            }
        }
    }
    columns_.summarise();
}

void ColorBoxes::unmaskAll() {
    for (std::uint32_t y = 0; y < height_; ++y) {
        std::uint64_t* words = unmasked_.line(y);
        std::fill_n(words, unmasked_.words(), ~std::uint64_t{0});
    }
    unmasked_.summarise();
}

}  // namespace pxk
