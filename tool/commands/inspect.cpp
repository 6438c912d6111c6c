/// `pxk inspect`: what the plugin registered with this host, record by record.
#include <algorithm>
#include <charconv>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "tool/commands/command.h"
#include "tool/commands/exit_code.h"
#include "tool/terminal/report.h"
#include "tool/terminal/result_text.h"

namespace pxk::tool {
namespace {

struct Line {
    std::size_t indent;
    std::string_view text;
};

std::vector<Line> linesIn(std::string_view text) {
    std::vector<Line> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::size_t indent = text.substr(0, end).find_first_not_of(' ');
        if (indent < end) lines.push_back({indent, text.substr(indent, end - indent)});
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// A whole number as one, nil as null, text without its quotes; anything else as it is written.
Json fieldValue(std::string_view written) {
    if (written == "nil") return nullptr;
    if (written.size() >= 2 && written.front() == '"' && written.back() == '"')
        return written.substr(1, written.size() - 2);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(written.data(), written.data() + written.size(), number);
    const bool isNumber = error == std::errc() && end == written.data() + written.size();
    return isNumber ? Json(number) : Json(written);
}

/// The record whose heading is the line `at`, with its fields and the records in it; `at` moves past them.
Json recordAt(const std::vector<Line>& lines, std::size_t& at) {
    const Line heading = lines[at++];
    Json record{{"record", heading.text}, {"fields", Json::object()}, {"records", Json::array()}};
    while (at < lines.size() && lines[at].indent > heading.indent) {
        const std::string_view text = lines[at].text;
        const std::size_t gap = text.find("  ");
        if (gap == std::string_view::npos) {
            record["records"].push_back(recordAt(lines, at));
            continue;
        }
        record["fields"][std::string(text.substr(0, gap))] = fieldValue(text.substr(text.find_first_not_of(' ', gap)));
        ++at;
    }
    return record;
}

void printJson(std::string_view text) {
    const std::vector<Line> lines = linesIn(text);
    for (std::size_t at = 0; at < lines.size();) std::cout << oneLine(recordAt(lines, at)) << '\n';
}

int inspect(const chain::HostOptions& host, bool json) {
    chain::OpenHost opened(host);
    std::string text = opened.inspection();
    if (!text.empty() && text.back() != '\n') text += '\n';
    if (json) {
        printJson(text);
    } else {
        std::cout << text;
    }
    flushOutput();
    opened.close();
    return exitDone;
}

}  // namespace

void addInspectCommand(CLI::App& app, CommandLine& line) {
    CLI::App* command =
        app.add_subcommand("inspect", "Show what the plugin registered with the host, record by record");
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print a line of JSON for each record");
    addHostOptions(*command, line.host);
    command->callback([json, &line] { line.action = [json, &line] { return inspect(line.host, *json); }; });
}

}  // namespace pxk::tool
