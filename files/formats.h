/// The formats, by their names, contents and extensions.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pxkfiles {

enum class Format : std::uint8_t { png, jpeg, gif, bmp, webp, tiff, avif, heic };

/// "PNG", "JPEG" and so on.
const char* nameOf(Format format);

/// The format that a file's first bytes show, or nothing. 64 bytes decide nearly always, 4096 always.
std::optional<Format> formatOfContent(std::span<const std::uint8_t> bytes);

/// The format to write that the extension names in any letter case, or nothing. ".png" and "png" are the same.
std::optional<Format> formatOfExtension(std::string_view extension);

/// The formats that are read, for messages: "PNG, JPEG, ... or HEIC".
std::string listOfFormats();

/// The extensions of the formats that are written, for messages: ".png, .jpg, ... or .avif".
std::string listOfExtensions();

}  // namespace pxkfiles
