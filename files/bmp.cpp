#include "files/bmp.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <string>

#include "files/byte_reader.h"
#include "files/limits.h"
#include "files/messages.h"

namespace pxkfiles {
namespace {

constexpr std::size_t headerAt = 14;
constexpr std::uint32_t coreHeader = 12;
constexpr std::uint32_t plainHeader = 40;
constexpr std::uint32_t headerWithMasks = 52;
constexpr std::uint32_t headerWithAlphaMask = 56;
constexpr std::uint32_t osHeader = 64;  // of another system, whose further fields do not matter
constexpr std::uint32_t headerWithSpace = 108;
constexpr std::uint32_t headerWithProfile = 124;

enum Compression : std::uint32_t { packed = 0, runsOf8 = 1, runsOf4 = 2, masked = 3, alphaMasked = 6 };

constexpr std::uint32_t embeddedProfile = 0x4D424544;  // "MBED"
constexpr std::uint32_t standardSpace = 0x73524742;    // "sRGB"

// Which bits of a pixel hold a channel.
class Mask {
  public:
    Mask() = default;
    explicit Mask(std::uint32_t bits) : bits_(bits), shift_(bits == 0 ? 0 : std::countr_zero(bits)) {
        if (((largest() + 1) & largest()) != 0)
            throw FileProblem("its bit masks have gaps; the bits of a channel must lie side by side");
    }

    bool isEmpty() const { return bits_ == 0; }

    /// The channel, stretched to 0 to 255 and rounded.
    std::uint32_t of(std::uint32_t pixel) const {
        if (isEmpty()) return 0;
        const std::uint64_t value = (pixel & bits_) >> shift_;
        return static_cast<std::uint32_t>((value * 255 + largest() / 2) / largest());
    }

    int width() const { return std::popcount(bits_); }

  private:
    std::uint64_t largest() const { return bits_ >> shift_; }

    std::uint32_t bits_ = 0;
    int shift_ = 0;
};

struct Header {
    std::int64_t width = 0;
    std::int64_t height = 0;
    bool fromTheTop = false;
    std::uint32_t depth = 0;
    std::uint32_t compression = packed;
    std::array<Mask, 4> masks;  // red, green, blue, alpha
    std::vector<std::uint32_t> palette;
    std::size_t pixelsAt = 0;

