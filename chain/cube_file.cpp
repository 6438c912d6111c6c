#include "chain/cube_file.h"

#include <array>
#include <charconv>
#include <cmath>

#include "chain/data_lines.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

/// Far beyond any highlight, and far below the largest float.
constexpr double largestNumber = 1e9;

class CubeReader {
  public:
    CubeReader(const std::string& path, std::string_view text) : lines_(path, text) {}

    ColorCube read() {
        while (lines_.next()) {
            if (!readKeyword()) readRow();
        }
        if (cube_.size == 0) lines_.fail("there is no LUT_3D_SIZE, so this is not a 3D LUT");
        if (rows_ < pointCount(cube_.size)) {
            lines_.fail("there are " + std::to_string(rows_) + " rows of numbers; " + rowsNeeded());
        }
        return std::move(cube_);
    }

  private:
    bool readKeyword() {
        const std::string_view word = lines_.words().front();
        if (sameLetters(word, "TITLE")) return true;
        if (sameLetters(word, "LUT_3D_SIZE")) return readSize();
        if (sameLetters(word, "DOMAIN_MIN")) return readDomain(cube_.low);
        if (sameLetters(word, "DOMAIN_MAX")) return readDomain(cube_.high);
        if (sameLetters(word, "LUT_1D_SIZE")) {
            lines_.fail("this is a 1D LUT; expected a 3D LUT, with LUT_3D_SIZE");
        }
        if (lines_.isNumber(0)) return false;
        lines_.fail(lines_.shown(0) + " is neither a number nor TITLE, LUT_3D_SIZE, DOMAIN_MIN or DOMAIN_MAX");
    }

    bool readSize() {
        if (cube_.size != 0) lines_.fail("LUT_3D_SIZE appears a second time");
        const double size = lines_.words().size() == 2 ? lines_.number(1) : 0;
        if (size < ColorCube::smallest || size > ColorCube::largest || size != std::floor(size)) {
            lines_.fail("LUT_3D_SIZE must be a whole number from 2 to 256");
        }
        cube_.size = static_cast<int>(size);
        return true;
    }

    bool readDomain(ColorTriple& end) {
        if (rows_ > 0) lines_.fail("the domain must come before the first row of numbers");
        end = threeNumbers("expected three numbers: red, green and blue", 1);
        return true;
    }

    void readRow() {
        if (cube_.size == 0) lines_.fail("expected LUT_3D_SIZE before the first row of numbers");
        const ColorTriple row = threeNumbers("a row is three numbers: red, green and blue", 0);
        if (rows_ == 0) checkDomain();
        if (++rows_ > pointCount(cube_.size)) lines_.fail("this is one row too many; " + rowsNeeded());
        for (const double each : row) cube_.entries.push_back(static_cast<float>(each));
    }

    ColorTriple threeNumbers(const char* rule, std::size_t first) const {
        if (lines_.words().size() != first + 3) lines_.fail(rule);
        ColorTriple numbers{};
        for (std::size_t x = 0; x < 3; ++x) {
            numbers[x] = lines_.number(first + x);
            if (std::abs(numbers[x]) > largestNumber)
                lines_.fail(lines_.shown(first + x) + " is too large; white is 1");
        }
        return numbers;
    }

    void checkDomain() const {
        for (std::size_t x = 0; x < 3; ++x) {
            if (cube_.low[x] < cube_.high[x]) continue;
            lines_.fail("the rows begin here, but DOMAIN_MIN is not below DOMAIN_MAX in every channel");
        }
    }

    std::string rowsNeeded() const {
        return "LUT_3D_SIZE " + std::to_string(cube_.size) + " needs " + std::to_string(pointCount(cube_.size));
    }

    DataLines lines_;
    ColorCube cube_;
    std::size_t rows_ = 0;
};

}  // namespace

ColorCube parseCube(const std::string& path, std::string_view text) { return CubeReader(path, text).read(); }

std::string cubeText(const ColorCube& cube, std::string_view title) {
    constexpr int digits = 6;
    std::string text = "TITLE " + inQuotes(title) + "\nLUT_3D_SIZE " + std::to_string(cube.size) + "\n";
    std::size_t column = 0;
    for (const float each : cube.entries) {
        std::array<char, 64> number{};
        const auto [end, error] =
            std::to_chars(number.data(), number.data() + number.size(), each, std::chars_format::fixed, digits);
        text.append(number.data(), end).append(++column % 3 == 0 ? "\n" : " ");
    }
    return text;
}

}  // namespace pxk::chain
