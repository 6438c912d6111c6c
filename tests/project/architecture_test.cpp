// ARCHITECTURE.md names every source file but the tests of a part, which stand in the folder that mirrors it.
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "project/files.h"

namespace pxk::project {

namespace {

std::string withoutEnding(const std::string& path) {
    for (const char* ending : {".h", ".cpp"}) {
        if (path.ends_with(ending)) return path.substr(0, path.rfind('.'));
    }
    return path;
}

/// The files of the tree, header and source of one name being one entry: "plugin/frame/errors".
std::set<std::string> filesInTheTree() {
    std::set<std::string> files;
    for (const char* part :
         {"plugin", "host", "chain", "tool", "bench", "tests/support", "tests/fuzz", "tests/project"}) {
        for (const std::string& path : filesBelow(part, {".h", ".cpp"})) files.insert(withoutEnding(path));
    }
    return files;
}

/// The files that the map names. A heading "### `plugin/frame/`" names the folder of the list below it, and each item
/// "- `errors`, `text`: what they are" names files in it.
std::set<std::string> filesInTheMap() {
    const std::regex heading("#+ `([a-z_/]+)/`.*");
    const std::regex item("- ((?:`[a-z0-9_.]+`(?:, )?)+): .*");
    const std::regex name("`([a-z0-9_.]+)`");
    std::set<std::string> files;
    std::string folder;
    for (const std::string& line : linesOf("ARCHITECTURE.md")) {
        std::smatch match;
        if (line.starts_with("#")) {
            folder = std::regex_match(line, match, heading) ? match[1].str() : "";
        } else if (!folder.empty() && std::regex_match(line, match, item)) {
            const std::string names = match[1];
            for (std::sregex_iterator at(names.begin(), names.end(), name), end; at != end; ++at) {
                files.insert(folder + "/" + (*at)[1].str());
            }
        }
    }
    return files;
}

}  // namespace

TEST(Architecture, NamesEverySourceFile) {
    const std::set<std::string> named = filesInTheMap();
    for (const std::string& file : filesInTheTree()) {
        EXPECT_TRUE(named.contains(file)) << "ARCHITECTURE.md does not name " << file;
    }
}

TEST(Architecture, TestsMirrorTheFolders) {
    for (const char* part : {"plugin", "host", "chain", "tool", "bench"}) {
        std::set<std::string> folders = {part};
        for (const std::string& path : filesBelow(part, {".h", ".cpp"})) folders.insert(parentOf(path));
        for (const std::string& test : filesBelow(std::string("tests/") + part, {".h", ".cpp"})) {
            const std::string mirrored = parentOf(test).substr(std::string("tests/").size());
            EXPECT_TRUE(folders.contains(mirrored)) << test << " mirrors no folder";
        }
    }
}

TEST(Architecture, NamesOnlyWhatExists) {
    const std::set<std::string> files = filesInTheTree();
    const std::set<std::string> named = filesInTheMap();
    EXPECT_FALSE(named.empty());
    for (const std::string& name : named) {
        EXPECT_TRUE(files.contains(name)) << "ARCHITECTURE.md names " << name << ", which is not there";
    }
}

}  // namespace pxk::project
