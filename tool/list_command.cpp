/// `pxk list`: what the plugin registered, by declaration.
#include <fnmatch.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "catalogue.h"
#include "command.h"
#include "error.h"
#include "report.h"
#include "result_text.h"
#include "text.h"

namespace pxk::tool {
namespace {

struct ListOptions {
    std::string pattern;
    bool json = false;
};

bool matches(const std::string& name, const std::string& pattern) {
    const std::string text = lowerCase(name);
    const std::string wanted = lowerCase(pattern);
    const bool isGlob = pattern.find_first_of("*?") != std::string::npos;
    return isGlob ? ::fnmatch(wanted.c_str(), text.c_str(), 0) == 0 : text.find(wanted) != std::string::npos;
}

std::string headingOf(const Member& member) {
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

Json record(const Member& member) {
    Json json{{"kind", kindName(member.kind)}, {"owner", member.owner}, {"name", member.name}};
    json["declaration"] = member.text;
    if (member.hasSetter) json["assignable"] = true;
    if (!member.deprecated.empty()) json["deprecated"] = member.deprecated;
    return json;
}

void print(const std::vector<const Member*>& members) {
    std::string heading;
    for (const Member* each : members) {
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

int listMembers(const ListOptions& options, const HostOptions& host) {
    OpenHost opened(host);
    const Catalogue catalogue(opened);
    std::vector<const Member*> chosen;
    for (const Member& each : catalogue.members()) {
        if (matches(each.name, options.pattern) || matches(each.owner, options.pattern)) chosen.push_back(&each);
    }
    if (chosen.empty() && !options.pattern.empty())
        throw WorkError("nothing is named like " + inQuotes(options.pattern));
    if (options.json) {
        for (const Member* each : chosen) std::cout << oneLine(record(*each)) << '\n';
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
    command->add_option("PATTERN", options->pattern, "Only names with these letters in them, or like this: *Color*");
    command->add_flag("--json", options->json, "Print one JSON object on a line for each member");
    addHostOptions(*command, line.host);
    command->callback(
        [options, &line] { line.action = [options, &line] { return listMembers(*options, line.host); }; });
}

}  // namespace pxk::tool
