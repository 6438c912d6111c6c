/// `pxk list`: what the plugin registered, by declaration.
#include <fnmatch.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "chain/catalogue.h"
#include "chain/error.h"
#include "chain/text.h"
#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct ListOptions {
    std::string pattern;
    bool json = false;
};

bool matches(const std::string& name, const std::string& pattern) {
    const std::string text = chain::lowerCase(name);
    const std::string wanted = chain::lowerCase(pattern);
    const bool isGlob = pattern.find_first_of("*?") != std::string::npos;
    return isGlob ? ::fnmatch(wanted.c_str(), text.c_str(), 0) == 0 : text.find(wanted) != std::string::npos;
}

std::string headingOf(const chain::Member& member) {
    if (member.kind == PXK_GLOBAL_METHOD) return "Global methods";
    if (member.kind == PXK_PICTURE_METHOD) return "Methods of a picture";
    return "Class " + member.owner;
}

const char* kindName(pxk_member_kind kind) {
    switch (kind) {
        case PXK_PICTURE_METHOD:
            return "picture method";
        case PXK_GLOBAL_METHOD:
            return "global method";
        case PXK_CLASS_METHOD:
            return "class method";
        case PXK_CLASS_PROPERTY:
            return "class property";
    }
    return "";
}

Json record(const chain::Member& member) {
    Json json{{"kind", kindName(member.kind)}, {"owner", member.owner}, {"name", member.name}};
    json["declaration"] = member.text;
    if (member.hasSetter) json["assignable"] = true;
    if (!member.deprecated.empty()) json["deprecated"] = member.deprecated;
    return json;
}

void print(const std::vector<const chain::Member*>& members) {
    std::string heading;
    for (const chain::Member* each : members) {
        if (headingOf(*each) != heading) {
            std::cout << (heading.empty() ? "" : "\n");
            heading = headingOf(*each);
            std::cout << heading << '\n';
        }
        std::cout << "  " << each->text;
        if (!each->deprecated.empty()) std::cout << "  [deprecated: use " << each->deprecated << ']';
        std::cout << '\n';
    }
}

int listMembers(const ListOptions& options, const chain::HostOptions& host) {
    chain::OpenHost opened(host);
    const chain::Catalogue catalogue(opened);
    std::vector<const chain::Member*> chosen;
    for (const chain::Member& each : catalogue.members()) {
        if (matches(each.name, options.pattern) || matches(each.owner, options.pattern)) chosen.push_back(&each);
    }
    if (chosen.empty() && !options.pattern.empty())
        throw chain::WorkError("no name matches " + chain::inQuotes(options.pattern));
    if (options.json) {
        for (const chain::Member* each : chosen) std::cout << oneLine(record(*each)) << '\n';
    } else {
        print(chosen);
    }
    flushOutput();
    opened.close();
    return exitDone;
}

}  // namespace

void addListCommand(CLI::App& app, CommandLine& line) {
    const auto options = std::make_shared<ListOptions>();
    CLI::App* command = app.add_subcommand("list", "List what the plugin offers");
    command->add_option("PATTERN", options->pattern,
                        "Only names that contain this text, or match a pattern such as *Color*");
    command->add_flag("--json", options->json, "Print a line of JSON for each member");
    addHostOptions(*command, line.host);
    command->callback(
        [options, &line] { line.action = [options, &line] { return listMembers(*options, line.host); }; });
}

}  // namespace pxk::tool
