/// The checkout's files, as the tests of the project itself read them.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace pxk::project {

/// The headers and sources below `folder`, in order, as paths relative to the checkout with forward slashes; none when
/// there is no such folder.
std::vector<std::string> sourcesBelow(const std::string& folder);

/// The rooms of a part: it and the folders below it, as far as they hold headers or sources themselves.
std::set<std::string> roomsOf(const std::string& part);

/// The lines of the file at `path`, relative to the checkout; none when there is no such file.
std::vector<std::string> linesOf(const std::string& path);

/// Whether there is a file at `path`, relative to the checkout.
bool exists(const std::string& path);

/// The first folders of `path`, joined again: parentOf("plugin/frame/errors.h") is "plugin/frame".
std::string parentOf(const std::string& path);

}  // namespace pxk::project
