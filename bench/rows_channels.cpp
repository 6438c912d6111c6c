// The rows of channel operations and lookup tables; their limits read as many pictures as they do.
#include <array>
#include <cstring>
#include <span>
#include <utility>

#include "bench/calls.h"
#include "bench/looks.h"

namespace pxkbench {
namespace {

using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::Ref;

constexpr Thresholds recombinationThresholds = {1.3, 1.3};

Call merge(const Workspace& work) {
    const auto member = work.host.member<PictureResult(Picture*, Picture*)>(
        "MergePicturePXK(source1 as picture, source2 as picture) as picture");
    return [=, first = &work.source(), second = &work.second()](Outcome* outcome) {
        callOnce(outcome, member, first, second);
    };
}

Call combine(const Workspace& work) {
    const auto member = work.host.member<PictureResult(Picture*, Picture*, Picture*)>(
        "CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture");
    return [=, red = &work.source(), blue = &work.second(), green = &work.third()](Outcome* outcome) {
        callOnce(outcome, member, red, blue, green);
    };
}

Outcome histograms(const std::array<Ref<MemoryBlock>, 3>& blocks) {
    Outcome counts;
    for (const Ref<MemoryBlock>& block : blocks) {
        const std::span<const std::uint8_t> bytes = std::as_const(*block).bytes();
        for (std::size_t place = 0; place < bytes.size(); place += sizeof(std::uint32_t)) {
            std::uint32_t count = 0;
            std::memcpy(&count, &bytes[place], sizeof count);
            counts.push_back(count);
        }
    }
    return counts;
}

// Adds to the same blocks again and again, like a program that counts several pictures together.
Call countColors(const Workspace& work) {
    using pxkhost::byRef;
    using Block = pxkhost::ByRef<Ref<MemoryBlock>>;
    const auto member = work.host.member<void(Picture*, Block, Block, Block, pxkhost::ByRef<int>)>(
        "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as memoryblock, byref count "
        "as "
        "integer)");
    std::array<Ref<MemoryBlock>, 3> blocks;
    return [=, source = &work.source()](Outcome* outcome) mutable {
        int count = 0;
        member(source, byRef(blocks[0]), byRef(blocks[1]), byRef(blocks[2]), byRef(count));
        if (count != source->width() * source->height()) throw std::runtime_error("not all pixels were counted");
        if (outcome != nullptr) *outcome = histograms(blocks);
    };
}

Ref<MemoryBlock> table(int channel) {
    Ref<MemoryBlock> block = MemoryBlock::make(256);
    for (int value = 0; value < 256; ++value)
        block->bytes()[static_cast<std::size_t>(value)] = tableEntry(channel, value);
    return block;
}

Prepare transformInto(Picture* (*destination)(const Workspace&)) {
    return [=](const Workspace& work) -> Call {
        using Block = Ref<MemoryBlock>;
        const auto member = work.host.member<PictureResult(Picture*, Block, Block, Block, Picture*)>(
            "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as picture = nil) "
            "as "
            "picture");
        return [=, source = &work.source(), target = destination(work), red = table(0), blue = table(2),
                green = table(1)](Outcome* outcome) { callOnce(outcome, member, source, red, blue, green, target); };
    };
}

Picture* intoNewPicture(const Workspace& /*work*/) { return nullptr; }
Picture* intoTarget(const Workspace& work) { return &work.target(); }

void fillTable(const pxkhost::Host& host, pxkhost::Instance& instance) {
    using Number = std::uint32_t;
    const auto set = host.memberSetter<void(pxkhost::Instance*, Number, Number, Number, Number, double)>(
        "PictureLut3DPXK.Table(r as UInt32, g as UInt32, b as UInt32, x as UInt32) as double");
    for (Number r = 0; r < lookPoints; ++r)
        for (Number g = 0; g < lookPoints; ++g)
            for (Number b = 0; b < lookPoints; ++b)
                for (Number channel = 0; channel < 3; ++channel)
                    set(&instance, r, g, b, channel, lookEntry(r, g, b, channel));
}

}  // namespace

std::vector<Row> channelRows(pxk::Isa isa) {
    // With AVX-512 VBMI permutes, a lookup is as fast as memory; other instruction sets have no equivalent.
    const Thresholds tableThresholds = isa == pxk::Isa::avx512 ? Thresholds{1.5, 1.5} : noThresholds;
    const std::vector<Content> everyKind = {Content::noise, Content::photo, Content::flat};
    return {
        {"ReplaceRedChannelPXK", methodOfTwo<PictureResult>("ReplaceRedChannelPXK(RedChannel as picture) as picture"),
         &twoToOneLimit, Makes::picture, recombinationThresholds},
        {"ReplaceGreenChannelPXK",
         methodOfTwo<PictureResult>("ReplaceGreenChannelPXK(GreenChannel as picture) as picture"), &twoToOneLimit,
         Makes::picture, recombinationThresholds},
        {"ReplaceBlueChannelPXK",
         methodOfTwo<PictureResult>("ReplaceBlueChannelPXK(BlueChannel as picture) as picture"), &twoToOneLimit,
         Makes::picture, recombinationThresholds},
        {"CombinePicturesPXK", combine, &threeToOneLimit, Makes::picture, recombinationThresholds},
        {"MergePicturePXK", merge, &twoToOneLimit, Makes::picture, recombinationThresholds},
        {"CountColorPXK",
         method<int>("CountColorPXK(col as color) as integer", blobColour),
         &readLimit,
         Makes::nothing,
         {1.3, 1.3},
         {Content::blobs}},
        {"CountColorsPXK", countColors, &readLimit, Makes::nothing, noThresholds, everyKind},
        {"TransformColorsPXK", transformInto(intoNewPicture), &copyLimit, Makes::picture, tableThresholds},
        {"TransformColorsPXK(dest)", transformInto(intoTarget), &copyLimit, Makes::nothing, tableThresholds},
        {"PictureLut3DPXK.Run",
         runOf("PictureLut3DPXK", fillTable),
         &copyLimit,
         Makes::picture,
         noThresholds,
         {Content::noise, Content::photo}},
    };
}

}  // namespace pxkbench
