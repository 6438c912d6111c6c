// Includes run one way, room by room, so that each room can be read, and changed, without those that stand on it.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

#include "project/files.h"

namespace pxk::project {

namespace {

struct Include {
    std::string from;
    std::string to;
};

/// What a line includes, "" for any other line.
std::string includedBy(std::string_view line) {
    const auto skipBlanks = [&line] { line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size())); };
    for (const std::string_view expected : {"#", "include"}) {
        skipBlanks();
        if (!line.starts_with(expected)) return "";
        line.remove_prefix(expected.size());
    }
    skipBlanks();
    if (line.empty() || (line.front() != '"' && line.front() != '<')) return "";
    const std::size_t end = line.find(line.front() == '"' ? '"' : '>', 1);
    return end == std::string_view::npos ? "" : std::string(line.substr(1, end - 1));
}

/// The file of the checkout that `name` means in `from`, or "" when it is a file of someone else.
std::string resolve(const std::string& from, const std::string& name) {
    static const std::vector<std::string> folders = {"", "plugin/", "host/include/", "chain/", "tool/", "tests/"};
    if (exists(parentOf(from) + "/" + name)) return parentOf(from) + "/" + name;
    for (const std::string& folder : folders) {
        if (exists(folder + name)) return folder + name;
    }
    return "";
}

/// Every include of a file of the checkout by a file below `folder`.
std::vector<Include> includesBelow(const std::string& folder) {
    std::vector<Include> includes;
    for (const std::string& from : sourcesBelow(folder)) {
        for (const std::string& line : linesOf(from)) {
            const std::string name = includedBy(line);
            const std::string to = name.empty() ? "" : resolve(from, name);
            if (!to.empty()) includes.push_back({from, to});
        }
    }
    return includes;
}

using Names = std::set<std::string>;

Names operator+(Names names, const Names& more) {
    names.insert(more.begin(), more.end());
    return names;
}

/// Every room with the rooms, or single files, that it may include besides itself.
std::map<std::string, Names> rooms() {
    const Names members = {"plugin/frame", "plugin/picture"};
    const Names records = {"plugin/frame/host_records.h"};
    const Names objects = records + Names{"host/objects"};
    const Names pictures = objects + Names{"host/pictures"};
    const Names registration = pictures + Names{"host/registration"};
    const Names host =
        registration + Names{"host/calls", "host/include", "files/pxkfiles.h", "plugin/frame/plugin_main.h"};
    const Names chain = {"host/include/pxkhost.h"};
    const Names shown = chain + Names{"chain"};
    const Names commands = shown + Names{"tool/terminal", "tool/charts", "tool/sound"};
    return {
        {"plugin/frame", {}},
        {"plugin/picture", {"plugin/frame"}},
        {"plugin/pointops", members},
        {"plugin/channels", members},
        {"plugin/analysis", members},
        {"plugin/utilities", members},
        {"plugin/registration",
         members + Names{"plugin/pointops", "plugin/channels", "plugin/analysis", "plugin/utilities"}},
        {"host/objects", records},
        {"host/pictures", objects},
        {"host/registration", pictures},
        {"host/calls", registration},
        {"host/include", {}},
        {"host", host},
        {"files", {}},
        {"chain", chain},
        {"tool/terminal", shown},
        {"tool/charts", shown},
        {"tool/sound", shown},
        {"tool/commands", commands},
        {"tool", commands + Names{"tool/commands"}},
    };
}

void expectOneWay(const std::string& part) {
    const std::map<std::string, Names> all = rooms();
    for (const std::string& room : roomsOf(part)) EXPECT_TRUE(all.contains(room)) << room << " is no room of the house";
    for (const Include& include : includesBelow(part)) {
        const std::string room = parentOf(include.from);
        const std::string included = parentOf(include.to);
        if (room == included || !all.contains(room)) continue;
        const Names& allowed = all.at(room);
        EXPECT_TRUE(allowed.contains(included) || allowed.contains(include.to))
            << include.from << " includes " << include.to;
    }
}

}  // namespace

TEST(Includes, AreFoundInEveryForm) {
    EXPECT_EQ(includedBy("#include \"host/host.h\""), "host/host.h");
    EXPECT_EQ(includedBy("  #  include <gd.h>  // libgd"), "gd.h");
    EXPECT_EQ(includedBy("// #include \"host/host.h\""), "");
    EXPECT_EQ(includedBy("#includes \"host/host.h\""), "");
    EXPECT_EQ(includedBy("#include NAME"), "");
    EXPECT_EQ(includedBy(""), "");
    EXPECT_FALSE(includesBelow("plugin").empty());
    EXPECT_FALSE(includesBelow("host").empty());
    EXPECT_FALSE(includesBelow("tool").empty());
}

TEST(Includes, RunOneWayThroughThePlugin) { expectOneWay("plugin"); }

TEST(Includes, RunOneWayThroughTheHost) { expectOneWay("host"); }

TEST(Includes, OfPictureFilesKnowNothingOfTheHost) { expectOneWay("files"); }

TEST(Includes, OfTheChainLanguageKnowOnlyTheHostsInterface) { expectOneWay("chain"); }

TEST(Includes, RunOneWayThroughTheTool) { expectOneWay("tool"); }

TEST(Includes, ReachTheToolAndTheChainLanguageFromTheirTestsOnly) {
    const auto isBelow = [](const std::string& path, const Names& folders) {
        return std::any_of(folders.begin(), folders.end(),
                           [&path](const std::string& folder) { return path.starts_with(folder + "/"); });
    };
    for (const char* part : {"plugin", "host", "files", "bench", "tests"}) {
        for (const Include& include : includesBelow(part)) {
            if (isBelow(include.to, {"chain", "tool"})) {
                EXPECT_TRUE(isBelow(include.from, {"tests/chain", "tests/tool"}))
                    << include.from << " includes " << include.to;
            }
        }
    }
}

}  // namespace pxk::project
