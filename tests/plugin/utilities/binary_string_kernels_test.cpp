// The loops between pixels and packed bytes, compared with their definition.
#include "utilities/binary_string_kernels.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/isa_tests.h"
#include "support/pixel_formats.h"
#include "support/random.h"

namespace pxk::test {
namespace {

constexpr int familyFormats[familyCount] = {1, 2, 8, 0};
constexpr unsigned char untouchedByte = 0xA5;

// Arrays of exactly the size that may be read and written, so that a sanitizer sees one byte more.
template <class Element>
std::unique_ptr<Element[]> copyOf(const std::vector<Element>& elements) {
    std::unique_ptr<Element[]> copy(new Element[elements.size()]);
    std::copy(elements.begin(), elements.end(), copy.get());
    return copy;
}

std::vector<unsigned char> bytesOfPixels(int format, const std::vector<std::uint32_t>& words) {
    std::vector<unsigned char> bytes;
    for (const std::uint32_t word : words) {
        const Colour colour = readColour(format, word);
        for (const int channel : {colour.red, colour.green, colour.blue}) {
            bytes.push_back(static_cast<unsigned char>(channel));
        }
    }
    return bytes;
}

TEST(BinaryStringKernels, TakeTheBytesOfEveryFamily) {
    forEveryIsa<BinaryStringKernels>([](const BinaryStringKernels& kernels) {
        Random random(1);
        for (int family = 0; family < familyCount; ++family) {
            for (std::size_t width = 0; width <= 130; ++width) {
                const std::vector<std::uint32_t> words = random.pixelWords(width);
                std::vector<unsigned char> result(3 * width + 1, untouchedByte);
                kernels.toBytes[family](copyOf(words).get(), result.data(), static_cast<std::ptrdiff_t>(width));
                std::vector<unsigned char> expected = bytesOfPixels(familyFormats[family], words);
                expected.push_back(untouchedByte);
                ASSERT_EQ(result, expected) << "family " << family << ", width " << width;
            }
        }
    });
}

TEST(BinaryStringKernels, MakeOpaqueWordsOfEveryFamily) {
    forEveryIsa<BinaryStringKernels>([](const BinaryStringKernels& kernels) {
        Random random(2);
        for (int family = 0; family < writableFamilyCount; ++family) {
            for (std::size_t width = 0; width <= 130; ++width) {
                std::vector<unsigned char> bytes(3 * width);
                for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random.word());
                std::vector<std::uint32_t> result(width + 1, 0xDEADBEEF);
                kernels.fromBytes[family](copyOf(bytes).get(), result.data(), static_cast<std::ptrdiff_t>(width));
                ASSERT_EQ(result.back(), 0xDEADBEEF);
                for (std::size_t x = 0; x < width; ++x) {
                    const Colour colour = {bytes[3 * x], bytes[3 * x + 1], bytes[3 * x + 2]};
                    ASSERT_EQ(result[x], opaqueWord(familyFormats[family], colour))
                        << "family " << family << ", width " << width << ", pixel " << x;
                }
            }
        }
    });
}

}  // namespace
}  // namespace pxk::test
