#include "utilities/binary_string.h"

#include <algorithm>
#include <new>
#include <optional>
#include <span>

#include "frame/allocation.h"
#include "frame/text.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"
#include "utilities/binary_string_kernels.h"

namespace pxk {

namespace {

constexpr unsigned char magic[4] = {'P', 'P', 'I', 'C'};
constexpr std::uint64_t headerSize = 40;
constexpr std::uint64_t pixelSize = 3;
constexpr std::uint64_t longestString = 0x7FFFFFFF;

// Places in the header.
constexpr std::size_t lengthPlace = 4;
constexpr std::size_t widthPlace = 8;
constexpr std::size_t heightPlace = 12;
constexpr std::size_t depthPlace = 16;
constexpr std::size_t pixelsPlace = 20;
constexpr std::size_t fieldsEnd = 24;

using Bytes = std::span<const unsigned char>;

std::uint32_t readBigEndian(Bytes bytes, std::size_t place) {
    std::uint32_t value = 0;
    for (const unsigned char byte : bytes.subspan(place, 4)) value = value << 8 | byte;
    return value;
}

void writeBigEndian(unsigned char* bytes, std::size_t place, std::uint64_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[place + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

// The header's fields, each side below 2^31.
struct Header {
    std::uint64_t width;
    std::uint64_t height;

    // 3 * 2^62 at most, before the header is added.
    std::uint64_t length() const { return pixelSize * width * height + headerSize; }

    void write(unsigned char* bytes) const {
        std::fill_n(bytes, headerSize, static_cast<unsigned char>(0));
        std::copy_n(magic, sizeof magic, bytes);
        writeBigEndian(bytes, lengthPlace, length());
        writeBigEndian(bytes, widthPlace, width);
        writeBigEndian(bytes, heightPlace, height);
        writeBigEndian(bytes, depthPlace, 32);
        writeBigEndian(bytes, pixelsPlace, headerSize);
    }
};

void writePixels(const PictureReader& picture, unsigned char* pixels) {
    const auto toBytes = kernels<BinaryStringKernels>().toBytes[static_cast<int>(familyOf(picture.format))];
    const auto rowLength = static_cast<std::ptrdiff_t>(pixelSize) * picture.width;
    for (std::int32_t y = 0; y < picture.height; ++y) toBytes(picture.rowAt(y), pixels + rowLength * y, picture.width);
}

void readPixels(const unsigned char* pixels, PictureWriter& picture) {
    const Family family = familyOf(picture.format);
    if (family == Family::none) return;
    const auto fromBytes = kernels<BinaryStringKernels>().fromBytes[static_cast<int>(family)];
    const auto rowLength = static_cast<std::ptrdiff_t>(pixelSize) * picture.width;
    for (std::int32_t y = 0; y < picture.height; ++y) {
        fromBytes(pixels + rowLength * y, picture.rowAt(y), picture.width);
    }
}

// Holds a reference to a string, where the host can give one, and shows its bytes.
class StringBytes {
  public:
    explicit StringBytes(REALstringStruct* string) : string_(string), reference_(anotherReference(string)) {}

    Bytes bytes() const {
        const auto* record = reinterpret_cast<const REALstringRecord*>(string_);
        if (record->bytes == nullptr || record->length < 0) return {};
        return {static_cast<const unsigned char*>(record->bytes), static_cast<std::size_t>(record->length)};
    }

  private:
    REALstringStruct* string_;
    HostString reference_;
};

// What a well-formed string says.
struct BinaryPicture {
    std::int32_t width;
    std::int32_t height;
    const unsigned char* pixels;
};

std::optional<BinaryPicture> parse(Bytes bytes) {
    if (bytes.size() < fieldsEnd || !std::ranges::equal(bytes.first(sizeof magic), magic) ||
        readBigEndian(bytes, lengthPlace) != bytes.size()) {
        return std::nullopt;
    }
    const std::uint32_t width = readBigEndian(bytes, widthPlace);
    const std::uint32_t height = readBigEndian(bytes, heightPlace);
    if (!isPictureSide(width) || !isPictureSide(height)) return std::nullopt;
    // With such sides, this is below 2^33.
    const std::uint32_t pixelsStart = readBigEndian(bytes, pixelsPlace);
    if (pixelsStart + pixelSize * width * height > bytes.size()) return std::nullopt;
    return BinaryPicture{static_cast<std::int32_t>(width), static_cast<std::int32_t>(height),
                         bytes.data() + pixelsStart};
}

}  // namespace

REALstringStruct* PicturetoBinaryString(REALpictureStruct* p) {
    PictureReader picture;
    if (!picture.open(p) || picture.width < 0 || picture.height < 0) return nullptr;
    const Header header = {static_cast<std::uint64_t>(picture.width), static_cast<std::uint64_t>(picture.height)};
    if (header.length() > longestString) return nullptr;
    // Not zeroed, since every byte is written.
    const auto length = static_cast<std::size_t>(header.length());
    const std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[length]);
    if (bytes == nullptr) return nullptr;
    header.write(bytes.get());
    writePixels(picture, bytes.get() + headerSize);
    return REALBuildUnicodeString(bytes.get(), static_cast<long long>(length), encodingUnknown);
}

REALpictureStruct* BinaryStringtoPicture(REALstringStruct* data) {
    if (data == nullptr) return nullptr;
    const StringBytes string(data);
    const std::optional<BinaryPicture> source = parse(string.bytes());
    if (!source) return nullptr;
    PictureWriter result;
    if (!result.NewPictureWriter(source->width, source->height)) return nullptr;
    readPixels(source->pixels, result);
    return result.RenderPictureWriter();
}

}  // namespace pxk
