/// Memory that is meant to last for the life of the process, though nothing may point to it at the end.
#pragma once

#include "support/sanitizers.h"

#ifdef PXK_ADDRESS_SANITIZER
#include <sanitizer/lsan_interface.h>
#endif

namespace pxk::test {

/// What is allocated while one of these lives is no leak. The plugin makes its records for the life of the process;
/// where a host has no service to take them, nothing refers to them once the plugin is unloaded.
#ifdef PXK_ADDRESS_SANITIZER
using LastingMemory = __lsan::ScopedDisabler;
#else
struct [[maybe_unused]] LastingMemory {};
#endif

}  // namespace pxk::test
