#include "files/picture_format.h"

#include <algorithm>
#include <array>

namespace pxkhost {
namespace {

constexpr std::array<std::string_view, 7> formatNames = {"PNG", "JPEG", "GIF", "BMP", "WebP", "TIFF", "AVIF"};

struct Ending {
    std::string_view text;
    PictureFormat format;
};

constexpr std::array<Ending, 9> endings = {{{".png", PictureFormat::png},
                                            {".jpg", PictureFormat::jpeg},
                                            {".jpeg", PictureFormat::jpeg},
                                            {".gif", PictureFormat::gif},
                                            {".bmp", PictureFormat::bmp},
                                            {".webp", PictureFormat::webp},
                                            {".tif", PictureFormat::tiff},
                                            {".tiff", PictureFormat::tiff},
                                            {".avif", PictureFormat::avif}}};

using namespace std::string_view_literals;

struct Signature {
    std::string_view text;
    PictureFormat format;
};

constexpr std::array<Signature, 8> signatures = {{{"\x89PNG\r\n\x1a\n"sv, PictureFormat::png},
                                                  {"\xff\xd8\xff"sv, PictureFormat::jpeg},
                                                  {"GIF87a"sv, PictureFormat::gif},
                                                  {"GIF89a"sv, PictureFormat::gif},
                                                  {"BM"sv, PictureFormat::bmp},
                                                  {"II*\0"sv, PictureFormat::tiff},
                                                  {"MM\0*"sv, PictureFormat::tiff},
                                                  {"II+\0"sv, PictureFormat::tiff}}};

// AVIF names itself among the brands of its first box: size, "ftyp", main brand, version, further brands.
bool hasAvifBrand(std::string_view text) {
    if (text.size() < 16 || text.substr(4, 4) != "ftyp") return false;
    const auto byte = [&](std::size_t at) { return static_cast<std::size_t>(static_cast<unsigned char>(text[at])); };
    const std::size_t boxSize = byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3);
    for (std::size_t at = 8; at + 4 <= std::min(boxSize, text.size()); at += 4)
        if (at != 12 && (text.substr(at, 4) == "avif" || text.substr(at, 4) == "avis")) return true;
    return false;
}

// "a, b or c".
void appendToList(std::string& list, std::string_view name, bool isLast) {
    if (!list.empty()) list += isLast ? " or " : ", ";
    list += name;
}

}  // namespace

std::string_view formatName(PictureFormat format) { return formatNames[static_cast<std::size_t>(format)]; }

std::optional<PictureFormat> formatOfContent(std::span<const std::uint8_t> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    for (const Signature& signature : signatures)
        if (text.starts_with(signature.text)) return signature.format;
    if (text.starts_with("RIFF") && text.size() >= 12 && text.substr(8, 4) == "WEBP") return PictureFormat::webp;
    if (hasAvifBrand(text)) return PictureFormat::avif;
    return std::nullopt;
}

std::optional<PictureFormat> formatOfEnding(const std::filesystem::path& path) {
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    for (const Ending& known : endings)
        if (known.text == ending) return known.format;
    return std::nullopt;
}

std::string listOfEndings() {
    std::string list;
    for (const Ending& ending : endings) appendToList(list, ending.text, &ending == &endings.back());
    return list;
}

std::string listOfFormats() {
    std::string list;
    for (const std::string_view& name : formatNames) appendToList(list, name, &name == &formatNames.back());
    return list;
}

}  // namespace pxkhost
