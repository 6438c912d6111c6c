#include "pointops/bit_lines.h"

namespace pxk {

namespace {

constexpr std::uint64_t ones = ~std::uint64_t{0};

constexpr std::uint32_t wordsFor(std::uint32_t bits) { return (bits + BitLines::wordBits - 1) / BitLines::wordBits; }

constexpr std::uint64_t bit(std::uint32_t place) { return std::uint64_t{1} << place % BitLines::wordBits; }
constexpr std::uint64_t bitsFrom(std::uint32_t place) { return ones << place % BitLines::wordBits; }
constexpr std::uint64_t bitsUpTo(std::uint32_t place) {
    return ones >> (BitLines::wordBits - 1 - place % BitLines::wordBits);
}

}  // namespace

// The stride is odd, so that the same place in many lines does not fall on the same few sets of the processor's cache.
BitLines::BitLines(std::uint32_t lines, std::uint32_t bits)
    : lines_(lines), words_(wordsFor(bits)), summaryWords_(wordsFor(words_)), stride_((words_ + summaryWords_) | 1) {}

void BitLines::summarise() {
    for (std::uint32_t i = 0; i < lines_; ++i) {
        std::uint64_t* words = line(i);
        for (std::uint32_t w = 0; w < words_; ++w) {
            if (words[w] != 0) words[words_ + w / wordBits] |= bit(w);
        }
    }
}

// The first word at or after `first` that is not 0; `words_` when there is none.
std::uint32_t BitLines::nextWord(const std::uint64_t* words, std::uint32_t first) const {
    if (first >= words_) return words_;
    const std::uint64_t* summary = words + words_;
    std::uint32_t s = first / wordBits;
    std::uint64_t rest = summary[s] & bitsFrom(first);
    while (rest == 0) {
        if (++s == summaryWords_) return words_;
        rest = summary[s];
    }
    return s * wordBits + static_cast<std::uint32_t>(std::countr_zero(rest));
}

std::uint32_t BitLines::nextInLaterWord(std::uint32_t lineNumber, std::uint32_t place) const {
    const std::uint64_t* words = line(lineNumber);
    const std::uint32_t w = nextWord(words, place / wordBits + 1);
    return w == words_ ? none : w * wordBits + static_cast<std::uint32_t>(std::countr_zero(words[w]));
}

void BitLines::clear(std::uint32_t lineNumber, std::uint32_t first, std::uint32_t last) {
    std::uint64_t* words = line(lineNumber);
    const std::uint32_t firstWord = first / wordBits;
    const std::uint32_t lastWord = last / wordBits;
    for (std::uint32_t w = firstWord; w <= lastWord; w = nextWord(words, w + 1)) {
        std::uint64_t cleared = ones;
        if (w == firstWord) cleared &= bitsFrom(first);
        if (w == lastWord) cleared &= bitsUpTo(last);
        words[w] &= ~cleared;
        if (words[w] == 0) words[words_ + w / wordBits] &= ~bit(w);
        if (w == lastWord) return;
    }
}

}  // namespace pxk