    bool hasRuns() const { return compression == runsOf8 || compression == runsOf4; }
    bool hasPalette() const { return depth <= 8; }
};

void checkKind(const Header& header, std::uint32_t headerSize) {
    const auto depthIsOneOf = [&](std::initializer_list<std::uint32_t> depths) {
        return std::find(depths.begin(), depths.end(), header.depth) != depths.end();
    };
    const bool known = (header.compression == packed && depthIsOneOf({1, 4, 8, 16, 24, 32})) ||
                       (header.compression == runsOf8 && header.depth == 8) ||
                       (header.compression == runsOf4 && header.depth == 4) ||
                       ((header.compression == masked || header.compression == alphaMasked) && headerSize != osHeader &&
                        depthIsOneOf({16, 32}));
    if (!known)
        throw FileProblem("compression " + std::to_string(header.compression) + " at " + std::to_string(header.depth) +
                          " bits a pixel is not supported; packed pixels of 1, 4, 8, 16, 24 or 32 bits, run lengths of "
                          "4 or 8 bits, and bit masks of 16 or 32 bits are");
}

std::array<Mask, 4> readMasks(const ByteReader& file, const Header& header, std::uint32_t headerSize) {
    constexpr std::size_t masksAt = headerAt + plainHeader;
    if (header.compression == packed && header.depth == 16) return {Mask(0x7C00), Mask(0x3E0), Mask(0x1F), Mask()};
    if (header.compression == packed) return {Mask(0xFF0000), Mask(0xFF00), Mask(0xFF), Mask()};
    std::array<Mask, 4> masks = {Mask(file.little32(masksAt)), Mask(file.little32(masksAt + 4)),
                                 Mask(file.little32(masksAt + 8)), Mask()};
    if (header.compression == alphaMasked || headerSize >= headerWithAlphaMask)
        masks[3] = Mask(file.little32(masksAt + 12));
    return masks;
}

Header readHeader(const ByteReader& file) {
    const std::uint32_t headerSize = file.little32(headerAt);
    constexpr std::array known = {coreHeader, plainHeader,     headerWithMasks,  headerWithAlphaMask,
                                  osHeader,   headerWithSpace, headerWithProfile};
    if (std::find(known.begin(), known.end(), headerSize) == known.end())
        throw FileProblem("its header of " + std::to_string(headerSize) +
                          " bytes is of no known kind; 12, 40, 52, 56, 64, 108 or 124 are");

    Header header;
    const bool isCore = headerSize == coreHeader;
    header.pixelsAt = file.little32(10);
    if (isCore) {
        header.width = file.little16(18);
        header.height = file.little16(20);
        header.depth = file.little16(24);
    } else {
        header.width = static_cast<std::int32_t>(file.little32(18));
        header.height = static_cast<std::int32_t>(file.little32(22));
        header.depth = file.little16(28);
        header.compression = file.little32(30);
    }
    header.fromTheTop = header.height < 0;
    header.height = std::abs(header.height);
    checkSize(header.width, header.height);
    checkKind(header, headerSize);
    if (header.depth >= 16) header.masks = readMasks(file, header, headerSize);

    if (header.hasPalette()) {
        const std::size_t paletteAt = headerAt + headerSize;
        const std::size_t colourSize = isCore ? 3 : 4;
        const std::size_t stated = isCore ? 0 : file.little32(46);
        const std::size_t most = std::size_t{1} << header.depth;
        const std::size_t room = header.pixelsAt > paletteAt ? (header.pixelsAt - paletteAt) / colourSize : 0;
        const std::size_t count = std::min({stated == 0 ? most : stated, most, room});
        header.palette.assign(most, 0xFF000000);
        for (std::size_t index = 0; index < count; ++index) {
            const std::size_t at = paletteAt + index * colourSize;
            header.palette[index] = 0xFF000000 | file.byte(at) | file.byte(at + 1) << 8 | file.byte(at + 2) << 16;
        }
    }
    return header;
}

// Rows come in the order of the file, each padded to 4 bytes.
void readPacked(const ByteReader& file, const Header& header, const auto& rowOf) {
    const std::size_t rowBytes = (static_cast<std::size_t>(header.width) * header.depth + 31) / 32 * 4;
    const auto width = static_cast<std::size_t>(header.width);
    for (std::int64_t y = 0; y < header.height; ++y) {
        const ByteReader row(file.part(header.pixelsAt + static_cast<std::size_t>(y) * rowBytes, rowBytes));
        std::uint32_t* pixels = rowOf(y);
        for (std::size_t x = 0; x < width; ++x) {
            if (header.hasPalette()) {
                const std::size_t bit = x * header.depth;
                const std::uint32_t index = row.byte(bit / 8) >> (8 - header.depth - bit % 8);
                pixels[x] = header.palette[index & ((1U << header.depth) - 1)];
            } else {
                const std::uint32_t pixel = header.depth == 16   ? row.little16(x * 2)
                                            : header.depth == 24 ? row.little16(x * 3) | row.byte(x * 3 + 2) << 16
                                                                 : row.little32(x * 4);
                const std::uint32_t alpha = header.masks[3].isEmpty() ? 255 : header.masks[3].of(pixel);
                pixels[x] = alpha << 24 | header.masks[0].of(pixel) << 16 | header.masks[1].of(pixel) << 8 |
                            header.masks[2].of(pixel);
            }
        }
    }
}

// Pairs of a length and a colour, or of two 4-bit colours in turn; a length of 0 introduces something else.
void readRuns(const ByteReader& file, const Header& header, const auto& rowOf) {
    enum Escape : std::uint32_t { endOfRow = 0, endOfPicture = 1, jump = 2 };
    const bool nibbles = header.compression == runsOf4;
    std::int64_t x = 0;
    std::int64_t y = 0;
    const auto put = [&](std::uint32_t index) {
        if (x >= header.width || y >= header.height) throw FileProblem("its runs lead out of the picture");
        rowOf(y)[x++] = header.palette[index];
    };
    const auto half = [](std::uint32_t byte, std::uint32_t which) { return which % 2 == 0 ? byte >> 4 : byte & 15; };

    for (std::int64_t row = 0; row < header.height; ++row) std::fill_n(rowOf(row), header.width, header.palette[0]);
    for (std::size_t at = header.pixelsAt;;) {
        const std::uint32_t length = file.byte(at);
        const std::uint32_t value = file.byte(at + 1);
        at += 2;
        if (length > 0) {
            for (std::uint32_t index = 0; index < length; ++index) put(nibbles ? half(value, index) : value);
        } else if (value == endOfPicture) {
            return;
        } else if (value == endOfRow) {
            x = 0;
            ++y;
        } else if (value == jump) {
            x += file.byte(at);
            y += file.byte(at + 1);
            at += 2;
        } else {  // so many colours one by one, padded to 2 bytes
            for (std::uint32_t index = 0; index < value; ++index)
                put(nibbles ? half(file.byte(at + index / 2), index) : file.byte(at + index));
            at += nibbles ? (value + 3) / 4 * 2 : (value + 1) / 2 * 2;
        }
        if (y > header.height) throw FileProblem("its runs lead out of the picture");
    }
}

void describe(const ByteReader& file, const Header& header, OwnedPicture& picture) {
    Picture& view = picture.view;
    view.width = static_cast<int>(header.width);
    view.height = static_cast<int>(header.height);
    view.hasAlpha = !header.masks[3].isEmpty();
    view.origin.bitsPerSample = static_cast<int>(header.depth);
    if (!header.hasPalette()) {
        view.origin.bitsPerSample = 0;
        for (const Mask& mask : header.masks)
            view.origin.bitsPerSample = std::max(view.origin.bitsPerSample, mask.width());
    }
    const std::uint32_t headerSize = file.little32(headerAt);
    if (headerSize >= plainHeader) {
        view.metadata.horizontalDensity = static_cast<std::int32_t>(file.little32(38)) / 1000.0;
        view.metadata.verticalDensity = static_cast<std::int32_t>(file.little32(42)) / 1000.0;
    }
    if (headerSize == headerWithProfile && file.little32(headerAt + 56) == embeddedProfile)
        picture.setProfile(
            file.part(std::size_t{file.little32(headerAt + 112)} + headerAt, file.little32(headerAt + 116)));
}

void append(std::vector<std::uint8_t>& bytes, std::uint32_t value, int count = 4) {
    for (int index = 0; index < count; ++index) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * index));
}

}  // namespace

