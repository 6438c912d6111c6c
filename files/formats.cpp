#include "files/formats.h"

#include <algorithm>
#include <array>

#include "files/messages.h"

namespace pxkfiles {
namespace {

using namespace std::string_view_literals;

constexpr std::array formatNames = {"PNG", "JPEG", "GIF", "BMP", "WebP", "TIFF", "AVIF", "HEIC"};

constexpr std::array extensions = {".png", ".jpg", ".jpeg", ".gif", ".bmp", ".webp", ".tif", ".tiff", ".avif"};
constexpr std::array formatsOfExtensions = {Format::png,  Format::jpeg, Format::jpeg, Format::gif, Format::bmp,
                                            Format::webp, Format::tiff, Format::tiff, Format::avif};
static_assert(extensions.size() == formatsOfExtensions.size());

struct Signature {
    std::string_view text;
    Format format;
};

constexpr std::array<Signature, 9> signatures = {{{"\x89PNG\r\n\x1a\n"sv, Format::png},
                                                  {"\xff\xd8\xff"sv, Format::jpeg},
                                                  {"GIF87a"sv, Format::gif},
                                                  {"GIF89a"sv, Format::gif},
                                                  {"BM"sv, Format::bmp},
                                                  {"II*\0"sv, Format::tiff},
                                                  {"MM\0*"sv, Format::tiff},
                                                  {"II+\0"sv, Format::tiff},
                                                  {"MM\0+"sv, Format::tiff}}};

// AVIF and HEIC name themselves in their first box: size, "ftyp", main brand, version, further brands.
std::optional<Format> formatOfBrands(std::string_view text) {
    if (text.size() < 16 || text.substr(4, 4) != "ftyp") return std::nullopt;
    const auto byte = [&](std::size_t at) { return static_cast<std::size_t>(static_cast<unsigned char>(text[at])); };
    const std::size_t boxSize = byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
    const auto hasBrand = [&](std::initializer_list<std::string_view> brands) {
        for (std::size_t at = 8; at + 4 <= std::min(boxSize, text.size()); at += 4)
            if (at != 12 && std::find(brands.begin(), brands.end(), text.substr(at, 4)) != brands.end()) return true;
        return false;
    };
    if (hasBrand({"avif", "avis"})) return Format::avif;
    if (hasBrand({"heic", "heix", "heim", "heis", "hevc", "hevx", "mif1", "msf1"})) return Format::heic;
    return std::nullopt;
}

}  // namespace

const char* nameOf(Format format) { return formatNames[static_cast<std::size_t>(format)]; }

std::optional<Format> formatOfContent(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const Signature& signature : signatures)
        if (text.starts_with(signature.text)) return signature.format;
    if (text.starts_with("RIFF") && text.size() >= 12 && text.substr(8, 4) == "WEBP") return Format::webp;
    return formatOfBrands(text);
}

std::optional<Format> formatOfExtension(std::string_view extension) {
    std::string wanted = extension.starts_with('.') ? "" : ".";
    for (const char c : extension) wanted += c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    const auto* found = std::find(extensions.begin(), extensions.end(), wanted);
    if (found == extensions.end()) return std::nullopt;
    return formatsOfExtensions[static_cast<std::size_t>(found - extensions.begin())];
}

std::string listOfFormats() { return listOf(formatNames); }

std::string listOfExtensions() { return listOf(extensions); }

}  // namespace pxkfiles
