/// Legacy pixel maps, which only the oldest hosts have.
#pragma once

struct PixMap;

namespace pxk {

/// Releases a legacy pixel map with the system function of this name, which is looked for in the application services
/// framework at the first call. Does nothing where there is no such framework.
void UnlockPixels(PixMap** pixMap);

}  // namespace pxk
