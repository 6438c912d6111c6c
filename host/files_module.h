/// The module that reads and writes picture files, beside the host library.
#pragma once

#include "files/pxkfiles.h"

namespace pxkhost {

/// The module's functions. The first call loads it, which takes libvips with it; both stay until the process ends.
/// Throws HostError, saying what is missing and how to install it.
const pxkfiles::Functions& filesModule();

/// The same when the module is loaded already, otherwise nil. Async-signal-safe.
const pxkfiles::Functions* loadedFilesModule() noexcept;

}  // namespace pxkhost
