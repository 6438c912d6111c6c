/// Parallel lines of bits that are searched and cleared by ranges.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace pxk {

/// Each line has its bits in 64-bit words and, behind them, a summary: one bit for each word that is not 0. So a search
/// passes over 4096 clear bits at a step, and clearing a range costs only what is set there.
///
/// Lines and bits count from 0, and whoever asks for one names one that exists.
class BitLines {
  public:
    static constexpr std::uint32_t wordBits = 64;

    BitLines() = default;
    BitLines(std::uint32_t lines, std::uint32_t bits);

    /// The number of words that the lines take.
    std::uint64_t storageWords() const { return std::uint64_t{lines_} * stride_; }

    /// Puts the lines there, all bits clear: `storage` is zeroed, holds `storageWords()` words and outlives the lines.
    void placeIn(std::uint64_t* storage) { storage_ = storage; }

    std::uint32_t words() const { return words_; }

    /// The words of a line, bit 0 of word 0 first. Whoever sets bits there calls `summarise` before anything else.
    std::uint64_t* line(std::uint32_t line) { return storage_ + line * stride_; }
    const std::uint64_t* line(std::uint32_t line) const { return storage_ + line * stride_; }
    void summarise();

    static constexpr std::uint32_t none = 0xFFFFFFFF;

    /// The first set bit of a line at or after `first`, which may lie behind the line; `none` when there is none.
    std::uint32_t next(std::uint32_t line, std::uint32_t first) const {
        if (first / wordBits >= words_) return none;
        const std::uint64_t rest = this->line(line)[first / wordBits] >> first % wordBits;
        return rest != 0 ? first + static_cast<std::uint32_t>(std::countr_zero(rest)) : nextInLaterWord(line, first);
    }

    /// Whether any bit of a line from `first` to `last`, both included, is set.
    bool anySet(std::uint32_t line, std::uint32_t first, std::uint32_t last) const {
        const std::uint64_t rest = this->line(line)[first / wordBits] >> first % wordBits;
        if (rest != 0) return first + static_cast<std::uint32_t>(std::countr_zero(rest)) <= last;
        return last / wordBits != first / wordBits && nextInLaterWord(line, first) <= last;
    }

    /// Clears the bits of a line from `first` to `last`, both included.
    void clear(std::uint32_t line, std::uint32_t first, std::uint32_t last);

  private:
    std::uint32_t nextInLaterWord(std::uint32_t lineNumber, std::uint32_t place) const;
    std::uint32_t nextWord(const std::uint64_t* words, std::uint32_t first) const;

    std::uint64_t* storage_ = nullptr;
    std::uint32_t lines_ = 0;
    std::uint32_t words_ = 0;
    std::uint32_t summaryWords_ = 0;
    std::size_t stride_ = 0;
};

}  // namespace pxk
