/// The boxes around regions of coloured pixels.
#pragma once

#include <cstdint>
#include <memory>

#include "pointops/bit_lines.h"

namespace pxk {

/// The cells of a picture: at first some are flagged and none is masked; then boxes grow around the flagged cells, and
/// the cells of the boxes are masked.
///
/// A box starts at the first flagged cell in reading order. It takes in the row below, or the column to the left or to
/// the right, for as long as a flagged cell there adjoins it: a cell that only touches a corner does not. Its cells are
/// then no longer flagged, and the next box starts at the first flagged cell left.
///
/// The cost is linear in the number of cells, wherever they lie. Rows and columns are both kept as lines of bits, so
/// that a whole side of a box is looked at, and cleared, in a few steps. A side moves only for the sake of a flagged
/// cell that is cleared afterwards, so the sides of all boxes together are no longer than the flagged cells are many.
class ColorBoxes {
  public:
    /// For pictures of these sides, each at least 1, no cell flagged. False when there is no memory, or when the
    /// picture with a border of one cell has more than 2^31 - 1 cells.
    bool allocate(std::int32_t width, std::int32_t height);

    /// The flags of a row, a bit a cell, bit 0 of word 0 first; to be set before `mask`.
    std::uint64_t* flags(std::uint32_t y) { return rows_.line(rowLine(y)); }

    /// Grows all boxes and masks their cells.
    void mask();

    /// The cells of a row that no box has masked, a bit a cell.
    const std::uint64_t* unmasked(std::uint32_t y) const { return unmasked_.line(y); }

  private:
    struct Box {
        std::uint32_t left;
        std::uint32_t top;
        std::uint32_t right;
        std::uint32_t bottom;
    };

    // A border of lines that are never flagged lies around rows and columns, so that no box leaves the picture.
    static std::uint32_t rowLine(std::uint32_t y) { return y + 1; }
    static std::uint32_t columnLine(std::uint32_t x) { return x + 1; }

    void transposeFlags();
    void unmaskAll();
    Box grownFrom(std::uint32_t x, std::uint32_t y) const;
    void mask(const Box& box);

    std::uint32_t width_ = 0;
    std::uint32_t height_ = 0;
    std::unique_ptr<std::uint64_t[]> storage_;
    BitLines rows_;
    BitLines columns_;
    BitLines unmasked_;
};

}  // namespace pxk
