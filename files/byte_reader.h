/// The bytes of a file, read without ever leaving it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "files/messages.h"

namespace pxkfiles {

/// A file's bytes by position. Every access beyond the end throws FileProblem: the file is cut short.
class ByteReader {
  public:
    explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::size_t size() const { return bytes_.size(); }

    /// Throws unless the file reaches up to position `end`.
    void require(std::uint64_t end) const {
        if (end > bytes_.size()) throw FileProblem("the file is cut short");
    }

    std::uint32_t byte(std::size_t at) const {
        require(std::uint64_t{at} + 1);
        return bytes_[at];
    }

    std::uint32_t little16(std::size_t at) const { return byte(at) | byte(at + 1) << 8; }
    std::uint32_t little32(std::size_t at) const { return little16(at) | little16(at + 2) << 16; }
    std::uint32_t big16(std::size_t at) const { return byte(at) << 8 | byte(at + 1); }
    std::uint32_t big32(std::size_t at) const { return big16(at) << 16 | big16(at + 2); }

    std::span<const std::uint8_t> part(std::size_t at, std::size_t length) const {
        require(std::uint64_t{at} + length);
        return bytes_.subspan(at, length);
    }

    std::string_view text(std::size_t at, std::size_t length) const {
        return {reinterpret_cast<const char*>(part(at, length).data()), length};
    }

  private:
    std::span<const std::uint8_t> bytes_;
};

}  // namespace pxkfiles
