/// The lines of a readable data file, each with its number, so that a complaint can name its place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace pxk::tool {

/// Walks over the lines of UTF-8 text that hold words. Blank lines are passed over, as are comments, from a # to the
/// end of the line; lines end in LF or CR LF.
class DataLines {
  public:
    /// `text` is what the file `path` holds, and is to outlive this.
    DataLines(std::string path, std::string_view text);

    /// Goes to the next line with words; false when there is none.
    bool next();

    const std::vector<std::string_view>& words() const { return words_; }

    /// Whether a word is written as a number, nan and the infinite included.
    bool isNumber(std::size_t word) const;

    /// A word in quotes, shortened and made fit for messages.
    std::string shown(std::size_t word) const;

    /// A word as a number. Throws WorkError when it is none, or not a finite one.
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

}  // namespace pxk::tool
