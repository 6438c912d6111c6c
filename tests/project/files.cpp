#include "project/files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace pxk::project {

namespace {

const std::filesystem::path checkout = PXK_SOURCE_DIR;

}  // namespace

std::vector<std::string> sourcesBelow(const std::string& folder) {
    std::vector<std::string> found;
    if (!std::filesystem::is_directory(checkout / folder)) return found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(checkout / folder)) {
        const std::string path = entry.path().lexically_relative(checkout).generic_string();
        if (entry.is_regular_file() && (path.ends_with(".h") || path.ends_with(".cpp"))) found.push_back(path);
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::set<std::string> roomsOf(const std::string& part) {
    std::set<std::string> rooms;
    for (const std::string& path : sourcesBelow(part)) rooms.insert(parentOf(path));
    return rooms;
}

std::vector<std::string> linesOf(const std::string& path) {
    std::ifstream file(checkout / path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
}

bool exists(const std::string& path) { return std::filesystem::is_regular_file(checkout / path); }

std::string parentOf(const std::string& path) { return std::filesystem::path(path).parent_path().generic_string(); }

}  // namespace pxk::project
