#include "tool/commands/unknown_command.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "chain/text.h"

namespace pxk::tool {
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

std::vector<std::string> wordsOf(const CLI::App& app) {
    std::vector<std::string> words;
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
        words.push_back(each->get_name());
    }
    words.insert(words.end(), {"--help", "--version"});
    return words;
}

}  // namespace

std::string whyNoCommand(const CLI::App& app, const std::string& word) {
    const std::string wanted = chain::lowerCase(word);
    std::size_t allowed = std::max<std::size_t>(wanted.size() / 3, 2) + 1;
    std::string nearest;
    for (const std::string& each : wordsOf(app)) {
        const std::size_t distance =
            editDistance(wanted, each.substr(std::min(each.find_first_not_of('-'), each.size())));
        if (distance >= allowed) continue;
        allowed = distance;
        nearest = each;
    }
    return "there is no file and no command " + chain::inQuotes(word) +
           (nearest.empty() ? "" : "; did you mean " + nearest + "?");
}

}  // namespace pxk::tool
