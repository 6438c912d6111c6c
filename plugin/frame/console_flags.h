/// Adapts the flags of the registration tables to the running host.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// What one flags word becomes on the running host. From 2010.029 on, 0x40000 also sets 0x4 and 0x80000 also sets 0x8;
/// the two high bits themselves are for this plugin only and are always cleared.
HostWord consoleFlags(HostWord flags);

/// Rewrites the flags of a class record and of all its methods and properties, plain and shared, in place.
void FixConsoleFlags(REALclassDefinition* definition);

}  // namespace pxk