void readBmp(std::span<const std::uint8_t> bytes, bool headerOnly, OwnedPicture& picture) {
    const ByteReader file(bytes);
    const Header header = readHeader(file);
    if (header.hasRuns()) {
        checkFileCanHold(Format::bmp, header.width, header.height, bytes.size());
    } else {
        const std::uint64_t rowBytes = (static_cast<std::uint64_t>(header.width) * header.depth + 31) / 32 * 4;
        file.require(header.pixelsAt + rowBytes * static_cast<std::uint64_t>(header.height));
    }
    describe(file, header, picture);
    if (headerOnly) return;

    const auto width = static_cast<std::size_t>(header.width);
    picture.pixels.reset(new std::uint32_t[width * static_cast<std::size_t>(header.height)]);
    const auto rowOf = [&](std::int64_t y) {
        return picture.pixels.get() + static_cast<std::size_t>(header.fromTheTop ? y : header.height - 1 - y) * width;
    };
    if (header.hasRuns()) {
        readRuns(file, header, rowOf);
    } else {
        readPacked(file, header, rowOf);
    }
}

std::vector<std::uint8_t> writeBmp(const Picture& picture, bool withAlpha) {
    const Bytes profile = picture.metadata.profile;
    const std::uint32_t headerSize = withAlpha || profile.size > 0 ? headerWithProfile : plainHeader;
    const std::uint32_t depth = withAlpha ? 32 : 24;
    const auto width = static_cast<std::uint32_t>(picture.width);
    const auto height = static_cast<std::uint32_t>(picture.height);
    const std::uint32_t rowBytes = (width * depth + 31) / 32 * 4;
    const std::uint32_t pixelsAt = static_cast<std::uint32_t>(headerAt) + headerSize;
    const std::uint32_t profileAt = pixelsAt + rowBytes * height;
    const std::uint32_t fileSize = profileAt + static_cast<std::uint32_t>(profile.size);
    const auto perMetre = [](double perMillimetre) {
        return static_cast<std::uint32_t>(std::lround(perMillimetre * 1000));
    };

    std::vector<std::uint8_t> file;
    file.reserve(fileSize);
    file.assign({'B', 'M'});
    for (const std::uint32_t field : {fileSize, 0U, pixelsAt, headerSize, width, height}) append(file, field);
    append(file, 1, 2);
    append(file, depth, 2);
    for (const std::uint32_t field :
         {withAlpha ? std::uint32_t{masked} : std::uint32_t{packed}, rowBytes * height,
          perMetre(picture.metadata.horizontalDensity), perMetre(picture.metadata.verticalDensity), 0U, 0U})
        append(file, field);
    if (headerSize == headerWithProfile) {
        constexpr std::uint32_t perceptual = 4;
        for (const std::uint32_t mask : {0xFF0000U, 0xFF00U, 0xFFU, withAlpha ? 0xFF000000U : 0U}) append(file, mask);
        append(file, profile.size > 0 ? embeddedProfile : standardSpace);
        file.resize(file.size() + 48);  // end points and gamma, which these spaces do not use
        append(file, perceptual);
        append(file, profile.size > 0 ? profileAt - static_cast<std::uint32_t>(headerAt) : 0);
        append(file, static_cast<std::uint32_t>(profile.size));
        append(file, 0);
    }
    for (std::uint32_t y = height; y-- > 0;) {
        const std::uint32_t* row = picture.pixels + std::size_t{y} * width;
        for (std::uint32_t x = 0; x < width; ++x) append(file, row[x], withAlpha ? 4 : 3);
        file.resize(pixelsAt + std::size_t{rowBytes} * (height - y));
    }
    file.insert(file.end(), profile.data, profile.data + profile.size);
    return file;
}

}  // namespace pxkfiles
