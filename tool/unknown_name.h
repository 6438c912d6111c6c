/// A name that nothing answers to.
#pragma once

#include <string>

#include "catalogue.h"
#include "open_host.h"

namespace pxk::tool {

/// The host's words on a name that no chain can call, with the name that was probably meant: the nearest one by the
/// host's measure, otherwise all that have these letters in them.
std::string whyUnknown(OpenHost& host, const Catalogue& catalogue, const std::string& name);

}  // namespace pxk::tool
