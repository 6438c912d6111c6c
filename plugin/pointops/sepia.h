/// The class "PictureSepiaPXK": a picture in sepia tones, in fixed-point arithmetic.
///
/// A program sets SourcePicture and, optionally, weights, tone and limits, calls Run, and takes DestinationPicture.
#pragma once

#include <cstdint>

#include "frame/host_records.h"

namespace pxk {

/// An instance's data, which the host allocates zeroed and whose fields it reads and writes itself where a property is
/// a direct field. Published layout: the order of the fields is fixed.
struct SepiaClassData {
    double redWeight;
    double greenWeight;
    double blueWeight;
    REALpictureStruct* SourcePicture;
    REALpictureStruct* DestinationPicture;
    std::int32_t MinX;
    std::int32_t MinY;
    std::int32_t MaxX;
    std::int32_t MaxY;
    std::int32_t SepiaRed;
    std::int32_t SepiaGreen;
    std::int32_t SepiaBlue;
};

static_assert(sizeof(void*) != 4 || sizeof(SepiaClassData) <= 64);

/// The class as registered. Instance data is found through its host word.
extern REALclassDefinition PictureSepiaClass;

namespace sepia {

/// Sets the weights to 0.299, 0.587 and 0.114, and nothing else.
void PictureSepiaClassConstructor(REALobjectStruct* instance);

/// Releases both pictures and sets them to nil. Serves the method "Close" as well; once closed, it does nothing.
void PictureSepiaClassDestructor(REALobjectStruct* instance);

/// Makes DestinationPicture, of SourcePicture's size and opaque: grey = (r * wR + g * wG + b * wB) / 1024 with weights
/// of 1024ths, and each of SepiaRed, SepiaGreen and SepiaBlue added to it, clamped to 0-255. Sums and products wrap
/// at 32 bits; a weight whose 1024ths do not fit 32 bits, or are no number, counts as INT_MIN 1024ths.
///
/// The limits shorten the block that is computed and do not move it (`shortenedBlock`). The rest of the result is as
/// the host makes a new picture.
///
/// False, and DestinationPicture as it was, when SourcePicture cannot be read or the result not made; else true. The
/// reference that DestinationPicture held before is not released, so a second Run leaks the first result unless the
/// program has set DestinationPicture to nil: this is deliberate, kept for compatibility.
signed char Run(REALobjectStruct* instance);

/// The accessors of the weights. The property "FactorRed" has the red ones; "FactorBlue" has the green ones and
/// "FactorGreen" the blue ones: deliberate, kept for compatibility. `parameter` is the property's, and is ignored.
double GetFactorR(REALobjectStruct* instance, HostWord parameter);
double GetFactorG(REALobjectStruct* instance, HostWord parameter);
double GetFactorB(REALobjectStruct* instance, HostWord parameter);
void SetFactorR(REALobjectStruct* instance, HostWord parameter, double value);
void SetFactorG(REALobjectStruct* instance, HostWord parameter, double value);
void SetFactorB(REALobjectStruct* instance, HostWord parameter, double value);

}  // namespace sepia

}  // namespace pxk
