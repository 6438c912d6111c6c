#include "host/pictures/graphics.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace pxkhost {

namespace {

struct Segment {
    double x1, y1, x2, y2;
};

/// Cuts a segment down to -margin ... size + margin on both axes, so that no line is longer than the picture can show.
/// False when nothing is left.
bool clip(Segment& line, int width, int height, int margin) {
    double from = 0;
    double to = 1;
    const auto cut = [&](double start, double delta, double low, double high) {
        if (delta == 0) return start >= low && start <= high;
        double enter = (low - start) / delta;
        double leave = (high - start) / delta;
        if (enter > leave) std::swap(enter, leave);
        from = std::max(from, enter);
        to = std::min(to, leave);
        return from <= to;
    };
    const double dx = line.x2 - line.x1;
    const double dy = line.y2 - line.y1;
    if (!cut(line.x1, dx, -margin, width + margin) || !cut(line.y1, dy, -margin, height + margin)) return false;
    line = {line.x1 + from * dx, line.y1 + from * dy, line.x1 + to * dx, line.y1 + to * dy};
    return true;
}

int rounded(double value) { return static_cast<int>(std::lround(value)); }

/// Sets the pixels under a pen whose top-left corner is at (x, y).
void stamp(const Surface& surface, int x, int y, int penWidth, int penHeight, std::uint32_t word) {
    const int left = std::max(x, 0);
    const int right = std::min(x + penWidth, surface.width);
    if (left >= right) return;
    for (int line = std::max(y, 0); line < std::min(y + penHeight, surface.height); ++line)
        std::fill(surface.row(line) + left, surface.row(line) + right, word);
}

/// Moves the pen along the segment one pixel at a time.
void drawPenLine(const Surface& surface, const Segment& line, int penWidth, int penHeight, std::uint32_t word) {
    const int steps =
        std::max({std::abs(rounded(line.x2) - rounded(line.x1)), std::abs(rounded(line.y2) - rounded(line.y1)), 1});
    for (int step = 0; step <= steps; ++step) {
        const double along = static_cast<double>(step) / steps;
        stamp(surface, rounded(line.x1 + along * (line.x2 - line.x1)), rounded(line.y1 + along * (line.y2 - line.y1)),
              penWidth, penHeight, word);
    }
}

std::uint32_t mixChannel(Argb over, Argb under, std::uint32_t share, int shift) {
    const std::uint32_t a = over >> shift & 0xFF;
    const std::uint32_t b = under >> shift & 0xFF;
    return (a * share + b * (255 - share)) / 255 << shift;
}

/// `share` of 255 parts of one pixel over another.
Argb mix(Argb over, Argb under, std::uint32_t share) {
    return mixChannel(over, under, share, 24) | mixChannel(over, under, share, 16) | mixChannel(over, under, share, 8) |
           mixChannel(over, under, share, 0);
}

}  // namespace

Graphics::Graphics(Ref<Picture> target) : Object(ownKind), target_(std::move(target)) { publish(header_); }

Ref<Graphics> Graphics::make(Ref<Picture> target) { return Ref<Graphics>::adopt(new Graphics(std::move(target))); }

void Graphics::dispose() { target_ = nullptr; }

void Graphics::drawLine(int x1, int y1, int x2, int y2) {
    const Surface& surface = target_->surface();
    const int width = std::max(penWidth, 1);
    const int height = std::max(penHeight, 1);
    const int thickness = std::max(width, height);
    Segment line{static_cast<double>(x1), static_cast<double>(y1), static_cast<double>(x2), static_cast<double>(y2)};
    if (surface.width == 0 || !clip(line, surface.width, surface.height, 2 * thickness)) return;

    const Argb colour = opaqueAlpha | (foreColor & 0xFFFFFFu);
    // libgd centres a thick line on its points, so the points move to the pen's middle.
    const bool drawn = target_->gd() != nullptr &&
                       drawGdLine(*target_->gd(), rounded(line.x1) + width / 2, rounded(line.y1) + height / 2,
                                  rounded(line.x2) + width / 2, rounded(line.y2) + height / 2, thickness, colour);
    if (!drawn) drawPenLine(surface, line, width, height, wordFromArgb(surface.layout, colour));
}

void Graphics::drawPicture(const Picture& source, int x, int y, int w, int h, int sx, int sy, int sw, int sh) {
    const Surface& from = source.surface();
    const Surface& to = target_->surface();
    if (sw < 0) sw = from.width;
    if (sh < 0) sh = from.height;
    const Surface mask = source.mask() ? source.mask()->surface() : Surface{};

    for (int row = 0; row < h; ++row) {
        for (int column = 0; column < w; ++column) {
            const int fromX = sx + static_cast<int>(static_cast<std::int64_t>(column) * sw / w);
            const int fromY = sy + static_cast<int>(static_cast<std::int64_t>(row) * sh / h);
            if (!from.contains(fromX, fromY) || !to.contains(x + column, y + row)) continue;
            Argb pixel = from.get(fromX, fromY);
            const Argb under = to.get(x + column, y + row);
            if (!source.hasAlphaChannel())
                pixel |= opaqueAlpha;
            else if (!target_->hasAlphaChannel())
                pixel = mix(pixel | opaqueAlpha, under, pixel >> 24);
            if (mask.contains(fromX, fromY)) pixel = mix(pixel, under, 255 - (mask.get(fromX, fromY) & 0xFF));
            to.set(x + column, y + row, pixel);
        }
    }
}

}  // namespace pxkhost
