#include "pointops/sepia.h"

#include <limits>

#include "frame/instance_data.h"
#include "picture/isa.h"
#include "picture/map_pixels.h"
#include "picture/shortened_block.h"
#include "pointops/sepia_kernels.h"

namespace pxk {

namespace {

SepiaClassData& dataOf(REALobjectStruct* instance) { return instanceData<SepiaClassData>(instance, PictureSepiaClass); }

// In 1024ths, truncated towards zero; what does not fit, or is not a number, becomes the most negative integer.
std::uint32_t fixedPoint(double weight) {
    const double scaled = weight * 1024.0;
    const bool fits = scaled > -2147483649.0 && scaled < 2147483648.0;
    return static_cast<std::uint32_t>(fits ? static_cast<std::int32_t>(scaled)
                                           : std::numeric_limits<std::int32_t>::min());
}

Sepia settingsOf(const SepiaClassData& data) {
    return {fixedPoint(data.redWeight),
            fixedPoint(data.greenWeight),
            fixedPoint(data.blueWeight),
            static_cast<std::uint32_t>(data.SepiaRed),
            static_cast<std::uint32_t>(data.SepiaGreen),
            static_cast<std::uint32_t>(data.SepiaBlue)};
}

}  // namespace

namespace sepia {

void PictureSepiaClassConstructor(REALobjectStruct* instance) {
    SepiaClassData& data = dataOf(instance);
    data.redWeight = 0.299;
    data.greenWeight = 0.587;
    data.blueWeight = 0.114;
}

void PictureSepiaClassDestructor(REALobjectStruct* instance) {
    SepiaClassData& data = dataOf(instance);
    releaseField(data.SourcePicture);
    releaseField(data.DestinationPicture);
}

signed char Run(REALobjectStruct* instance) {
    SepiaClassData& data = dataOf(instance);
    PictureReader source;
    PictureWriter result;
    if (!source.open(data.SourcePicture) || !result.NewPictureWriter(source.width, source.height)) return 0;
    const BlockLimits limits = {data.MinX, data.MinY, data.MaxX, data.MaxY};
    mapPixels(source, result, shortenedBlock(limits, source.width, source.height), kernels<SepiaKernels>().sepia,
              settingsOf(data));
    data.DestinationPicture = result.RenderPictureWriter();
    return 1;
}

double GetFactorR(REALobjectStruct* instance, HostWord /*parameter*/) { return dataOf(instance).redWeight; }
double GetFactorG(REALobjectStruct* instance, HostWord /*parameter*/) { return dataOf(instance).greenWeight; }
double GetFactorB(REALobjectStruct* instance, HostWord /*parameter*/) { return dataOf(instance).blueWeight; }

void SetFactorR(REALobjectStruct* instance, HostWord /*parameter*/, double value) {
    dataOf(instance).redWeight = value;
}
void SetFactorG(REALobjectStruct* instance, HostWord /*parameter*/, double value) {
    dataOf(instance).greenWeight = value;
}
void SetFactorB(REALobjectStruct* instance, HostWord /*parameter*/, double value) {
    dataOf(instance).blueWeight = value;
}

}  // namespace sepia

}  // namespace pxk
