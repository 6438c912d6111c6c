#include "chain/data_lines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include "chain/error.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr std::size_t longestShown = 40;
constexpr std::string_view blanks = " \t\r\v\f";

void splitInto(std::vector<std::string_view>& words, std::string_view line) {
    words.clear();
    line = line.substr(0, line.find('#'));
    for (std::size_t start = line.find_first_not_of(blanks); start != std::string_view::npos;) {
        const std::size_t end = std::min(line.find_first_of(blanks, start), line.size());
        words.push_back(line.substr(start, end - start));
        start = line.find_first_not_of(blanks, end);
    }
}

struct Parsed {
    bool isNumber;
    bool isFinite;
    double value;
};

Parsed parsed(std::string_view word) {
    // from_chars takes no plus sign.
    if (word.size() > 1 && word[0] == '+' && word[1] != '-') word.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    const bool isNumber = error != std::errc::invalid_argument && end == word.data() + word.size();
    return {isNumber, error == std::errc() && std::isfinite(value), value};
}

}  // namespace

DataLines::DataLines(std::string path, std::string_view text)
    : path_(std::move(path)), rest_(withoutByteOrderMark(text)) {}

bool DataLines::next() {
    while (!rest_.empty()) {
        ++line_;
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        splitInto(words_, rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        if (!words_.empty()) return true;
    }
    words_.clear();
    atEnd_ = true;
    return false;
}

bool DataLines::isNumber(std::size_t word) const { return parsed(words_.at(word)).isNumber; }

std::string DataLines::shown(std::size_t word) const {
    return inQuotes(printable(words_.at(word).substr(0, longestShown)));
}

double DataLines::number(std::size_t word) const {
    const Parsed result = parsed(words_.at(word));
    if (!result.isNumber) fail(shown(word) + " is not a number");
    if (!result.isFinite) fail(shown(word) + " is not a finite number");
    return result.value;
}

void DataLines::fail(const std::string& message) const {
    throw WorkError(inQuotes(path_) + ", " + (atEnd_ ? "at the end" : "line " + std::to_string(line_)) + ": " +
                    message);
}

}  // namespace pxk::chain
