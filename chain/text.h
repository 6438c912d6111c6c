/// Helpers for text.
#pragma once

#include <string>
#include <string_view>

namespace pxk::chain {

/// `text` with its ASCII letters in lower case.
std::string lowerCase(std::string_view text);

/// Whether two names are the same in any letter case.
bool sameLetters(std::string_view a, std::string_view b);

/// Whether `text` ends in these letters, in any letter case.
bool endsIn(std::string_view text, std::string_view letters);

/// `text` without the blanks at both ends.
std::string_view trimmed(std::string_view text);

/// `text` in quotes.
std::string inQuotes(std::string_view text);

/// Whether `text` is well-formed UTF-8 without control characters other than tab and line ends.
bool isPlainText(std::string_view text);

/// `text` safe for one line of a terminal: the bytes of control characters and malformed UTF-8 are shown as \xHH.
std::string printable(std::string_view text);

/// UTF-8 text without the byte order mark that some editors put in front of it.
std::string_view withoutByteOrderMark(std::string_view text);

/// The number of characters of UTF-8 text.
std::size_t characterCount(std::string_view text);

}  // namespace pxk::chain
