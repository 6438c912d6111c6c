/// Where the results are written.
#pragma once

#include <string>
#include <vector>

namespace pxk::tool {

struct Destinations {
    std::vector<std::string> files;  ///< one for each input
    std::string directory;           ///< the one that holds them, to be created when it is missing; empty: none
};

/// The file for each input's result. `output` is one file, "-" for standard output, or a directory when it ends in "/"
/// or is one; in a directory each result has its input's name, its extension replaced by `format` unless that is empty.
/// Throws UsageError: several inputs for one file, two results of one name, or no place for an ordinary file.
Destinations destinationsFor(const std::vector<std::string>& inputs, const std::string& output,
                             const std::string& format);

/// Throws UsageError when `output` cannot be an ordinary file.
void checkDestinationFile(const std::string& output);

/// Creates a directory and its missing parents. Throws WorkError.
void createDirectory(const std::string& directory);

}  // namespace pxk::tool
