/// A file's format, detected from the content or chosen by the extension.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pxkhost {

enum class PictureFormat { png, jpeg, gif, bmp, webp, tiff, avif };

/// "PNG", "JPEG" and so on.
std::string_view formatName(PictureFormat format);

/// The format that a file's first bytes show, or nothing when they show none of the seven.
std::optional<PictureFormat> formatOfContent(std::span<const std::uint8_t> bytes);

/// The format that the path's ending names in any letter case, or nothing.
std::optional<PictureFormat> formatOfEnding(const std::filesystem::path& path);

/// The endings understood, for messages: ".png, .jpg, ... or .avif".
std::string listOfEndings();

/// The formats understood, for messages: "PNG, JPEG, ... or AVIF".
std::string listOfFormats();

}  // namespace pxkhost
