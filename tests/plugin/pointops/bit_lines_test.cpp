// Lines of bits, searched and cleared.
#include "pointops/bit_lines.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/random.h"

namespace pxk::test {
namespace {

/// Lines beside plain flags that say the same.
class Lines {
  public:
    Lines(std::uint32_t count, std::uint32_t bits)
        : lines_(count, bits),
          storage_(static_cast<std::size_t>(lines_.storageWords())),
          flags_(count, std::vector<bool>(bits)) {
        lines_.placeIn(storage_.data());
    }

    void fill(Random& random, int oneIn) {
        for (std::uint32_t line = 0; line < flags_.size(); ++line) {
            for (std::uint32_t bit = 0; bit < flags_[line].size(); ++bit) {
                if (random.between(1, oneIn) != 1) continue;
                flags_[line][bit] = true;
                lines_.line(line)[bit / 64] |= std::uint64_t{1} << bit % 64;
            }
        }
        lines_.summarise();
    }

    void clear(std::uint32_t line, std::uint32_t first, std::uint32_t last) {
        lines_.clear(line, first, last);
        for (std::uint32_t bit = first; bit <= last; ++bit) flags_[line][bit] = false;
    }

    std::uint32_t expectedNext(std::uint32_t line, std::uint32_t first) const {
        for (std::uint32_t bit = first; bit < flags_[line].size(); ++bit) {
            if (flags_[line][bit]) return bit;
        }
        return BitLines::none;
    }

    void check() const {
        for (std::uint32_t line = 0; line < flags_.size(); ++line) {
            for (std::uint32_t first = 0; first <= flags_[line].size(); ++first) {
                ASSERT_EQ(lines_.next(line, first), expectedNext(line, first)) << "line " << line << ", bit " << first;
            }
        }
    }

    const BitLines& lines() const { return lines_; }
    std::uint32_t bits() const { return static_cast<std::uint32_t>(flags_.front().size()); }

  private:
    BitLines lines_;
    std::vector<std::uint64_t> storage_;
    std::vector<std::vector<bool>> flags_;
};

TEST(BitLines, FindTheNextBitOfEveryLength) {
    Random random(1);
    for (std::uint32_t bits = 1; bits <= 200; ++bits) {
        for (const int oneIn : {1, 3, 90}) {
            Lines lines(3, bits);
            lines.check();
            lines.fill(random, oneIn);
            lines.check();
        }
    }
}

TEST(BitLines, FindBitsThousandsAway) {
    for (const std::uint32_t bits : {4096U, 4097U, 8192U, 20000U}) {
        BitLines lines(1, bits);
        std::vector<std::uint64_t> storage(static_cast<std::size_t>(lines.storageWords()));
        lines.placeIn(storage.data());
        EXPECT_EQ(lines.next(0, 0), BitLines::none);
        lines.line(0)[(bits - 1) / 64] = std::uint64_t{1} << (bits - 1) % 64;
        lines.summarise();
        EXPECT_EQ(lines.next(0, 0), bits - 1);
        EXPECT_TRUE(lines.anySet(0, 5, bits - 1));
        EXPECT_FALSE(lines.anySet(0, 5, bits - 2));
        lines.clear(0, 0, bits - 2);
        EXPECT_EQ(lines.next(0, 0), bits - 1);
        lines.clear(0, 0, bits - 1);
        EXPECT_EQ(lines.next(0, 0), BitLines::none);
    }
}

TEST(BitLines, ClearAndSearchAnyRange) {
    Random random(2);
    for (int i = 0; i < 300; ++i) {
        Lines lines(4, static_cast<std::uint32_t>(random.between(1, 400)));
        lines.fill(random, random.between(1, 200));
        for (int k = 0; k < 6; ++k) {
            const auto line = static_cast<std::uint32_t>(random.between(0, 3));
            const auto first = static_cast<std::uint32_t>(random.between(0, static_cast<int>(lines.bits()) - 1));
            const auto last =
                static_cast<std::uint32_t>(random.between(static_cast<int>(first), static_cast<int>(lines.bits()) - 1));
            ASSERT_EQ(lines.lines().anySet(line, first, last), lines.expectedNext(line, first) <= last);
            lines.clear(line, first, last);
            lines.check();
        }
    }
}

}  // namespace
}  // namespace pxk::test
