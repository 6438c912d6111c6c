/// A path as a message shows it.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

namespace pxkhost {

/// A path as a message shows it: in double quotes and on one line.
inline std::string quoted(const std::filesystem::path& path) {
    std::string text = path.string();
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return '"' + text + '"';
}

}  // namespace pxkhost
