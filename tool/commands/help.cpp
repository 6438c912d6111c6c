/// `pxk help NAME`: a member, a class, a command or the chain language, explained.
#include <algorithm>
#include <iostream>
#include <memory>

#include "chain/catalogue.h"
#include "chain/error.h"
#include "chain/language_help.h"
#include "chain/nearest_word.h"
#include "chain/text.h"
#include "chain/unknown_name.h"
#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/commands/unknown_command.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

constexpr const char* resultHelp =
    R"(
A picture is written to the file that -o names. A number, boolean or string is printed; with -o, the current picture is
written as well. The bytes of a binary string or memory block are written to the file that -o names.
)";

void printParameters(const chain::Declaration& declaration) {
    std::size_t widest = 0;
    for (const chain::Parameter& each : declaration.parameters) widest = std::max(widest, each.name.size());
    for (const chain::Parameter& each : declaration.parameters) {
        std::cout << "      " << each.name << std::string(widest - each.name.size() + 2, ' ') << each.type;
        const pxk_kind kind = chain::kindOf(each.type);
        if (each.byReference) {
            std::cout << ", written back and printed";
        } else if (kind == PXK_PICTURE || kind == PXK_MEMORY_BLOCK) {
            std::cout << ", the name of a file in quotes" << (kind == PXK_PICTURE ? " or pic" : "");
        }
        if (!each.whenLeftOut.empty()) std::cout << ", default " << each.whenLeftOut;
        std::cout << '\n';
    }
}

void printForm(const chain::Member& member) {
    std::cout << "  " << member.text << '\n';
    printParameters(member.declaration);
    if (member.hasSetter) std::cout << "      can also be assigned: " << member.name << "(...) = value\n";
    if (!member.deprecated.empty()) std::cout << "      deprecated: use " << member.deprecated << '\n';
}

void printMethod(const std::vector<const chain::Member*>& forms) {
    const bool global = forms.front()->kind == PXK_GLOBAL_METHOD;
    std::cout << forms.front()->name << ", a " << (global ? "global method" : "method of a picture") << "\n\n";
    for (const chain::Member* each : forms) printForm(*each);
    if (!global) return;
    const auto& parameters = forms.front()->declaration.parameters;
    const auto picture = std::find_if(parameters.begin(), parameters.end(), [](const chain::Parameter& each) {
        return chain::kindOf(each.type) == PXK_PICTURE;
    });
    if (picture == parameters.end()) return;
    std::cout << "\nIn a chain " << picture->name << " may be left out: it is then the current picture.\n";
}

/// The value that a property of a new instance has.
std::string initialValue(chain::OpenHost& opened, const chain::Object& instance, const chain::Member& property) {
    const chain::Value value = opened.property(instance, property.name);
    return asText(value);
}

void printClass(chain::OpenHost& opened, const chain::Catalogue& catalogue, const std::string& name) {
    std::cout << name << ", a class; as a step of a chain it sets SourcePicture to the current picture and the\n"
              << "properties named, calls Run, and returns DestinationPicture:\n\n  ";
    const chain::Object instance = opened.newInstance(name);
    const auto properties = catalogue.membersOf(name, PXK_CLASS_PROPERTY);
    for (const chain::Member* each : properties) {
        if (chain::kindOf(each->declaration.type) >= PXK_PICTURE) continue;
        std::cout << name << '(' << each->name << " = " << initialValue(opened, instance, *each) << ", ...)";
        break;
    }
    if (catalogue.hasLut3d(name)) {
        std::cout << "\n  " << name << "(\"look.cube\", ...)    Table is filled from a .cube file";
    }
    std::cout << "\n\nProperties, with their initial values\n";
    for (const chain::Member* each : properties) {
        std::cout << "  " << each->text << " = " << initialValue(opened, instance, *each) << '\n';
    }
    std::cout << "\nMethods\n";
    for (const chain::Member* each : catalogue.membersOf(name, PXK_CLASS_METHOD)) printForm(*each);
}

std::string whyNothingToExplain(const CLI::App& app, chain::OpenHost& opened, const chain::Catalogue& catalogue,
                                const std::string& name) {
    std::vector<std::string> topics = commandNames(app);
    topics.emplace_back("chain");
    const std::string suggestion = chain::suggestionFor(name, topics);
    return suggestion.empty() ? chain::whyUnknown(opened, catalogue, name)
                              : "there is no member and no command " + chain::inQuotes(name) + suggestion;
}

void explain(const CLI::App& app, const std::string& name, const chain::HostOptions& host) {
    if (name.empty()) {
        // help() would explain the command chosen, which is this one.
        std::cout << app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
        return;
    }
    if (name == "chain") {
        std::cout << chain::languageHelp << resultHelp;
        return;
    }
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (command->get_name() != name) continue;
        std::cout << command->help("pxk");
        return;
    }
    chain::OpenHost opened(host);
    const chain::Catalogue catalogue(opened);
    if (const std::string* found = catalogue.findClass(name)) {
        printClass(opened, catalogue, *found);
    } else {
        const auto forms = catalogue.methods(name);
        if (forms.empty()) throw chain::WorkError(whyNothingToExplain(app, opened, catalogue, name));
        printMethod(forms);
    }
    opened.close();
}

int help(const CLI::App& app, const std::string& name, const chain::HostOptions& host) {
    explain(app, name, host);
    flushOutput();
    return exitDone;
}

}  // namespace

void addHelpCommand(CLI::App& app, CommandLine& line) {
    const auto name = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("help", "Explain a method, a class, a command, or the chain language (help chain)");
    command->add_option("NAME", *name, "Its name, in any letter case, with or without the suffix PXK");
    addHostOptions(*command, line.host);
    command->callback(
        [name, &app, &line] { line.action = [name, &app, &line] { return help(app, *name, line.host); }; });
}

}  // namespace pxk::tool
