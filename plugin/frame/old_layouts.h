/// The shorter records that hosts with control version 9 take.
///
/// Every function allocates zeroed memory that the caller owns, and gives nil when that fails. An array inside a
/// record that cannot be converted becomes nil with count 0, so that no host walks a missing array.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// The words of a class record and of a module record that old hosts know.
inline constexpr std::size_t oldClassWords = 25;
inline constexpr std::size_t oldModuleWords = 12;

/// A class record in the old layout, `oldClassWords` long; `delete[]` it as an array of words. The arrays that it
/// points to are new as well and outlive it: the host keeps them.
HostWord* FixClass(const REALclassDefinition* definition);

/// A module record in the old layout, `oldModuleWords` long, with new arrays of its own.
HostWord* FixModule(const REALmoduleDefinition* definition);

/// The first ten words of each property record. Nil when `properties` is nil, `count` is not positive, or the size is
/// 2^31 bytes or more.
HostWord* FixProperties(const REALproperty* properties, HostWord count);

}  // namespace pxk
