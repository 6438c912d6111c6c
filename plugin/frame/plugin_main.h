/// The one function that the shared library exports.
#pragma once

#include "frame/host_records.h"

#ifdef _WIN32
#define PXK_EXPORT [[gnu::dllexport]]
#else
#define PXK_EXPORT [[gnu::visibility("default")]]
#endif

/// Called once by the host, on its main thread, before any member is used. Keeps the resolver, reads the host version,
/// declares the record version and registers every class, extension and global method in the form this host accepts.
extern "C" PXK_EXPORT void REALPluginMain(pxk::HostResolver resolver);
