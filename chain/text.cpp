#include "chain/text.h"

#include <algorithm>

namespace pxk::chain {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isControl(unsigned char c) { return c < 0x20 || c == 0x7F; }

bool continues(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

/// The length of the well-formed UTF-8 character at `at`, 0 when there is none. The C1 control characters count as
/// malformed, since a terminal obeys them.
std::size_t characterLength(std::string_view text, std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if (!continues(text, at + i)) return 0;
    }
    if (length == 0) return 0;
    const auto second = static_cast<unsigned char>(text[at + 1]);
    const bool control = first == 0xC2 && second < 0xA0;
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool surrogate = first == 0xED && second >= 0xA0;
    const bool tooLarge = first == 0xF4 && second >= 0x90;
    return control || overlong || surrogate || tooLarge ? 0 : length;
}

void appendEscaped(std::string& text, char byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text.append("\\x").append(1, digits[value >> 4U]).append(1, digits[value & 0xFU]);
}

}  // namespace

std::string_view withoutByteOrderMark(std::string_view text) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    return text;
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool sameLetters(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

bool endsIn(std::string_view text, std::string_view letters) {
    return text.size() >= letters.size() && sameLetters(text.substr(text.size() - letters.size()), letters);
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::string inQuotes(std::string_view text) { return '"' + std::string(text) + '"'; }

bool isPlainText(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text, at);
        const char c = text[at];
        if (length == 0 || (isControl(static_cast<unsigned char>(c)) && c != '\t' && c != '\n' && c != '\r'))
            return false;
        at += length;
    }
    return true;
}

std::string printable(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text, at);
        if (length == 0 || isControl(static_cast<unsigned char>(text[at]))) {
            appendEscaped(result, text[at]);
            ++at;
        } else {
            result += text.substr(at, length);
            at += length;
        }
    }
    return result;
}

std::size_t characterCount(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

}  // namespace pxk::chain
