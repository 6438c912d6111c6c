#include "channels/lut3d.h"

#include <algorithm>

#include "frame/instance_data.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"
#include "picture/shortened_block.h"

namespace pxk {

namespace {

Lut3DClassData& dataOf(REALobjectStruct* instance) { return instanceData<Lut3DClassData>(instance, Lut3DClass); }

// The table's entry, or nil where there is none.
double* entryAt(REALobjectStruct* instance, std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x) {
    constexpr std::uint32_t points = Lut3DTable::points;
    if (r >= points || g >= points || b >= points || x >= Lut3DTable::channels) return nullptr;
    return &dataOf(instance).table.entries[r][g][b][x];
}

void lookUp(const PictureReader& source, PictureWriter& result, const Rectangle& block, const Lut3DTable& table) {
    const Family resultFamily = familyOf(result.format);
    if (resultFamily == Family::none) return;
    const FamilyLayout from = layoutOf(familyOf(source.format));
    const FamilyLayout to = layoutOf(resultFamily);
    const auto lookUpRow = kernels<Lut3DKernels>().lookUp;
    for (std::int32_t y = block.top; y < block.bottom; ++y) {
        lookUpRow(source.rowAt(y), result.rowAt(y), block.width(), table, from, to);
    }
}

}  // namespace

namespace lut3d {

void Lut3DClassConstructor(REALobjectStruct* /*instance*/) {}

void Lut3DClassDestructor(REALobjectStruct* instance) {
    Lut3DClassData& data = dataOf(instance);
    releaseField(data.SourcePicture);
    releaseField(data.DestinationPicture);
}

signed char Run(REALobjectStruct* instance) {
    Lut3DClassData& data = dataOf(instance);
    releaseField(data.DestinationPicture);
    PictureReader source;
    PictureWriter result;
    if (!source.open(data.SourcePicture) || !result.NewPictureWriter(source)) return 0;
    const BlockLimits limits = {std::max(data.MinX, 0), std::max(data.MinY, 0), data.MaxX, data.MaxY};
    lookUp(source, result, shortenedBlock(limits, source.width, source.height), data.table);
    data.DestinationPicture = result.RenderPictureWriter();
    return 1;
}

double GetPMX(REALobjectStruct* instance, std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x) {
    const double* entry = entryAt(instance, r, g, b, x);
    return entry != nullptr ? *entry : 0.0;
}

void SetPMX(REALobjectStruct* instance, std::uint32_t r, std::uint32_t g, std::uint32_t b, std::uint32_t x,
            double value) {
    if (double* entry = entryAt(instance, r, g, b, x)) *entry = value;
}

}  // namespace lut3d

}  // namespace pxk
