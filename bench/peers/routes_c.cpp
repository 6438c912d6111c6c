// The routes of the C library. Scrolling works on separately allocated rows, like those of the members' pictures.
#include <benchmark/benchmark.h>
#include <gnu/libc-version.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>

#include "bench/limits.h"
#include "bench/peers/route.h"

namespace pxkbench {
namespace {

// A white picture equals itself shifted by one pixel.
PeerRun allWhite(const PeerPictures& pictures) {
    const auto white = std::make_shared<bool>();
    return {[&pictures, white] {
                const Words& words = pictures.source;
                *white = words[0] == 0xFFFFFFFF &&
                         std::memcmp(words.data(), words.data() + 1, (words.size() - 1) * sizeof words[0]) == 0;
            },
            [white] { return outcomeOf(*white); }};
}

// A picture laid out like a libgd image: a table of separately allocated rows.
class RowTable {
  public:
    RowTable(const Words& words, std::size_t width) : width_(width) {
        for (auto from = words.begin(); from != words.end(); from += static_cast<std::ptrdiff_t>(width)) {
            rows_.push_back(std::make_unique<std::uint32_t[]>(width));
            std::copy_n(from, width, rows_.back().get());
        }
    }

    std::size_t width() const { return width_; }
    std::size_t height() const { return rows_.size(); }
    std::uint32_t* row(std::size_t y) { return rows_[y].get(); }

    Outcome colours() const {
        Words words;
        for (const auto& row : rows_) words.insert(words.end(), row.get(), row.get() + width_);
        return coloursOf(words);
    }

  private:
    std::size_t width_;
    std::vector<std::unique_ptr<std::uint32_t[]>> rows_;
};

// Works in place on a copy of the target. The distance is hidden from the compiler, as members do not know it either.
template <class Work>
auto inPlace(Work work) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const auto table = std::make_shared<RowTable>(pictures.target, static_cast<std::size_t>(pictures.width));
        std::size_t distance = limitDistance;
        benchmark::DoNotOptimize(distance);
        return {[=] { work(*table, distance); }, [=] { return table->colours(); }};
    };
}

constexpr std::size_t wordSize = sizeof(std::uint32_t);

// Bytes of 255 are fully transparent white in libgd, but only the colour counts for the outcome.
void fillRows(RowTable& table, std::size_t begin, std::size_t end) {
    for (std::size_t y = begin; y < end; ++y) std::memset(table.row(y), 255, table.width() * wordSize);
}

void moveRowsDown(RowTable& table, std::size_t distance) {
    for (std::size_t y = table.height(); y-- > distance;)
        std::memcpy(table.row(y), table.row(y - distance), table.width() * wordSize);
}

void shiftDown(RowTable& table, std::size_t distance) {
    moveRowsDown(table, distance);
    fillRows(table, 0, distance);
}

void shiftUp(RowTable& table, std::size_t distance) {
    const std::size_t kept = table.height() - distance;
    for (std::size_t y = 0; y < kept; ++y) std::memcpy(table.row(y), table.row(y + distance), table.width() * wordSize);
    fillRows(table, kept, table.height());
}

void rotateDown(RowTable& table, std::size_t distance) {
    static Words saved;
    saved.resize(distance * table.width());
    for (std::size_t i = 0; i < distance; ++i)
        std::memcpy(&saved[i * table.width()], table.row(table.height() - distance + i), table.width() * wordSize);
    moveRowsDown(table, distance);
    for (std::size_t i = 0; i < distance; ++i)
        std::memcpy(table.row(i), &saved[i * table.width()], table.width() * wordSize);
}

void shiftRight(RowTable& table, std::size_t distance) {
    for (std::size_t y = 0; y < table.height(); ++y) {
        std::uint32_t* const row = table.row(y);
        std::memmove(row + distance, row, (table.width() - distance) * wordSize);
        std::memset(row, 255, distance * wordSize);
    }
}

void shiftLeft(RowTable& table, std::size_t distance) {
    for (std::size_t y = 0; y < table.height(); ++y) {
        std::uint32_t* const row = table.row(y);
        std::memmove(row, row + distance, (table.width() - distance) * wordSize);
        std::memset(row + table.width() - distance, 255, distance * wordSize);
    }
}

void rotateRight(RowTable& table, std::size_t distance) {
    static Words saved;
    saved.resize(distance);
    for (std::size_t y = 0; y < table.height(); ++y) {
        std::uint32_t* const row = table.row(y);
        std::memcpy(saved.data(), row + table.width() - distance, distance * wordSize);
        std::memmove(row + distance, row, (table.width() - distance) * wordSize);
        std::memcpy(row, saved.data(), distance * wordSize);
    }
}

void rotateBoth(RowTable& table, std::size_t distance) {
    rotateRight(table, distance);
    rotateDown(table, distance);
}

}  // namespace

Library cLibrary() {
    return {std::string("glibc ") + gnu_get_libc_version(),
            {
                {"isWhitePXK", "memcmp with itself, shifted by a pixel", 0, allWhite},
                {"ScrollVerticalPXK(37)", "memcpy of rows, memset", 0, inPlace(shiftDown)},
                {"ScrollVerticalPXK(-37)", "memcpy of rows, memset", 0, inPlace(shiftUp)},
                {"ScrollVerticalPXK(37, true)", "memcpy of rows, saved rows", 0, inPlace(rotateDown)},
                {"ScrollHorizontalPXK(37)", "memmove, memset by rows", 0, inPlace(shiftRight)},
                {"ScrollHorizontalPXK(-37)", "memmove, memset by rows", 0, inPlace(shiftLeft)},
                {"ScrollHorizontalPXK(37, true)", "memmove, saved columns", 0, inPlace(rotateRight)},
                {"ScrollPXK(37, 37, true)", "memmove, then memcpy of rows", 0, inPlace(rotateBoth)},
            }};
}

}  // namespace pxkbench
