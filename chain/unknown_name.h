/// The message for a name that is not registered.
#pragma once

#include <string>

#include "chain/catalogue.h"
#include "chain/open_host.h"

namespace pxk::chain {

/// The host's message for a name that no chain can call, with the name that was probably meant: the nearest one by the
/// host's measure, otherwise all that contain these letters.
std::string whyUnknown(OpenHost& host, const Catalogue& catalogue, const std::string& name);

}  // namespace pxk::chain
