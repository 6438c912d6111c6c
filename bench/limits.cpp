#include "bench/limits.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pxkbench {
namespace {

std::size_t rowPixels(const Workspace& work) { return static_cast<std::size_t>(work.size.width); }

void copyByMemcpy(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y)
        std::memcpy(work.target().row(y), work.source().row(y), rowPixels(work) * sizeof(std::uint32_t));
}

void copyByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) {
        const std::uint32_t* const from = work.source().row(y);
        std::uint32_t* const to = work.target().row(y);
        for (std::size_t x = 0; x < rowPixels(work); ++x) to[x] = from[x];
    }
}

void readByLoop(const Workspace& work) {
    std::uint32_t sum = 0;
    for (int y = 0; y < work.size.height; ++y) {
        const std::uint32_t* const from = work.source().row(y);
        for (std::size_t x = 0; x < rowPixels(work); ++x) sum += from[x];
    }
    benchmark::DoNotOptimize(sum);
}

void changeInPlaceByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) {
        std::uint32_t* const row = work.target().row(y);
        for (std::size_t x = 0; x < rowPixels(work); ++x) row[x] ^= 0x00FFFFFFU;
    }
}

void combineTwoByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) {
        const std::uint32_t* const first = work.source().row(y);
        const std::uint32_t* const second = work.second().row(y);
        std::uint32_t* const to = work.target().row(y);
        for (std::size_t x = 0; x < rowPixels(work); ++x) to[x] = first[x] ^ second[x];
    }
}

void combineThreeByLoop(const Workspace& work) {
    for (int y = 0; y < work.size.height; ++y) {
        const std::uint32_t* const first = work.source().row(y);
        const std::uint32_t* const second = work.second().row(y);
        const std::uint32_t* const third = work.third().row(y);
        std::uint32_t* const to = work.target().row(y);
        for (std::size_t x = 0; x < rowPixels(work); ++x) to[x] = first[x] ^ second[x] ^ third[x];
    }
}

void moveByMemmove(const Workspace& work) {
    for (int y = 0; y + 1 < work.size.height; ++y)
        std::memmove(work.target().row(y), work.target().row(y + 1), rowPixels(work) * sizeof(std::uint32_t));
}

constexpr std::array<LimitLoop, 2> copyLoops = {{{"memcpy of rows", copyByMemcpy}, {"plain loop", copyByLoop}}};
constexpr std::array<LimitLoop, 1> readLoops = {{{"plain loop", readByLoop}}};
constexpr std::array<LimitLoop, 1> inPlaceLoops = {{{"plain loop", changeInPlaceByLoop}}};
constexpr std::array<LimitLoop, 1> twoToOneLoops = {{{"plain loop", combineTwoByLoop}}};
constexpr std::array<LimitLoop, 1> threeToOneLoops = {{{"plain loop", combineThreeByLoop}}};
constexpr std::array<LimitLoop, 1> moveLoops = {{{"memmove of rows", moveByMemmove}}};

}  // namespace

const Limit copyLimit = {"copy", copyLoops};
const Limit readLimit = {"read", readLoops};
const Limit inPlaceLimit = {"in place", inPlaceLoops};
const Limit twoToOneLimit = {"2 to 1", twoToOneLoops};
const Limit threeToOneLimit = {"3 to 1", threeToOneLoops};
const Limit moveLimit = {"memmove", moveLoops};

}  // namespace pxkbench
