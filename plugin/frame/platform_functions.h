/// Functions of the platform, found by name among the symbols that the process already has. Nothing is linked and no
/// platform header is needed, so everything here builds, and answers "not there", on every platform.
#pragma once

#include "frame/entry_point.h"

namespace pxk {

/// The address of a function that some library of this process offers, or nil.
void* findPlatformFunction(const char* name);

template <class Signature>
struct PlatformFunction : EntryPoint<Signature> {
    constexpr explicit PlatformFunction(const char* name) : EntryPoint<Signature>(findPlatformFunction, name) {}
};

}  // namespace pxk
