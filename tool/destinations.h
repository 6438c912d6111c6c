/// Where results go.
#pragma once

#include <string>
#include <vector>

namespace pxk::tool {

struct Destinations {
    std::vector<std::string> files;  ///< one for each input
    std::string directory;           ///< the one that they stand in, to be made when it is missing; empty: none
};

/// The file for each input's result. `output` is one file, or a directory when it ends in "/" or is one; in a
/// directory each result has its input's name, with the ending `format` in place of its own unless that is empty.
/// Throws UsageError: several inputs for one file, two results for one name, a place that no file can take.
Destinations destinationsFor(const std::vector<std::string>& inputs, const std::string& output,
                             const std::string& format);

/// Throws UsageError when `output` names no place for one ordinary file.
void checkDestinationFile(const std::string& output);

/// Makes a directory and those above it, as far as they are missing. Throws WorkError.
void makeDirectory(const std::string& directory);

}  // namespace pxk::tool
