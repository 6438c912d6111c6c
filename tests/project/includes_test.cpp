// Includes run one way, so that each part can be read, and changed, without those that stand on it.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>

#include "project/files.h"

namespace pxk::project {

namespace {

struct Include {
    std::string from;
    std::string to;
};

/// The file of the checkout that `name` means in `from`, or "" when it is a file of someone else.
std::string resolve(const std::string& from, const std::string& name) {
    for (const std::string& root : {parentOf(from) + "/", std::string(), std::string("plugin/"), std::string("host/"),
                                    std::string("host/include/"), std::string("tests/"), std::string("bench/")}) {
        if (exists(root + name)) return root + name;
    }
    return "";
}

/// Every include of a file of the checkout by a file below `folder`.
std::vector<Include> includesBelow(const std::string& folder) {
    const std::regex pattern("\\s*#\\s*include\\s*[<\"]([^>\"]+)[>\"].*");
    std::vector<Include> includes;
    for (const std::string& from : filesBelow(folder, {".h", ".cpp"})) {
        for (const std::string& line : linesOf(from)) {
            std::smatch match;
            if (!std::regex_match(line, match, pattern)) continue;
            const std::string to = resolve(from, match[1]);
            if (!to.empty()) includes.push_back({from, to});
        }
    }
    return includes;
}

}  // namespace

TEST(Includes, RunOneWayThroughThePlugin) {
    const std::map<std::string, int> levels = {
        {"plugin/frame", 0},    {"plugin/picture", 1},   {"plugin/pointops", 2},     {"plugin/channels", 2},
        {"plugin/analysis", 2}, {"plugin/utilities", 2}, {"plugin/registration", 3},
    };
    const std::vector<Include> includes = includesBelow("plugin");
    EXPECT_FALSE(includes.empty());
    for (const Include& include : includes) {
        const std::string from = parentOf(include.from);
        const std::string to = parentOf(include.to);
        ASSERT_TRUE(levels.contains(from)) << include.from << " is in a folder that has no level";
        ASSERT_TRUE(levels.contains(to)) << include.from << " includes " << include.to << ", outside the plugin";
        EXPECT_TRUE(from == to || levels.at(from) > levels.at(to)) << include.from << " includes " << include.to;
    }
}

TEST(Includes, OfTheHostKnowOnlyTheFrameOfThePlugin) {
    const std::set<std::string> allowed = {"plugin/frame/host_records.h", "plugin/frame/plugin_main.h"};
    const std::vector<Include> includes = includesBelow("host");
    EXPECT_FALSE(includes.empty());
    for (const Include& include : includes) {
        EXPECT_TRUE(include.to.starts_with("host/") || allowed.contains(include.to))
            << include.from << " includes " << include.to;
    }
}

TEST(Includes, OfTheChainLanguageKnowOnlyTheHostsInterface) {
    const std::vector<Include> includes = includesBelow("chain");
    EXPECT_FALSE(includes.empty());
    for (const Include& include : includes) {
        EXPECT_TRUE(include.to.starts_with("chain/") || include.to == "host/include/pxkhost.h")
            << include.from << " includes " << include.to;
    }
}

TEST(Includes, RunOneWayThroughTheTool) {
    const std::map<std::string, int> levels = {
        {"chain", 0}, {"tool/terminal", 1}, {"tool/charts", 1}, {"tool/sound", 1}, {"tool/commands", 2}, {"tool", 3},
    };
    const std::vector<Include> includes = includesBelow("tool");
    EXPECT_FALSE(includes.empty());
    for (const Include& include : includes) {
        const std::string from = parentOf(include.from);
        const std::string to = parentOf(include.to);
        ASSERT_TRUE(levels.contains(from)) << include.from << " is in a folder that has no level";
        ASSERT_TRUE(levels.contains(to)) << include.from << " includes " << include.to << ", outside the tool";
        EXPECT_TRUE(from == to || levels.at(from) > levels.at(to)) << include.from << " includes " << include.to;
    }
}

TEST(Includes, NeverReachTheToolFromOutside) {
    for (const char* part :
         {"plugin", "host", "chain", "bench", "tests/plugin", "tests/host", "tests/chain", "tests/support"}) {
        for (const Include& include : includesBelow(part)) {
            EXPECT_FALSE(include.to.starts_with("tool/")) << include.from << " includes " << include.to;
        }
    }
}

}  // namespace pxk::project
