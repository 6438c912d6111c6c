/// The lines of a readable data file, each with its number, so that an error message can name the place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pxk::chain {

/// Walks over the lines of UTF-8 text that hold words. Skips blank lines, comments, from a # to the end of the line,
/// and a byte order mark; lines end in LF or CR LF.
class DataLines {
  public:
    /// `text` is what the file `path` holds, and must outlive this.
    DataLines(std::string path, std::string_view text);

    /// Goes to the next line with words; false when there is none.
    bool next();

    const std::vector<std::string_view>& words() const { return words_; }

    /// Whether a word is a number, NaN and infinities included.
    bool isNumber(std::size_t word) const;

    /// A word in quotes, shortened and escaped for messages.
    std::string shown(std::size_t word) const;

    /// A word as a number. Throws WorkError when it is not a finite number.
    double number(std::size_t word) const;

    /// Throws WorkError: the file, the line, and `message`. Past the last line, the place is the file's end.
    [[noreturn]] void fail(const std::string& message) const;

  private:
    std::string path_;
    std::string_view rest_;
    std::vector<std::string_view> words_;
    std::size_t line_ = 0;
    bool atEnd_ = false;
};

}  // namespace pxk::chain
