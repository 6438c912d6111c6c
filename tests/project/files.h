/// The checkout's files, as the tests of the project itself read them.
#pragma once

#include <string>
#include <vector>

namespace pxk::project {

/// The paths, relative to the checkout and with forward slashes, of the files below `folder` whose names end in one of
/// `endings`, in order.
std::vector<std::string> filesBelow(const std::string& folder, const std::vector<std::string>& endings);

/// The lines of the file at `path`, relative to the checkout; none when there is no such file.
std::vector<std::string> linesOf(const std::string& path);

/// Whether there is a file at `path`, relative to the checkout.
bool exists(const std::string& path);

/// The first folders of `path`, joined again: parentOf("plugin/frame/errors.h") is "plugin/frame".
std::string parentOf(const std::string& path);

}  // namespace pxk::project
