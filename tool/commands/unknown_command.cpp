#include "tool/commands/unknown_command.h"

#include <vector>

#include "chain/nearest_word.h"
#include "chain/text.h"

namespace pxk::tool {
namespace {

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
    return "there is no file and no command " + chain::inQuotes(word) + chain::suggestionFor(word, wordsOf(app));
}

}  // namespace pxk::tool
