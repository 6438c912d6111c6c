/// The class "PictureLut3DPXK": every colour looked up in a three-dimensional table, with tetrahedral interpolation.
///
/// A program fills the table through "Table", sets SourcePicture and, optionally, limits, calls Run, and takes
/// DestinationPicture.
#pragma once

#include <cstdint>

#include "channels/lut3d_kernels.h"
#include "frame/host_records.h"

namespace pxk {

/// An instance's data, which the host allocates zeroed and whose first six fields it reads and writes itself. Published
/// layout: the order of the fields is fixed.
struct Lut3DClassData {
    REALpictureStruct* SourcePicture;
    REALpictureStruct* DestinationPicture;
    std::int32_t MinX;
    std::int32_t MinY;
    std::int32_t MaxX;
    std::int32_t MaxY;
    Lut3DTable table;
};

static_assert(sizeof(void*) != 4 || sizeof(Lut3DClassData) == 139992);

/// The class as registered. Instance data is found through its host word.
extern REALclassDefinition Lut3DClass;

namespace lut3d {

/// Does nothing: the fields start as the host allocates them, zeroed.
void Lut3DClassConstructor(REALobjectStruct* instance);

/// Releases both pictures and sets them to nil. Serves the method "Close" as well; once closed, it does nothing.
void Lut3DClassDestructor(REALobjectStruct* instance);

/// Releases DestinationPicture and makes a new one of SourcePicture's size, with an alpha channel when that has one,
/// in which the colours are looked up: a channel value v lies between the points v / 17 and the next, interpolation is
/// in doubles, and the result is clamped to 0-255 and truncated, not rounded. Written pixels are opaque.
///
/// The limits shorten the block that is computed and do not move it (`shortenedBlock`); a negative start counts as 0.
/// The rest of the result is as the host makes a new picture.
///
/// False, and DestinationPicture nil, when SourcePicture is nil or cannot be read or the result not made; else true.
signed char Run(REALobjectStruct* instance);

/// Entry x (0 red, 1 green, 2 blue) of the table's point (r, g, b), each 0 to 17. Outside of that the getter gives 0
/// and the setter does nothing.
double GetPMX(REALobjectStruct* instance, std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x);
void SetPMX(REALobjectStruct* instance, std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x,
            double value);

}  // namespace lut3d

}  // namespace pxk
