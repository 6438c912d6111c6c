#include "tool/commands/unknown_command.h"

#include <vector>

#include "chain/nearest_word.h"
#include "chain/text.h"

namespace pxk::tool {
namespace {

std::vector<std::string> wordsOf(const CLI::App& app) {
    std::vector<std::string> words = commandNames(app);
    words.insert(words.end(), {"--help", "--version"});
    return words;
}

}  // namespace

std::string whyNoCommand(const CLI::App& app, const std::string& word) {
    return "there is no file and no command " + chain::inQuotes(word) + chain::suggestionFor(word, wordsOf(app));
}

std::string suggestedOption(const CLI::App& app) {
    std::vector<std::string> options;
    const auto addOptions = [&](const CLI::App& each) {
        for (const CLI::Option* option : each.get_options()) {
            for (const std::string& name : option->get_lnames()) options.push_back("--" + name);
        }
    };
    // A command has its own options, and takes none of the tool's.
    const auto commands = app.get_subcommands();
    for (const CLI::App* each : commands) addOptions(*each);
    if (commands.empty()) addOptions(app);
    for (const std::string& word : app.remaining(true)) {
        if (word.starts_with("--")) return chain::suggestionFor(word.substr(0, word.find('=')), options);
    }
    return "";
}

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(each->get_name());
    }
    return names;
}

}  // namespace pxk::tool
