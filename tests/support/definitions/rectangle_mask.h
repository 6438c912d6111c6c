/// The rectangle mask, one cell at a time.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace pxk::test {

/// A grid of cells with a border of one cell all round. Cells count from 0 inside the border.
class CellGrid {
  public:
    CellGrid(int width, int height)
        : width_(width), cells_(static_cast<std::size_t>(width + 2) * static_cast<std::size_t>(height + 2)) {}

    std::uint8_t& at(int x, int y) { return cells_[index(x, y)]; }
    std::uint8_t at(int x, int y) const { return cells_[index(x, y)]; }

    bool anyInRow(int y, int x0, int x1) const {
        for (int x = x0; x <= x1; ++x) {
            if (at(x, y) != 0) return true;
        }
        return false;
    }
    bool anyInColumn(int x, int y0, int y1) const {
        for (int y = y0; y <= y1; ++y) {
            if (at(x, y) != 0) return true;
        }
        return false;
    }

  private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y + 1) * static_cast<std::size_t>(width_ + 2) + static_cast<std::size_t>(x + 1);
    }

    int width_;
    std::vector<std::uint8_t> cells_;
};

/// Grows boxes around the flagged cells and returns which cells they mask, row by row. Every pass asks for the row
/// above, the row below, the column to the left and the column to the right, in this order, and moves each side by one
/// cell at most; the search for every box starts at the top-left cell again.
inline std::vector<bool> boxesAround(int width, int height, const std::vector<bool>& flagged) {
    CellGrid flags(width, height);
    CellGrid mask(width, height);
    const auto cell = [&](int x, int y) {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    };
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) flags.at(x, y) = flagged[cell(x, y)] ? 1 : 0;
    }
    for (bool found = true; found;) {
        found = false;
        for (int i = 0; i < width * height && !found; ++i) {
            if (flags.at(i % width, i / width) == 0) continue;
            found = true;
            int x0 = i % width;
            int x1 = x0;
            int y0 = i / width;
            int y1 = y0;
            for (bool changed = true; changed;) {
                changed = false;
                if (flags.anyInRow(y0 - 1, x0, x1)) --y0, changed = true;
                if (flags.anyInRow(y1 + 1, x0, x1)) ++y1, changed = true;
                if (flags.anyInColumn(x0 - 1, y0, y1)) --x0, changed = true;
                if (flags.anyInColumn(x1 + 1, y0, y1)) ++x1, changed = true;
            }
            for (int y = y0; y <= y1; ++y) {
                for (int x = x0; x <= x1; ++x) {
                    mask.at(x, y) = 1;
                    flags.at(x, y) = 0;
                }
            }
        }
    }
    std::vector<bool> covered;
    for (int i = 0; i < width * height; ++i) covered.push_back(mask.at(i % width, i / width) != 0);
    return covered;
}

/// The cells of a picture, whose coloured pixels are given, that the boxes of a rectangle mask. Row top + k of the
/// rectangle is flagged from row k of the picture.
inline std::vector<bool> rectangleMask(int width, int height, const std::vector<bool>& colored, int left, int top,
                                       int rectangleWidth, int rectangleHeight) {
    const std::int64_t right = std::int64_t{left} + (rectangleWidth < 0 ? width : rectangleWidth);
    const std::int64_t bottom = std::int64_t{top} + (rectangleHeight < 0 ? height : rectangleHeight);
    std::vector<bool> flagged(colored.size());
    for (std::int64_t y = std::max(top, 0), row = 0; y < std::min<std::int64_t>(bottom, height); ++y, ++row) {
        for (std::int64_t x = std::max(left, 0); x < std::min<std::int64_t>(right, width); ++x) {
            flagged[static_cast<std::size_t>(y * width + x)] = colored[static_cast<std::size_t>(row * width + x)];
        }
    }
    return boxesAround(width, height, flagged);
}

}  // namespace pxk::test
