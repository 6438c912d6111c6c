/// Numbers that look random and are the same in every run.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

namespace pxk::test {

class Random {
  public:
    explicit Random(std::uint32_t seed) : engine_(seed) {}

    std::uint32_t word() { return static_cast<std::uint32_t>(engine_()); }

    /// From `low` to `high`, both included.
    int between(int low, int high) {
        const auto span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1;
        return static_cast<int>(low + static_cast<std::int64_t>(engine_() % span));
    }

    /// A pixel word; every fourth one grey in all formats, so that equal channels are frequent.
    std::uint32_t pixelWord() {
        const std::uint32_t value = word();
        return value % 4 == 0 ? (value >> 24) * 0x01010101U : value;
    }

    std::vector<std::uint32_t> pixelWords(std::size_t count) {
        std::vector<std::uint32_t> words(count);
        for (std::uint32_t& each : words) each = pixelWord();
        return words;
    }

  private:
    std::mt19937 engine_;
};

}  // namespace pxk::test
