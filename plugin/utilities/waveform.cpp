#include "utilities/waveform.h"

#include <algorithm>
#include <cmath>

#include "frame/allocation.h"
#include "frame/errors.h"
#include "frame/memory_block.h"
#include "picture/host_color.h"
#include "picture/isa.h"
#include "utilities/envelope.h"
#include "utilities/span_kernels.h"
#include "utilities/wu_line.h"

namespace pxk {

namespace {

struct Point {
    std::int32_t x;
    std::int32_t y;
};

void keepOutLineColor(std::uint32_t color) {
    const Rgb channels = rgbOf(color);
    gOutLineColorR = channels.red;
    gOutLineColorG = channels.green;
    gOutLineColorB = channels.blue;
}

// Far enough out that no picture reaches there, and near enough that half a pen's width may still be taken off.
constexpr double farthestRow = 1 << 30;

std::int32_t rowOf(double value, std::int32_t centre) {
    if (std::isnan(value)) return centre;
    return static_cast<std::int32_t>(std::clamp(std::floor(value + centre), -farthestRow, farthestRow));
}

// The two curves of a waveform, as a row for each column.
class Curves {
  public:
    bool allocate(std::int32_t width) {
        low_ = allocateZeroed<std::int32_t>(static_cast<std::uint64_t>(width));
        high_ = allocateZeroed<std::int32_t>(static_cast<std::uint64_t>(width));
        width_ = width;
        return low_ != nullptr && high_ != nullptr;
    }

    void place(const Envelope& envelope, std::int32_t centre) {
        centre_ = centre;
        for (std::int32_t x = 0; x < width_; ++x) {
            low_.get()[x] = rowOf(envelope.low()[x], centre);
            high_.get()[x] = rowOf(envelope.high()[x], centre);
        }
    }

    void fill(PictureWriter& picture, std::uint32_t foreColor, std::uint32_t backColor) const {
        const Family family = familyOf(picture.format);
        if (family == Family::none) return;
        const FamilyLayout layout = layoutOf(family);
        const SpanWords words = {opaqueWord(foreColor, layout), opaqueWord(backColor, layout)};
        const CurveRows rows = {low_.get(), high_.get()};
        const auto& [aboveCentre, fromCentre] = kernels<SpanKernels>();
        for (std::int32_t y = 0; y < picture.height; ++y) {
            (y < centre_ ? aboveCentre : fromCentre)(picture.rowAt(y), width_, y, rows, words);
        }
    }

    // Calls `drawLine(from, to)` along both curves, column by column. Both start on the centre line.
    template <class DrawLine>
    void trace(DrawLine drawLine) const {
        Point low = {0, centre_};
        Point high = {0, centre_};
        for (std::int32_t x = 0; x < width_; ++x) {
            const Point nextLow = {x, low_.get()[x]};
            const Point nextHigh = {x, high_.get()[x]};
            drawLine(low, nextLow);
            drawLine(high, nextHigh);
            low = nextLow;
            high = nextHigh;
        }
    }

  private:
    std::unique_ptr<std::int32_t[]> low_;
    std::unique_ptr<std::int32_t[]> high_;
    std::int32_t width_ = 0;
    std::int32_t centre_ = 0;
};

// The host's pen hangs to the right of and below the points that it is led along: half its size centres it.
void traceWithPen(REALpictureStruct* picture, const Curves& curves, std::int32_t size, std::uint32_t color) {
    const HostReference<REALgraphicsStruct> graphics(REALGetPictureGraphics(picture));
    if (graphics == nullptr) return;
    REALSetPropValueColor(graphics.get(), "ForeColor", color);
    REALSetPropValueInteger(graphics.get(), "PenHeight", size);
    REALSetPropValueInteger(graphics.get(), "PenWidth", size);
    const std::int32_t half = size / 2;
    curves.trace([&](Point from, Point to) {
        GraphicsDrawLine(graphics.get(), from.x - half, from.y - half, to.x - half, to.y - half);
    });
}

}  // namespace

REALpictureStruct* RenderSamples(REALmemoryBlockStruct* Samples, int SampleCount, int Smooth, int Width, int Height,
                                 int outlinewidth, unsigned BackColor, unsigned ForeColor, unsigned OutLineColor,
                                 int Bits, signed char AutoScale) {
    if (Samples == nullptr) {
        RaiseException("NilObjectException", "memoryblock is nil");
        return nullptr;
    }
    keepOutLineColor(OutLineColor);
    const SampleFormat* format = findSampleFormat(Bits);
    if (format == nullptr) return nullptr;

    const rbData block(Samples);
    if (SampleCount < 1) SampleCount = static_cast<int>(block.size()) / ((Bits + 7) / 8);
    if (Height < 1) Height = 500;
    if (Width < 1) Width = SampleCount;
    // The sides are looked at before the work that a picture of that size would take.
    if (block.bytes() == nullptr || !isPictureSide(Width) || !isPictureSide(Height)) return nullptr;

    Envelope envelope;
    Curves curves;
    if (!envelope.allocate(Width) || !curves.allocate(Width)) return nullptr;
    const std::int64_t available = block.sizeIsKnown() ? block.size() / format->bytesPerSample : SampleCount;
    envelope.measure({block.bytes(), available, SampleCount}, *format);
    const double fullScale = AutoScale != 0 ? 2 * envelope.peak(*format) : format->fullScale;
    envelope.smooth(Smooth);
    envelope.scale(Height, fullScale);

    PictureWriter picture;
    if (!picture.NewPictureWriter(Width, Height)) return nullptr;
    curves.place(envelope, Height / 2);
    curves.fill(picture, ForeColor, BackColor);
    if (outlinewidth == 1) {
        curves.trace([&](Point from, Point to) { DrawWuLine(picture, from.x, from.y, to.x, to.y); });
    }
    HostReference<REALpictureStruct> rendered(picture.RenderPictureWriter());
    if (outlinewidth > 1) traceWithPen(rendered.get(), curves, outlinewidth, OutLineColor);
    return rendered.release();
}

}  // namespace pxk
