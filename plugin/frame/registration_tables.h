/// What the plugin registers. The tables are defined beside the members (plugin/registration/), start as they stand in
/// the library's data without any code being run, and are adapted in place to the running host.
#pragma once

#include <span>

#include "frame/host_records.h"

namespace pxk {

/// The plugin's own classes, in order of registration.
std::span<REALclassDefinition* const> pluginClasses();

/// The extension of the host's class "Picture".
extern REALclassDefinition pictureClass;

/// The global methods, in order of registration.
std::span<REALmethodDefinition> pluginGlobalMethods();

}  // namespace pxk
