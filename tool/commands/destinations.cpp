#include "tool/commands/destinations.h"

#include <filesystem>
#include <map>
#include <system_error>

#include "chain/error.h"
#include "chain/text.h"
#include "tool/commands/exit_code.h"

namespace pxk::tool {
namespace {

namespace fs = std::filesystem;

bool namesDirectory(const std::string& output) {
    std::error_code ignored;
    return output.back() == '/' || fs::is_directory(output, ignored);
}

void refuseStandardOutput(const std::string& output) {
    if (output != "-") return;
    throw UsageError("a result cannot be written to standard output; name a file for -o");
}

/// A device or pipe cannot be replaced by a file.
void refuseSpecialFile(const std::string& output) {
    std::error_code ignored;
    const fs::file_status status = fs::status(output, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw UsageError(output + " is not an ordinary file; name one for -o");
    }
}

}  // namespace

Destinations destinationsFor(const std::vector<std::string>& inputs, const std::string& output,
                             const std::string& format) {
    if (output == "-" && inputs.size() > 1) {
        throw UsageError("several inputs need a directory for their results, not standard output");
    }
    if (output == "-") return {{output}, ""};
    if (!namesDirectory(output)) {
        if (inputs.size() > 1) {
            throw UsageError("several inputs need a directory for their results: -o " + output + "/");
        }
        if (!format.empty())
            throw UsageError("--format needs a directory or - for -o; the name " + output + " has its own extension");
        refuseSpecialFile(output);
        return {{output}, ""};
    }
    if (inputs.empty()) throw UsageError("without an input, -o takes a file, not the directory " + output);
    Destinations destinations{{}, output};
    std::map<std::string, std::string> takenBy;
    for (const std::string& input : inputs) {
        if (input == "-") throw UsageError("standard input has no name for its result; name a file for -o");
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

void createDirectory(const std::string& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (error)
        throw chain::WorkError("cannot create the directory " + chain::inQuotes(directory) + ": " + error.message());
}

}  // namespace pxk::tool
