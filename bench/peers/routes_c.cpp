// What the C library does on a picture in one block.
#include <gnu/libc-version.h>

#include <cstddef>
#include <cstring>
#include <memory>

#include "bench/limits.h"
#include "bench/peers/route.h"

namespace pxkbench {
namespace {

// A white picture is like itself one pixel on.
PeerRun allWhite(const PeerPictures& pictures) {
    const auto white = std::make_shared<bool>();
    return {[&pictures, white] {
                const Words& words = pictures.source;
                *white = words[0] == 0xFFFFFFFF &&
                         std::memcmp(words.data(), words.data() + 1, (words.size() - 1) * sizeof words[0]) == 0;
            },
            [white] { return outcomeOf(*white); }};
}

// Work in place on a copy of the target. `work` is given the words and the size.
template <class Work>
auto inPlace(Work work) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const auto words = std::make_shared<Words>(pictures.target);
        const auto width = static_cast<std::size_t>(pictures.width);
        const auto height = static_cast<std::size_t>(pictures.height);
        return {[=] { work(words->data(), width, height); }, [=] { return coloursOf(*words); }};
    };
}

constexpr std::size_t distance = limitDistance;
constexpr std::size_t wordSize = sizeof(std::uint32_t);

// libgd's white with no opacity and opaque white are both 0xFFFFFF.
void shiftDown(std::uint32_t* words, std::size_t width, std::size_t height) {
    std::memmove(words + distance * width, words, (height - distance) * width * wordSize);
    std::memset(words, 255, distance * width * wordSize);
}

void shiftUp(std::uint32_t* words, std::size_t width, std::size_t height) {
    std::memmove(words, words + distance * width, (height - distance) * width * wordSize);
    std::memset(words + (height - distance) * width, 255, distance * width * wordSize);
}

void rotateDown(std::uint32_t* words, std::size_t width, std::size_t height) {
    static Words saved;
    const std::uint32_t* const bottom = words + (height - distance) * width;
    saved.assign(bottom, bottom + distance * width);
    std::memmove(words + distance * width, words, (height - distance) * width * wordSize);
    std::memcpy(words, saved.data(), saved.size() * wordSize);
}

void shiftRight(std::uint32_t* words, std::size_t width, std::size_t height) {
    for (std::uint32_t* row = words; row < words + width * height; row += width) {
        std::memmove(row + distance, row, (width - distance) * wordSize);
        std::memset(row, 255, distance * wordSize);
    }
}

void shiftLeft(std::uint32_t* words, std::size_t width, std::size_t height) {
    for (std::uint32_t* row = words; row < words + width * height; row += width) {
        std::memmove(row, row + distance, (width - distance) * wordSize);
        std::memset(row + width - distance, 255, distance * wordSize);
    }
}

void rotateRight(std::uint32_t* words, std::size_t width, std::size_t height) {
    std::uint32_t saved[distance];
    for (std::uint32_t* row = words; row < words + width * height; row += width) {
        std::memcpy(saved, row + width - distance, sizeof saved);
        std::memmove(row + distance, row, (width - distance) * wordSize);
        std::memcpy(row, saved, sizeof saved);
    }
}

void rotateBoth(std::uint32_t* words, std::size_t width, std::size_t height) {
    rotateRight(words, width, height);
    rotateDown(words, width, height);
}

}  // namespace

Library cLibrary() {
    return {std::string("glibc ") + gnu_get_libc_version(),
            {
                {"isWhitePXK", "memcmp with itself, one pixel on", 0, allWhite},
                {"ScrollVerticalPXK(37)", "memmove, memset", 0, inPlace(shiftDown)},
                {"ScrollVerticalPXK(-37)", "memmove, memset", 0, inPlace(shiftUp)},
                {"ScrollVerticalPXK(37, true)", "memmove, saved rows", 0, inPlace(rotateDown)},
                {"ScrollHorizontalPXK(37)", "memmove, memset by rows", 0, inPlace(shiftRight)},
                {"ScrollHorizontalPXK(-37)", "memmove, memset by rows", 0, inPlace(shiftLeft)},
                {"ScrollHorizontalPXK(37, true)", "memmove, saved columns", 0, inPlace(rotateRight)},
                {"ScrollPXK(37, 37, true)", "both", 0, inPlace(rotateBoth)},
            }};
}

}  // namespace pxkbench
