#include "bench/outcome.h"

#include <cstddef>
#include <string>

namespace pxkbench {

Outcome outcomeOf(const pxkhost::Picture& picture) {
    Outcome colours;
    colours.reserve(static_cast<std::size_t>(picture.width()) * static_cast<std::size_t>(picture.height()));
    for (int y = 0; y < picture.height(); ++y) {
        const std::uint32_t* const row = picture.row(y);
        for (int x = 0; x < picture.width(); ++x)
            colours.push_back(pxkhost::argbFromWord(picture.layout(), row[x]) & 0xFFFFFF);
    }
    return colours;
}

Outcome outcomeOf(const pxkhost::String& string) {
    constexpr std::size_t headerSize = 40;
    Outcome colours;
    const std::string& bytes = string.bytes();
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])); };
    for (std::size_t i = headerSize; i + 2 < bytes.size(); i += 3)
        colours.push_back(byteAt(i) << 16 | byteAt(i + 1) << 8 | byteAt(i + 2));
    return colours;
}

}  // namespace pxkbench
