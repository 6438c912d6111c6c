#include "chain/diagnostic.h"

#include <algorithm>

#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr std::size_t shownBefore = 60;
constexpr std::size_t shownAfter = 40;

/// The byte where the character that holds byte `at` starts.
std::size_t characterStart(std::string_view text, std::size_t at) {
    while (at > 0 && at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) --at;
    return at;
}

/// Text for the line above the caret, in which a tab takes one column.
std::string shownText(std::string_view text) {
    std::string result(text);
    std::replace(result.begin(), result.end(), '\t', ' ');
    return printable(result);
}

}  // namespace

std::string pointAt(std::string_view text, const ChainError& error) {
    const std::size_t position = std::min(error.position, text.size());
    const std::size_t before = text.substr(0, position).find_last_of('\n');
    const std::size_t start = before == std::string_view::npos ? 0 : before + 1;
    const std::size_t end = std::min(text.find_first_of("\r\n", position), text.size());
    const auto row = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(start), '\n');
    const bool severalLines = text.find('\n') != std::string_view::npos;

    const std::size_t from = characterStart(text, std::max(start, position - std::min(position, shownBefore)));
    const std::size_t to = characterStart(text, std::min(end, position + shownAfter));
    const std::string left = (from > start ? "..." : "") + shownText(text.substr(from, position - from));
    const std::string right = shownText(text.substr(position, to - position)) + (to < end ? "..." : "");

    std::string result = severalLines ? "line " + std::to_string(row) + ", " : "";
    result += "column " + std::to_string(characterCount(text.substr(start, position - start)) + 1) + ": ";
    result += error.what();
    result += "\n  " + left + right + "\n  " + std::string(characterCount(left), ' ') + "^";
    return result;
}

}  // namespace pxk::chain
