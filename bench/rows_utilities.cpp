// The rows of waveforms and binary strings; their limits read the same samples and bytes.
#include "bench/calls.h"

namespace pxkbench {
namespace {

using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::String;
using StringResult = pxkhost::Ref<String>;

constexpr Thresholds stringThresholds = {1.5, 1.5};
constexpr auto toString = "PicturetoBinaryStringPXK(p as picture) as string";
constexpr auto fromString = "BinaryStringtoPicturePXK(data as String) as Picture";

Call pictureToString(const Workspace& work) {
    const auto member = work.host.member<StringResult(Picture*)>(toString);
    return [=, source = &work.source()](Outcome* outcome) { callOnce(outcome, member, source); };
}

Call stringToPicture(const Workspace& work) {
    const auto member = work.host.member<PictureResult(StringResult)>(fromString);
    return [=, string = work.host.invoke<StringResult>(toString, &work.source())](Outcome* outcome) {
        callOnce(outcome, member, string);
    };
}

Call renderSamples(const Workspace& work) {
    const auto member = work.host.member<PictureResult(MemoryBlock*, int, int, int, int, int, std::uint32_t,
                                                       std::uint32_t, std::uint32_t, int, bool)>(
        "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height "
        "as "
        "integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor as "
        "color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture");
    constexpr int signed16 = 15;
    return [=, samples = &work.samples(), size = work.size](Outcome* outcome) {
        callOnce(outcome, member, samples, static_cast<int>(sampleCount), 1, size.width, size.height, 1, 0x88B5C4U,
                 0x274C5AU, 0x203F4EU, signed16, false);
    };
}

}  // namespace

std::vector<Row> utilityRows() {
    return {
        {"PicturetoBinaryStringPXK", pictureToString, &toStringLimit, Makes::nothing, stringThresholds},
        {"BinaryStringtoPicturePXK", stringToPicture, &fromBytesLimit, Makes::picture, stringThresholds},
        {"RenderSamplesPXK(ten million samples)",
         renderSamples,
         &samplesLimit,
         Makes::nothing,
         {0, 3.0},
         {Content::photo},
         {waveformSize}},
    };
}

}  // namespace pxkbench
