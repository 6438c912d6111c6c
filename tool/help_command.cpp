/// `pxk help NAME`: everything the plugin registered under one name.
#include <algorithm>
#include <iostream>
#include <memory>

#include "catalogue.h"
#include "chain_help.h"
#include "command.h"
#include "error.h"
#include "report.h"
#include "result_text.h"
#include "unknown_name.h"

namespace pxk::tool {
namespace {

void printParameters(const Declaration& declaration) {
    std::size_t widest = 0;
    for (const Parameter& each : declaration.parameters) widest = std::max(widest, each.name.size());
    for (const Parameter& each : declaration.parameters) {
        std::cout << "      " << each.name << std::string(widest - each.name.size() + 2, ' ') << each.type;
        const pxk_kind kind = kindOf(each.type);
        if (each.byReference) {
            std::cout << ", written back and printed";
        } else if (kind == PXK_PICTURE || kind == PXK_MEMORY_BLOCK) {
            std::cout << ", a file's name in quotes" << (kind == PXK_PICTURE ? " or pic" : "");
        }
        if (!each.whenLeftOut.empty()) std::cout << ", " << each.whenLeftOut << " when left out";
        std::cout << '\n';
    }
}

void printForm(const Member& member) {
    std::cout << "  " << member.text << '\n';
    printParameters(member.declaration);
    if (member.hasSetter) std::cout << "      can also be assigned: " << member.name << "(...) = value\n";
    if (!member.deprecated.empty()) std::cout << "      deprecated: use " << member.deprecated << '\n';
}

void printMethod(const std::vector<const Member*>& forms) {
    const bool global = forms.front()->kind == PXK_GLOBAL_METHOD;
    std::cout << forms.front()->name << ", a " << (global ? "global method" : "method of a picture") << "\n\n";
    for (const Member* each : forms) printForm(*each);
    if (!global) return;
    const auto& parameters = forms.front()->declaration.parameters;
    const auto picture = std::find_if(parameters.begin(), parameters.end(),
                                      [](const Parameter& each) { return kindOf(each.type) == PXK_PICTURE; });
    if (picture == parameters.end()) return;
    std::cout << "\nIn a chain " << picture->name << " is the current picture when it is left out.\n";
}

/// A fresh instance says what its properties start with.
std::string startingValue(OpenHost& opened, const Object& instance, const Member& property) {
    const Value value = opened.property(instance, property.name);
    return asText(value);
}

void printClass(OpenHost& opened, const Catalogue& catalogue, const std::string& name) {
    std::cout << name << ", a class; as a step of a chain it sets SourcePicture to the current picture and the\n"
              << "properties named, calls Run, and gives DestinationPicture:\n\n  ";
    const Object instance = opened.newInstance(name);
    const auto properties = catalogue.membersOf(name, PXK_CLASS_PROPERTY);
    for (const Member* each : properties) {
        if (kindOf(each->declaration.type) >= PXK_PICTURE) continue;
        std::cout << name << '(' << each->name << " = " << startingValue(opened, instance, *each) << ", ...)";
        break;
    }
    if (catalogue.hasLookTable(name)) {
        std::cout << "\n  " << name << "(\"look.cube\", ...)    Table is filled from a .cube file";
    }
    std::cout << "\n\nProperties, with what they start with\n";
    for (const Member* each : properties) {
        std::cout << "  " << each->text << " = " << startingValue(opened, instance, *each) << '\n';
    }
    std::cout << "\nMethods\n";
    for (const Member* each : catalogue.membersOf(name, PXK_CLASS_METHOD)) printForm(*each);
}

int help(const CLI::App& app, const std::string& name, const HostOptions& host) {
    if (name.empty()) {
        // help() would explain the command chosen, which is this one.
        std::cout << app.get_formatter()->make_help(&app, app.get_name(), CLI::AppFormatMode::Normal);
        return exitDone;
    }
    if (name == "chain") {
        std::cout << chainHelp;
        return exitDone;
    }
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (command->get_name() != name) continue;
        std::cout << command->help("pxk");
        return exitDone;
    }
    OpenHost opened(host);
    const Catalogue catalogue(opened);
    if (const std::string* found = catalogue.findClass(name)) {
        printClass(opened, catalogue, *found);
    } else {
        const auto forms = catalogue.methods(name);
        if (forms.empty()) throw WorkError(whyUnknown(opened, catalogue, name));
        printMethod(forms);
    }
    flushOutput();
    opened.close();
    return exitDone;
}

}  // namespace

void addHelpCommand(CLI::App& app, CommandLine& line) {
    const auto name = std::make_shared<std::string>();
    CLI::App* command =
        app.add_subcommand("help", "Explain a method, a class, a command, or the language of chains (help chain)");
    command->add_option("NAME", *name, "Its name, in any letter case, the PXK at its end left out or not");
    addHostOptions(*command, line.host);
    command->callback(
        [name, &app, &line] { line.action = [name, &app, &line] { return help(app, *name, line.host); }; });
}

}  // namespace pxk::tool
