/// Failures in words.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace pxkfiles {

/// Why a picture file cannot be read or written, without its name: "the file is cut short".
class FileProblem : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// "a, b or c".
template <class Names>
std::string listOf(const Names& names) {
    std::string list;
    for (auto name = std::begin(names); name != std::end(names); ++name) {
        if (name != std::begin(names)) list += std::next(name) == std::end(names) ? " or " : ", ";
        list += *name;
    }
    return list;
}

/// A name as a message shows it: in double quotes, on one line, its middle left out when it is very long.
std::string quoted(std::string_view name);

/// The problem behind a failed call of libvips: memory, a variant that is not supported, or damage, each with the
/// library's own words.
/// @throws FileProblem or std::bad_alloc
[[noreturn]] void throwReadingProblem();

/// The same for a call that encodes.
/// @throws FileProblem or std::bad_alloc
[[noreturn]] void throwWritingProblem();

/// The words of a failed system call.
/// @throws FileProblem
[[noreturn]] void throwSystemProblem();

/// Keeps libraries from printing on stderr while it lives: the decoder of AVIF has no other switch within reach. glibc
/// lets its stream variables be assigned; elsewhere the words come through.
class QuietStderr {
  public:
    QuietStderr();
    ~QuietStderr();
    QuietStderr(const QuietStderr&) = delete;
    QuietStderr& operator=(const QuietStderr&) = delete;
};

}  // namespace pxkfiles
