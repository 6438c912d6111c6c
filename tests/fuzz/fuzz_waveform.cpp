// Fuzzes waveforms: any samples, drawn with any arguments.
#include <algorithm>
#include <limits>
#include <memory>

#include "fuzz/fuzz_host.h"
#include "support/definitions/waveform.h"

namespace pxk::fuzz {

namespace {

using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::Ref;
using test::WaveformCall;

constexpr auto renderSamples =
    "RenderSamplesPXK(Samples as memoryblock, SampleCount as integer, Smooth as integer, Width as integer, Height as "
    "integer, outlinewidth as integer, BackColor as color=&c88B5C4, ForeColor as color=&c274C5A, OutLineColor as "
    "color=&c203F4E, Bits as Integer = 8, AutoScale as boolean = false) as Picture";

constexpr int knownBits[] = {7, 8, 15, 16, -32, -64};

// `bits` is an index where it is small, so that the known formats come up often.
int bitsOf(std::int8_t bits) { return bits >= 0 && bits < 6 ? knownBits[bits] : bits; }

WaveformCall callOf(InputReader& input) {
    WaveformCall call;
    call.bits = bitsOf(input.take<std::int8_t>());
    call.sampleCount = input.take<std::int32_t>();
    call.smooth = input.take<std::int32_t>();
    call.width = input.take<std::int32_t>();
    call.height = input.take<std::int32_t>();
    call.outlineWidth = input.take<std::int8_t>();
    call.backColor = input.take<std::uint32_t>();
    call.foreColor = input.take<std::uint32_t>();
    call.outlineColor = input.take<std::uint32_t>();
    call.autoScale = (input.take<std::uint8_t>() & 1) != 0;
    call.block = input.takeRest();
    return call;
}

// The call sees memory that ends where the block does, so that the sanitizer sees one byte more.
Ref<Picture> draw(const WaveformCall& call) {
    const std::unique_ptr<std::uint8_t[]> exact(new std::uint8_t[call.block.size()]);
    std::copy(call.block.begin(), call.block.end(), exact.get());
    const Ref<MemoryBlock> block = MemoryBlock::make(0);
    if (!call.block.empty()) block->pretend(static_cast<std::int32_t>(call.block.size()), exact.get());
    Ref<Picture> picture = host().invoke<Ref<Picture>>(renderSamples, block, call.sampleCount, call.smooth, call.width,
                                                       call.height, call.outlineWidth, call.backColor, call.foreColor,
                                                       call.outlineColor, call.bits, call.autoScale);
    require(block->references() == 1, "the block's reference was not given back");
    return picture;
}

bool isKnown(int bits) { return test::bytesPerSample(bits) != 0; }

// Pictures of more pixels than this would only take time.
constexpr std::int64_t mostPixels = 1 << 16;
// The definition goes from sample to sample, and along a line from row to row.
constexpr int mostSamples = 1 << 16;
constexpr int farthestRow = 1 << 12;

bool isPictureSide(int side) { return side >= 1 && side <= 32767; }

bool withinReach(const WaveformCall& call) {
    if (call.sampleCount > mostSamples || call.outlineWidth > 1) return false;
    if (call.outlineWidth < 1) return true;
    const test::WaveformRows rows = test::waveformRows(call, call.width, call.height, call.sampleCount);
    const auto isNear = [](int row) { return row >= -farthestRow && row <= farthestRow; };
    return std::ranges::all_of(rows.low, isNear) && std::ranges::all_of(rows.high, isNear);
}

void check(const WaveformCall& call, int format) {
    const bool known = isKnown(call.bits) && !call.block.empty();
    const WaveformCall whole = known ? test::completed(call) : call;
    const bool drawable = known && isPictureSide(whole.width) && isPictureSide(whole.height);
    if (drawable && std::int64_t{whole.width} * whole.height > mostPixels) return;
    const Ref<Picture> picture = draw(call);
    require(static_cast<bool>(picture) == drawable, "a picture where there is none, or none where there is one");
    if (!picture) return;
    require(picture->width() == whole.width && picture->height() == whole.height, "another size than was asked for");
    if (!withinReach(whole)) return;
    const std::optional<test::Canvas> expected = test::waveform(call, format);
    require(expected.has_value(), "the definition has no picture");
    for (int y = 0; y < whole.height; ++y) {
        const auto start = expected->words.begin() + std::ptrdiff_t{y} * whole.width;
        require(std::equal(start, start + whole.width, picture->row(y)), "a row that the definition does not have");
    }
}

}  // namespace

std::vector<Bytes> seeds() {
    std::vector<Bytes> inputs;
    const auto add = [&](std::int8_t bits, int count, int smooth, int width, int height, std::int8_t outline,
                         std::uint8_t autoScale, const Bytes& block) {
        inputs.push_back(InputWriter()
                             .put(static_cast<std::uint8_t>(inputs.size()))
                             .put(bits)
                             .put(count)
                             .put(smooth)
                             .put(width)
                             .put(height)
                             .put(outline)
                             .put(0x88B5C4U)
                             .put(0x274C5AU)
                             .put(0x203F4EU)
                             .put(autoScale)
                             .put(block)
                             .bytes());
    };
    Bytes noise;
    for (unsigned i = 0; i < 256; ++i) noise.push_back(static_cast<std::uint8_t>(i * i * 7 + i * 13));
    const auto floats = [](double a, double b, double c) { return InputWriter().put(a).put(b).put(c).bytes(); };
    for (std::int8_t bits = 0; bits < 6; ++bits) {
        for (std::int8_t outline = 0; outline < 3; ++outline) add(bits, 30, 2, 20, 40, outline, 0, noise);
        add(bits, 0, 1, 0, 0, 1, 1, noise);
    }
    const double infinity = std::numeric_limits<double>::infinity();
    add(5, 3, 1, 3, 20, 1, 0, floats(0.5, -0.25, 0.125));
    add(5, 3, -1, 3, 20, 1, 1, floats(infinity, -infinity, std::numeric_limits<double>::quiet_NaN()));
    add(5, 3, 0, 7, 20, 3, 0, floats(1e300, -1e300, 1e-300));
    add(1, std::numeric_limits<int>::max(), 1, 5, 5, 1, 0, noise);
    add(3, 10, 1, std::numeric_limits<int>::max(), std::numeric_limits<int>::max(), 1, 0, noise);
    add(9, 10, 1, 10, 10, 1, 0, noise);
    return inputs;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    InputReader input(data, size);
    const int format = choosePictures(input.take<std::uint8_t>());
    check(callOf(input), format);
    requireBalancedBooks();
    return 0;
}

}  // namespace pxk::fuzz
