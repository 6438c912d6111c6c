#include "files/metadata.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <type_traits>

namespace pxkfiles {
namespace {

std::string_view textOf(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

constexpr std::uint32_t orientationTag = 0x0112;
constexpr std::uint32_t exifLinkTag = 0x8769;
constexpr std::uint32_t pixelWidthTag = 0xA002;
constexpr std::uint32_t pixelHeightTag = 0xA003;

/// Directories of entries, each with a tag, a type, a count and a value: EXIF is TIFF without a picture. What lies
/// outside the bytes reads as 0 and is not written.
template <class Byte>
class Exif {
  public:
    explicit Exif(std::span<Byte> bytes) : bytes_(bytes), bigEndian_(!bytes.empty() && bytes[0] == 'M') {}

    std::size_t firstDirectory() const { return get(4, 4); }

    /// Where the entry of a tag lies in a directory, or nothing.
    std::optional<std::size_t> entryOf(std::uint32_t tag, std::size_t directory) const {
        for (std::size_t at = directory + 2, end = behindEntries(directory); at < end; at += entrySize)
            if (get(at, 2) == tag) return at;
        return std::nullopt;
    }

    std::uint32_t value(std::size_t entry) const { return get(entry + 8, valueSize(entry)); }
    void setValue(std::size_t entry, std::uint32_t value) { put(entry + 8, valueSize(entry), value); }

    /// Makes a directory the last one.
    void cutBehind(std::size_t directory) { put(behindEntries(directory), 4, 0); }

  private:
    static constexpr std::size_t entrySize = 12;

    std::size_t behindEntries(std::size_t directory) const { return directory + 2 + get(directory, 2) * entrySize; }

    std::size_t valueSize(std::size_t entry) const {
        constexpr std::uint32_t shortType = 3;
        return get(entry + 2, 2) == shortType ? 2 : 4;
    }

    std::size_t shiftOf(std::size_t index, std::size_t size) const {
        return 8 * (bigEndian_ ? size - 1 - index : index);
    }

    std::uint32_t get(std::size_t at, std::size_t size) const {
        if (at > bytes_.size() || bytes_.size() - at < size) return 0;
        std::uint32_t value = 0;
        for (std::size_t index = 0; index < size; ++index)
            value |= std::uint32_t{bytes_[at + index]} << shiftOf(index, size);
        return value;
    }

    void put(std::size_t at, std::size_t size, std::uint32_t value) {
        if (at > bytes_.size() || bytes_.size() - at < size) return;
        for (std::size_t index = 0; index < size; ++index)
            bytes_[at + index] = static_cast<std::uint8_t>(value >> shiftOf(index, size));
    }

    std::span<Byte> bytes_;
    bool bigEndian_;
};

}  // namespace

std::span<const std::uint8_t> plainExif(std::span<const std::uint8_t> exif) {
    using namespace std::string_view_literals;
    if (textOf(exif).starts_with("Exif\0\0"sv)) exif = exif.subspan(6);
    const bool marked = textOf(exif).starts_with("II*\0"sv) || textOf(exif).starts_with("MM\0*"sv);
    return marked ? exif : std::span<const std::uint8_t>{};
}

int exifOrientation(std::span<const std::uint8_t> exif) {
    const Exif<const std::uint8_t> directories(exif);
    const std::optional<std::size_t> entry = directories.entryOf(orientationTag, directories.firstDirectory());
    const std::uint32_t orientation = entry ? directories.value(*entry) : 1;
    return orientation >= 1 && orientation <= 8 ? static_cast<int>(orientation) : 1;
}

std::vector<std::uint8_t> updatedExif(std::span<const std::uint8_t> exif, int width, int height) {
    std::vector<std::uint8_t> bytes(exif.begin(), exif.end());
    Exif<std::uint8_t> directories{std::span<std::uint8_t>(bytes)};
    const auto set = [&](std::size_t directory, std::uint32_t tag, int value) {
        if (const auto entry = directories.entryOf(tag, directory))
            directories.setValue(*entry, static_cast<std::uint32_t>(value));
    };
    const std::size_t first = directories.firstDirectory();
    set(first, orientationTag, 1);
    if (const auto link = directories.entryOf(exifLinkTag, first)) {
        const std::size_t directory = directories.value(*link);
        set(directory, pixelWidthTag, width);
        set(directory, pixelHeightTag, height);
    }
    directories.cutBehind(first);  // the second directory is the thumbnail's
    return bytes;
}

bool isRgbProfile(std::span<const std::uint8_t> profile) {
    constexpr std::size_t colourSpaceAt = 16;
    return profile.size() > 128 && textOf(profile).substr(colourSpaceAt, 4) == "RGB ";
}

std::string profileName(std::span<const std::uint8_t> profile) {
    const std::unique_ptr<std::remove_pointer_t<cmsHPROFILE>, cmsBool (*)(cmsHPROFILE)> open(
        cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size())), cmsCloseProfile);
    std::array<char, 128> name{};
    if (open) cmsGetProfileInfoASCII(open.get(), cmsInfoDescription, "en", "US", name.data(), name.size());
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return c != 0 && (c < ' ' || c > '~'); }, '?');
    name.back() = 0;
    return name.data();
}

}  // namespace pxkfiles
