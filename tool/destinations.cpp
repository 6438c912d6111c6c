#include "destinations.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "error.h"
#include "text.h"

namespace pxk::tool {
namespace {

namespace fs = std::filesystem;

bool namesDirectory(const std::string& output) {
    std::error_code ignored;
    return output.back() == '/' || fs::is_directory(output, ignored);
}

void refuseStandardOutput(const std::string& output) {
    if (output != "-") return;
    throw UsageError("a result cannot go to standard output, since it appears only once it is whole; name a file");
}

/// A device or pipe cannot be replaced by a file.
void refuseSpecialFile(const std::string& output) {
    std::error_code ignored;
    const fs::file_status status = fs::status(output, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw UsageError(output + " is not an ordinary file; name a file for -o");
    }
}

}  // namespace

Destinations destinationsFor(const std::vector<std::string>& inputs, const std::string& output,
                             const std::string& format) {
    refuseStandardOutput(output);
    if (!namesDirectory(output)) {
        if (inputs.size() > 1) {
            throw UsageError("several inputs need a directory for their results: -o " + output + "/");
        }
        if (!format.empty()) throw UsageError("--format goes with a directory; the name " + output + " says its own");
        refuseSpecialFile(output);
        return {{output}, ""};
    }
    if (inputs.empty()) throw UsageError("without an input -o names a file, not the directory " + output);
    Destinations destinations{{}, output};
    std::map<std::string, std::string> takenBy;
    for (const std::string& input : inputs) {
        fs::path name = fs::path(input).filename();
        if (!format.empty()) name.replace_extension(format);
        const std::string destination = fs::path(output) / name;
        const auto [other, isNew] = takenBy.emplace(destination, input);
        if (!isNew) {
            throw UsageError(other->second + " and " + input + " would both be written to " + destination);
        }
        destinations.files.push_back(destination);
    }
    return destinations;
}

void checkDestinationFile(const std::string& output) {
    if (output.empty()) throw UsageError("the name of the file to write is empty");
    refuseStandardOutput(output);
    if (namesDirectory(output)) throw UsageError(output + " is a directory; name a file for -o");
    refuseSpecialFile(output);
}

void makeDirectory(const std::string& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error) throw WorkError("cannot make the directory " + inQuotes(directory) + ": " + error.message());
}

}  // namespace pxk::tool
