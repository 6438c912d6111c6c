#include "channels/transform_colors.h"

#include <algorithm>

#include "channels/transform_colors_kernels.h"
#include "frame/errors.h"
#include "frame/memory_block.h"
#include "picture/family_layout.h"
#include "picture/isa.h"
#include "picture/picture_editor.h"

namespace pxk {

namespace {

// The message for the first argument that must not be nil but is, or nil.
const char* nilArgument(REALpictureStruct* self, REALmemoryBlockStruct* red, REALmemoryBlockStruct* blue,
                        REALmemoryBlockStruct* green) {
    if (self == nullptr) return "picture is nil";
    if (red == nullptr) return "red memoryblock is nil";
    if (green == nullptr) return "green memoryblock is nil";
    if (blue == nullptr) return "blue memoryblock is nil";
    return nullptr;
}

bool holdsTable(const rbData& block) { return block.holds(ColorTables::values); }

std::int32_t sizeProperty(REALpictureStruct* picture, const char* name) {
    std::int32_t size = 0;
    return REALGetPropValueInteger(picture, name, &size) ? size : 0;
}

// The pixels are asked for their size as well: a picture may claim another than they have.
bool openDestination(PictureWriter& target, REALpictureStruct* dest, const PictureReader& source) {
    return dest != nullptr && sizeProperty(dest, "Width") >= source.width &&
           sizeProperty(dest, "Height") >= source.height && target.GetPictureEditor(dest, false, true) &&
           target.width >= source.width && target.height >= source.height;
}

// A channel's table, its place in the source word and its place in the result word.
struct Channel {
    const unsigned char* table;
    std::int32_t sourceShift;
    std::int32_t resultShift;
};

// The tables are copied, so that they stay as they are whatever memory the result is written to.
ColorTables colorTables(const Channel (&channels)[ColorTables::channels], std::uint32_t opaque, bool black) {
    const std::int32_t lowest = std::min({channels[0].sourceShift, channels[1].sourceShift, channels[2].sourceShift});
    ColorTables tables{};
    tables.opaque = opaque;
    for (const Channel& channel : channels) {
        const int place = (channel.sourceShift - lowest) / 8;
        tables.resultShift[place] = channel.resultShift;
        for (int value = 0; value < ColorTables::values; ++value) {
            const unsigned char mapped = channel.table[black ? 0 : value];
            tables.bytes[place][value] = mapped;
            tables.placed[place][value] = byteAt(mapped, channel.resultShift) | opaque;
        }
    }
    return tables;
}

void transform(const PictureReader& source, PictureWriter& target, const rbData& red, const rbData& green,
               const rbData& blue) {
    const Family resultFamily = familyOf(target.format);
    if (resultFamily == Family::none) return;
    // A format of no family reads black: any bytes will do for it when every value becomes what 0 becomes.
    const bool black = familyOf(source.format) == Family::none;
    const Family sourceFamily = black ? Family::alphaLast : familyOf(source.format);
    const FamilyLayout from = layoutOf(sourceFamily);
    const FamilyLayout to = layoutOf(resultFamily);
    const ColorTables tables = colorTables(
        {{red.bytes(), from.red, to.red}, {green.bytes(), from.green, to.green}, {blue.bytes(), from.blue, to.blue}},
        to.opaque, black);
    const auto transformRow = kernels<TransformColorsKernels>().transform[static_cast<int>(sourceFamily)];
    for (std::int32_t y = 0; y < source.height; ++y) {
        transformRow(source.rowAt(y), target.rowAt(y), source.width, tables);
    }
}

}  // namespace

REALpictureStruct* TransformColorsPXK(REALpictureStruct* self, REALmemoryBlockStruct* red, REALmemoryBlockStruct* blue,
                                      REALmemoryBlockStruct* green, REALpictureStruct* dest) {
    if (const char* message = nilArgument(self, red, blue, green)) {
        RaiseException("NilObjectException", message);
        return nullptr;
    }
    const rbData redTable(red);
    const rbData greenTable(green);
    const rbData blueTable(blue);
    if (!holdsTable(redTable) || !holdsTable(greenTable) || !holdsTable(blueTable)) return nullptr;
    PictureReader source;
    PictureWriter target;
    if (!source.open(self)) return nullptr;
    if (!openDestination(target, dest, source) && !target.NewPictureWriter(source.width, source.height)) return nullptr;
    transform(source, target, redTable, greenTable, blueTable);
    return target.RenderPictureWriter();
}

}  // namespace pxk
