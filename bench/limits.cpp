#include "bench/limits.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>

namespace pxkbench {
namespace {

using Word = std::uint32_t;

// The row functions take sizes by value and pointers that do not alias, so that the compiler can vectorise them.
std::size_t rowPixels(const Workspace& work) { return static_cast<std::size_t>(work.size.width); }

void copyByMemcpy(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y)
        std::memcpy(work.target().row(y), work.source().row(y), rowPixels(work) * sizeof(Word));
}

void copyRow(const Word* __restrict from, Word* __restrict to, std::size_t count) {
    for (std::size_t x = 0; x < count; ++x) to[x] = from[x];
}

void copyByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) copyRow(work.source().row(y), work.target().row(y), rowPixels(work));
}

Word sumRow(const Word* from, std::size_t count) {
    Word sum = 0;
    for (std::size_t x = 0; x < count; ++x) sum += from[x];
    return sum;
}

void readByLoop(const Workspace& work) {
    Word sum = 0;
    for (int y = 0; y < work.size.height; ++y) sum += sumRow(work.source().row(y), rowPixels(work));
    benchmark::DoNotOptimize(sum);
}

void changeRow(Word* row, std::size_t count) {
    for (std::size_t x = 0; x < count; ++x) row[x] ^= 0x00FFFFFFU;
}

void changeInPlaceByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) changeRow(work.target().row(y), rowPixels(work));
}

void combineTwoRows(const Word* __restrict first, const Word* __restrict second, Word* __restrict to,
                    std::size_t count) {
    for (std::size_t x = 0; x < count; ++x) to[x] = first[x] ^ second[x];
}

void combineTwoByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y)
        combineTwoRows(work.source().row(y), work.second().row(y), work.target().row(y), rowPixels(work));
}

void combineThreeRows(const Word* __restrict first, const Word* __restrict second, const Word* __restrict third,
                      Word* __restrict to, std::size_t count) {
    for (std::size_t x = 0; x < count; ++x) to[x] = first[x] ^ second[x] ^ third[x];
}

void combineThreeByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y)
        combineThreeRows(work.source().row(y), work.second().row(y), work.third().row(y), work.target().row(y),
                         rowPixels(work));
}

void moveRows(const Workspace& work) {
    for (int y = 0; y + limitDistance < work.size.height; ++y)
        std::memmove(work.target().row(y), work.target().row(y + limitDistance), rowPixels(work) * sizeof(Word));
}

void moveColumns(const Workspace& work) {
    if (work.size.width <= limitDistance) return;
    for (int y = 0; y < work.size.height; ++y) {
        Word* const row = work.target().row(y);
        std::memmove(row + limitDistance, row, (rowPixels(work) - limitDistance) * sizeof(Word));
    }
}

void moveBoth(const Workspace& work) {
    moveColumns(work);
    moveRows(work);
}

// Turns four words into three: every byte is read, and three quarters as many are written. The byte order does not
// matter for the cost.
void packRow(const Word* __restrict from, Word* __restrict to, std::size_t pixels) {
    const std::size_t quarter = pixels / 4;
    for (std::size_t i = 0; i < quarter; ++i) to[i] = from[i] ^ from[3 * quarter + i];
    for (std::size_t i = quarter; i < 3 * quarter; ++i) to[i] = from[i];
}

// The host builds a string by copying from a buffer.
void makeString(const Workspace& work) {
    const std::span<Word> packed = work.packed();
    const std::size_t rowWords = rowPixels(work) / 4 * 3;
    for (int y = 0; y < work.size.height; ++y)
        packRow(work.source().row(y), packed.data() + static_cast<std::size_t>(y) * rowWords, rowPixels(work));
    const auto* const bytes = reinterpret_cast<const char*>(packed.data());
    const auto string = pxkhost::String::make(std::string(bytes, packed.size_bytes()), pxkhost::encoding::unknown);
    benchmark::DoNotOptimize(string.get());
}

void unpackRow(const Word* __restrict from, Word* __restrict to, std::size_t pixels) {
    const std::size_t quarter = pixels / 4;
    for (std::size_t i = 0; i < 3 * quarter; ++i) to[i] = from[i];
    for (std::size_t i = 0; i < quarter; ++i) to[3 * quarter + i] = from[i];
}

void unpack(const Workspace& work) {
    const std::span<const Word> packed = work.packed();
    const std::size_t rowWords = rowPixels(work) / 4 * 3;
    for (int y = 0; y < work.size.height; ++y)
        unpackRow(packed.data() + static_cast<std::size_t>(y) * rowWords, work.target().row(y), rowPixels(work));
}

// A block of samples short enough to be summed in 32 bits, eight to a vector register, without overflow.
constexpr std::size_t blockSize = 4096;

void sumSamples(const Workspace& work) {
    const auto* samples = reinterpret_cast<const std::int16_t*>(work.samples().bytes().data());
    std::int64_t negative = 0;
    std::int64_t others = 0;
    for (std::size_t left = sampleCount; left > 0;) {
        const std::size_t count = std::min(left, blockSize);
        std::int32_t negativeHere = 0;
        std::int32_t othersHere = 0;
        for (std::size_t i = 0; i < count; ++i) {
            negativeHere += std::min<std::int32_t>(samples[i], 0);
            othersHere += std::max<std::int32_t>(samples[i], 0);
        }
        negative += negativeHere;
        others += othersHere;
        samples += count;
        left -= count;
    }
    benchmark::DoNotOptimize(negative);
    benchmark::DoNotOptimize(others);
}

constexpr std::array<LimitLoop, 2> copyLoops = {{{"memcpy of rows", copyByMemcpy}, {"plain loop", copyByLoop}}};
constexpr std::array<LimitLoop, 1> readLoops = {{{"plain loop", readByLoop}}};
constexpr std::array<LimitLoop, 1> inPlaceLoops = {{{"plain loop", changeInPlaceByLoop}}};
constexpr std::array<LimitLoop, 1> twoToOneLoops = {{{"plain loop", combineTwoByLoop}}};
constexpr std::array<LimitLoop, 1> threeToOneLoops = {{{"plain loop", combineThreeByLoop}}};
constexpr std::array<LimitLoop, 1> moveRowsLoops = {{{"memmove of rows", moveRows}}};
constexpr std::array<LimitLoop, 1> moveColumnsLoops = {{{"memmove in rows", moveColumns}}};
constexpr std::array<LimitLoop, 1> moveBothLoops = {{{"both", moveBoth}}};
constexpr std::array<LimitLoop, 1> toStringLoops = {{{"plain loop", makeString}}};
constexpr std::array<LimitLoop, 1> fromBytesLoops = {{{"plain loop", unpack}}};
constexpr std::array<LimitLoop, 1> samplesLoops = {{{"plain loop", sumSamples}}};

}  // namespace

const Limit copyLimit = {"copy", copyLoops};
const Limit readLimit = {"read", readLoops};
const Limit inPlaceLimit = {"in place", inPlaceLoops};
const Limit twoToOneLimit = {"2 to 1", twoToOneLoops};
const Limit threeToOneLimit = {"3 to 1", threeToOneLoops};
const Limit moveRowsLimit = {"memmove", moveRowsLoops};
const Limit moveColumnsLimit = {"memmove", moveColumnsLoops};
const Limit moveBothLimit = {"memmove", moveBothLoops};
const Limit toStringLimit = {"4 to 3", toStringLoops};
const Limit fromBytesLimit = {"3 to 4", fromBytesLoops};
const Limit samplesLimit = {"samples", samplesLoops};

}  // namespace pxkbench
