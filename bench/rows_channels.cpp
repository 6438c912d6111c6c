// Channels and colour tables, against loops that read as many pictures and write one.
#include "bench/calls.h"

namespace pxkbench {
namespace {

using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::Ref;

constexpr Bars recombinationBars = {1.3, 1.3};

Call merge(const Workspace& work) {
    const auto member = work.host.member<PictureResult(Picture*, Picture*)>(
        "MergePicturePXK(source1 as picture, source2 as picture) as picture");
    return [=, first = &work.source(), second = &work.second()] { callOnce(member, first, second); };
}

Call combine(const Workspace& work) {
    const auto member = work.host.member<PictureResult(Picture*, Picture*, Picture*)>(
        "CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture");
    return
        [=, red = &work.source(), blue = &work.second(), green = &work.third()] { callOnce(member, red, blue, green); };
}

// Adds to the same blocks again and again, as a program does that counts several pictures together.
Call countColors(const Workspace& work) {
    using pxkhost::byRef;
    using Block = pxkhost::ByRef<Ref<MemoryBlock>>;
    const auto member = work.host.member<void(Picture*, Block, Block, Block, pxkhost::ByRef<int>)>(
        "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as memoryblock, byref count "
        "as "
        "integer)");
    Ref<MemoryBlock> red;
    Ref<MemoryBlock> green;
    Ref<MemoryBlock> blue;
    return [=, source = &work.source()]() mutable {
        int count = 0;
        member(source, byRef(red), byRef(green), byRef(blue), byRef(count));
        if (count != source->width() * source->height()) throw std::runtime_error("not every pixel was counted");
    };
}

Ref<MemoryBlock> table(unsigned step) {
    Ref<MemoryBlock> block = MemoryBlock::make(256);
    unsigned value = 0;
    for (std::uint8_t& byte : block->bytes()) byte = static_cast<std::uint8_t>(value += step);
    return block;
}

Prepare transformInto(Picture* (*destination)(const Workspace&)) {
    return [=](const Workspace& work) -> Call {
        using Block = Ref<MemoryBlock>;
        const auto member = work.host.member<PictureResult(Picture*, Block, Block, Block, Picture*)>(
            "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as picture = nil) "
            "as "
            "picture");
        return [=, source = &work.source(), target = destination(work), red = table(3), blue = table(5),
                green = table(7)] { callOnce(member, source, red, blue, green, target); };
    };
}

Picture* intoNewPicture(const Workspace& /*work*/) { return nullptr; }
Picture* intoTarget(const Workspace& work) { return &work.target(); }

// Some look with every entry its own.
void fillTable(const pxkhost::Host& host, pxkhost::Instance& instance) {
    const auto set =
        host.memberSetter<void(pxkhost::Instance*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t, double)>(
            "PictureLut3DPXK.Table(r as UInt32, g as UInt32, b as UInt32, x as UInt32) as double");
    for (std::uint32_t r = 0; r < 18; ++r) {
        for (std::uint32_t g = 0; g < 18; ++g) {
            for (std::uint32_t b = 0; b < 18; ++b) {
                set(&instance, r, g, b, 0U, r * 12.0 + g * 2.0);
                set(&instance, r, g, b, 1U, g * 13.0 + b * 1.5);
                set(&instance, r, g, b, 2U, b * 11.0 + r * 2.5);
            }
        }
    }
}

}  // namespace

std::vector<Row> channelRows(pxk::InstructionSet set) {
    // Permutes of whole registers look up a table as fast as memory brings its pixels; no other set has them.
    const Bars tableBars = set == pxk::InstructionSet::avx512 ? Bars{1.5, 1.5} : noBars;
    const std::vector<Content> everyKind = {Content::noise, Content::photo, Content::flat};
    return {
        {"ReplaceRedChannelPXK", methodOfTwo<PictureResult>("ReplaceRedChannelPXK(RedChannel as picture) as picture"),
         &twoToOneLimit, Makes::picture, recombinationBars},
        {"ReplaceGreenChannelPXK",
         methodOfTwo<PictureResult>("ReplaceGreenChannelPXK(GreenChannel as picture) as picture"), &twoToOneLimit,
         Makes::picture, recombinationBars},
        {"ReplaceBlueChannelPXK",
         methodOfTwo<PictureResult>("ReplaceBlueChannelPXK(BlueChannel as picture) as picture"), &twoToOneLimit,
         Makes::picture, recombinationBars},
        {"CombinePicturesPXK", combine, &threeToOneLimit, Makes::picture, recombinationBars},
        {"MergePicturePXK", merge, &twoToOneLimit, Makes::picture, recombinationBars},
        {"CountColorPXK",
         method<int>("CountColorPXK(col as color) as integer", blobColour),
         &readLimit,
         Makes::nothing,
         {1.3, 1.3},
         {Content::blobs}},
        {"CountColorsPXK", countColors, &readLimit, Makes::nothing, noBars, everyKind},
        {"TransformColorsPXK", transformInto(intoNewPicture), &copyLimit, Makes::picture, tableBars},
        {"TransformColorsPXK(dest)", transformInto(intoTarget), &copyLimit, Makes::nothing, tableBars},
        {"PictureLut3DPXK.Run",
         runOf("PictureLut3DPXK", fillTable),
         &copyLimit,
         Makes::picture,
         noBars,
         {Content::noise, Content::photo}},
    };
}

}  // namespace pxkbench
