#include "project/files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace pxk::project {

namespace {

const std::filesystem::path checkout = PXK_SOURCE_DIR;

}  // namespace

std::vector<std::string> filesBelow(const std::string& folder, const std::vector<std::string>& endings) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(checkout / folder)) {
        const std::string path = entry.path().lexically_relative(checkout).generic_string();
        const bool wanted = std::any_of(endings.begin(), endings.end(),
                                        [&path](const std::string& ending) { return path.ends_with(ending); });
        if (entry.is_regular_file() && wanted) found.push_back(path);
    }
    std::sort(found.begin(), found.end());
    return found;
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
