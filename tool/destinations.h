/// Where results go.
#pragma once

#include <string>
#include <vector>

namespace pxk::tool {

/// The file for each input's result. `output` is one file, or a directory when it ends in "/" or is one; in a
/// directory each result has its input's name, with the ending `format` in place of its own unless that is empty.
/// Throws UsageError: several inputs for one file, two results for one name, a place that no file can take.
std::vector<std::string> destinationsFor(const std::vector<std::string>& inputs, const std::string& output,
                                         const std::string& format);

/// Makes the directory that a file is to stand in, if it is missing. Throws WorkError.
void makeDirectoryFor(const std::string& file);

}  // namespace pxk::tool
