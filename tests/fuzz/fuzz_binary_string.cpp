// Strings of any bytes, given to the reader of binary pictures.
#include <algorithm>
#include <memory>

#include "fuzz/fuzz_host.h"
#include "support/definitions/binary_string.h"

namespace pxk::fuzz {

namespace {

using pxkhost::Picture;
using pxkhost::Ref;
using pxkhost::String;

// The first byte tells whether the string's own length is put into it, which chance would take long to find.
constexpr std::uint8_t lengthCorrected = 1;

std::string stringOf(InputReader& input) {
    const bool correct = (input.take<std::uint8_t>() & lengthCorrected) != 0;
    const Bytes bytes = input.takeRest();
    std::string string(bytes.begin(), bytes.end());
    if (correct && string.size() >= 8) {
        string.replace(4, 4, test::bigEndian(static_cast<std::uint32_t>(string.size())));
    }
    return string;
}

// The call sees memory that ends where the string does, so that the sanitizer sees one byte more.
Ref<Picture> read(const std::string& bytes) {
    const std::unique_ptr<char[]> exact(new char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    const Ref<String> string = String::make(bytes, pxkhost::encoding::unknown);
    auto* record = reinterpret_cast<pxk::REALstringRecord*>(string->handle());
    const pxk::REALstringRecord honest = *record;
    if (honest.bytes != nullptr) record->bytes = exact.get();
    Ref<Picture> picture = host().invoke<Ref<Picture>>("BinaryStringtoPicturePXK(data as String) as Picture", string);
    *record = honest;
    require(string->references() == 1, "the string's reference was not given back");
    return picture;
}

std::uint32_t field(const std::string& bytes, std::size_t place) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | static_cast<std::uint8_t>(bytes[place + i]);
    return value;
}

bool wellFormed(const std::string& bytes) {
    if (bytes.size() < 24 || bytes.substr(0, 4) != "PPIC" || field(bytes, 4) != bytes.size()) return false;
    const std::uint64_t width = field(bytes, 8);
    const std::uint64_t height = field(bytes, 12);
    if (width < 1 || width > 32767 || height < 1 || height > 32767) return false;
    return field(bytes, 20) + 3 * width * height <= bytes.size();
}

void check(const std::string& bytes, int format) {
    const Ref<Picture> picture = read(bytes);
    require(static_cast<bool>(picture) == wellFormed(bytes), "a malformed string was read, or a well-formed one not");
    if (!picture) return;
    std::size_t place = field(bytes, 20);
    std::string pixels;
    for (int y = 0; y < picture->height(); ++y) {
        for (int x = 0; x < picture->width(); ++x, place += 3) {
            const auto channel = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[place + i]); };
            const std::uint32_t expected = test::opaqueWord(format, {channel(0), channel(1), channel(2)});
            require(picture->row(y)[x] == expected, "a pixel is not what the string holds");
            pixels += bytes.substr(place, 3);
        }
    }
    const auto width = static_cast<std::uint32_t>(picture->width());
    const auto height = static_cast<std::uint32_t>(picture->height());
    const auto length = static_cast<std::uint32_t>(40 + pixels.size());
    const auto again = host().invoke<Ref<String>>("PicturetoBinaryStringPXK(p as picture) as string", picture);
    require(again && again->bytes() == test::binaryHeader(length, width, height) + pixels,
            "the picture gives another string");
}

}  // namespace

std::vector<Bytes> seeds() {
    const auto input = [](std::uint8_t choice, std::uint8_t flags, const std::string& string) {
        return InputWriter().put(choice).put(flags).put(Bytes(string.begin(), string.end())).bytes();
    };
    const std::string small = test::binaryString(2, {{255, 0, 0}, {0, 0, 255}});
    const std::string wide = test::binaryString(19, std::vector<test::Colour>(38, {1, 128, 254}));
    return {input(0, 0, small),
            input(1, lengthCorrected, wide),
            input(8, 0, test::binaryHeader(50, 1, 1, 47) + "0123456789"),
            input(15, lengthCorrected, test::binaryHeader(24, 1, 2, 18).substr(0, 24)),
            input(2, lengthCorrected, test::binaryHeader(0, 0xFFFFFFFF, 0x80000000, 0xFFFFFFFF)),
            input(3, lengthCorrected, test::binaryHeader(0, 32767, 32767) + "xyz"),
            input(4, 0, "PPIC")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputReader input(data, size);
    const int format = choosePictures(input.take<std::uint8_t>());
    check(stringOf(input), format);
    requireBalancedBooks();
    return 0;
}

}  // namespace pxk::fuzz
