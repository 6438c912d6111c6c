/// The functions that this host offers to plugins, by name.
#pragma once

namespace pxkhost {

/// The function behind a service's name; nil for a name that this host does not know. What the open host lacks by its
/// options is not considered here.
void* findService(const char* name);

}  // namespace pxkhost
