/// The one function that the shared library exports.
#pragma once

#include "frame/host_records.h"

/// Called once by the host, on its main thread, before any member is used. Keeps the resolver, reads the host version,
/// declares the record version and registers every class, extension and global method in the form this host accepts.
extern "C" [[gnu::visibility("default")]] void REALPluginMain(pxk::HostResolver resolver);
