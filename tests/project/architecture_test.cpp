// The house: rooms that a reader takes in at a glance, drawn in ARCHITECTURE.md, mirrored by their tests, and files
// that say what they are.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "project/files.h"

namespace pxk::project {

namespace {

constexpr std::size_t mostUnitsOfARoom = 25;

const std::vector<std::string> parts = {"plugin", "host", "files", "chain", "tool", "bench"};

/// The files below `folder` by unit: a source with its headers, "plugin/frame/errors".
std::map<std::string, std::vector<std::string>> unitsBelow(const std::string& folder) {
    std::map<std::string, std::vector<std::string>> units;
    for (const std::string& path : sourcesBelow(folder)) units[path.substr(0, path.rfind('.'))].push_back(path);
    return units;
}

/// The rooms drawn in ARCHITECTURE.md: each line that begins with a word such as "frame/" is one, in the one above it
/// that is indented less.
std::set<std::string> drawnRooms() {
    std::set<std::string> drawn;
    std::vector<std::pair<std::size_t, std::string>> above;
    for (const std::string& line : linesOf("ARCHITECTURE.md")) {
        const std::size_t indent = line.find_first_not_of(' ');
        if (indent == std::string::npos) continue;
        const std::string word = line.substr(indent, line.find(' ', indent) - indent);
        if (!word.ends_with('/')) continue;
        while (!above.empty() && above.back().first >= indent) above.pop_back();
        above.emplace_back(indent, (above.empty() ? "" : above.back().second) + word);
        drawn.insert(above.back().second.substr(0, above.back().second.size() - 1));
    }
    return drawn;
}

bool beginsWithAComment(const std::string& path) {
    const std::vector<std::string> lines = linesOf(path);
    if (lines.empty()) return false;
    return lines.front().starts_with("//") || lines.front().starts_with("/*");
}

}  // namespace

TEST(Architecture, DrawsEveryRoom) {
    const std::set<std::string> drawn = drawnRooms();
    for (const std::string& part : parts) {
        for (const std::string& room : roomsOf(part)) {
            EXPECT_TRUE(drawn.contains(room)) << "ARCHITECTURE.md does not draw " << room << "/";
        }
    }
}

TEST(Architecture, NoRoomIsTooLarge) {
    for (const std::string& part : parts) {
        std::map<std::string, std::size_t> sizes;
        for (const auto& [unit, files] : unitsBelow(part)) ++sizes[parentOf(unit)];
        for (const auto& [room, size] : sizes) EXPECT_LE(size, mostUnitsOfARoom) << room;
    }
}

TEST(Architecture, TestsMirrorTheRooms) {
    for (const std::string& part : parts) {
        std::set<std::string> folders = roomsOf(part);
        folders.insert(part);
        for (const std::string& room : roomsOf("tests/" + part)) {
            const std::string mirrored = room.substr(std::string("tests/").size());
            EXPECT_TRUE(folders.contains(mirrored)) << room << " mirrors no room";
        }
    }
}

// A source need not repeat what its header says. The tests of a part are named after what they test.
TEST(Architecture, EveryUnitBeginsWithACommentThatSaysWhatItIs) {
    std::vector<std::string> folders = parts;
    for (const char* shared : {"tests/support", "tests/fuzz", "tests/project"}) folders.emplace_back(shared);
    for (const std::string& folder : folders) {
        for (const auto& [unit, files] : unitsBelow(folder)) {
            const bool says = std::any_of(files.begin(), files.end(), beginsWithAComment);
            EXPECT_TRUE(says) << unit << " does not begin with a comment";
        }
    }
}

}  // namespace pxk::project
