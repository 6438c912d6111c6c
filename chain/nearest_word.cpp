#include "chain/nearest_word.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "chain/text.h"

namespace pxk::chain {
namespace {

/// The fewest letters to insert, delete or replace to make one word of the other.
std::size_t editDistance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
        }
    }
    return row.back();
}

std::string comparable(std::string_view word) {
    return lowerCase(word.substr(std::min(word.find_first_not_of('-'), word.size())));
}

}  // namespace

std::string nearestWord(std::string_view written, const std::vector<std::string>& words) {
    const std::string wanted = comparable(written);
    std::size_t allowed = std::max<std::size_t>(wanted.size() / 3, 2) + 1;
    std::string nearest;
    for (const std::string& each : words) {
        const std::size_t distance = editDistance(wanted, comparable(each));
        if (distance >= allowed) continue;
        allowed = distance;
        nearest = each;
    }
    return nearest;
}

std::string suggestionFor(std::string_view written, const std::vector<std::string>& words) {
    const std::string nearest = nearestWord(written, words);
    return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

}  // namespace pxk::chain
