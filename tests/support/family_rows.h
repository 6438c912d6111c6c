/// Rows of pixels of a family, for tests of kernels that take several.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "picture/pixel_families.h"
#include "support/pixel_formats.h"
#include "support/random.h"

namespace pxk::test {

inline constexpr Family anyFamily[] = {Family::alphaLast, Family::alphaFirst, Family::gd, Family::none};
inline constexpr Family writableFamilies[] = {Family::alphaLast, Family::alphaFirst, Family::gd};
inline constexpr int widestRow = 130;

/// A format code of the family; 0 for none.
constexpr int formatOf(Family family) {
    constexpr int codes[] = {1, 2, 8, 0};
    return codes[static_cast<int>(family)];
}

/// Random words, starting at a random offset.
class SourceRow {
  public:
    SourceRow(Family family, int width, Random& random)
        : format_(formatOf(family)),
          offset_(static_cast<std::size_t>(random.between(0, 7))),
          words_(random.pixelWords(offset_ + static_cast<std::size_t>(width))) {}

    const std::uint32_t* words() const { return words_.data() + offset_; }
    Colour colour(int x) const { return readColour(format_, words()[x]); }

  private:
    int format_;
    std::size_t offset_;
    std::vector<std::uint32_t> words_;
};

/// A row to be written, between two words that must not be.
class ResultRow {
  public:
    ResultRow(Family family, int width)
        : format_(formatOf(family)), width_(width), words_(static_cast<std::size_t>(width) + 2, untouched) {}

    std::uint32_t* words() { return words_.data() + 1; }

    /// Expects `definition(x)`, opaque, in every column and both words outside the row untouched.
    template <class Definition>
    void expect(Definition definition) const {
        ASSERT_EQ(words_.front(), untouched);
        ASSERT_EQ(words_.back(), untouched);
        for (int x = 0; x < width_; ++x) {
            ASSERT_EQ(words_[static_cast<std::size_t>(x) + 1], opaqueWord(format_, definition(x)))
                << "format " << format_ << ", width " << width_ << ", pixel " << x;
        }
    }

  private:
    static constexpr std::uint32_t untouched = 0xDEADBEEF;

    int format_;
    int width_;
    std::vector<std::uint32_t> words_;
};

}  // namespace pxk::test
