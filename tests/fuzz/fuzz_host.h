/// What the fuzzers share: a host that stays open, inputs read field by field, and seeds to start from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

#include "host/host.h"

namespace pxk::fuzz {

using Bytes = std::vector<std::uint8_t>;

/// Reads an input from its front. Past the end there are zeros.
class InputReader {
  public:
    InputReader(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    template <class Field>
    Field take() {
        Field field{};
        const std::size_t size = std::min(sizeof field, rest_.size());
        if (size > 0) std::memcpy(&field, rest_.data(), size);
        rest_ = rest_.subspan(size);
        return field;
    }

    Bytes takeRest() { return {rest_.begin(), rest_.end()}; }

  private:
    std::span<const std::uint8_t> rest_;
};

/// Puts an input together, field by field.
class InputWriter {
  public:
    template <class Field>
    InputWriter& put(Field field) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(&field);
        bytes_.insert(bytes_.end(), bytes, bytes + sizeof field);
        return *this;
    }

    InputWriter& put(const Bytes& bytes) {
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }

    const Bytes& bytes() const { return bytes_; }

  private:
    Bytes bytes_;
};

/// The inputs that a fuzzer starts from; every fuzzer defines its own.
std::vector<Bytes> seeds();

/// The host, open since the fuzzer started, with the plugin linked into the program.
pxkhost::Host& host();

/// Chooses what new pictures are: one of the six layouts of bitmaps, or libgd's on a console host, where `choice` does
/// not count. Returns the format's code.
int choosePictures(std::uint8_t choice);

/// Ends the program as a finding, with a word on what is wrong, unless `condition` holds.
void require(bool condition, const char* what);

/// Requires that every reference and lock was given back.
void requireBalancedBooks();

}  // namespace pxk::fuzz
