#include "host/pictures/graphics.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace pxkhost {

namespace {

struct Segment {
    double x1, y1, x2, y2;
};

/// Cuts a segment down to -margin ... size + margin on both axes, so that no line is longer than the picture can show.
/// False when nothing is left.
bool clip(Segment& line, int width, int height, double margin) {
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

std::int64_t rounded(double value) { return std::llround(value); }

/// A pen that moves along a segment one pixel at a time, its top-left corner on the line.
class MovingPen {
  public:
    MovingPen(const Segment& line, int width, int height)
        : line_(line),
          width_(width),
          height_(height),
          steps_(std::max({std::abs(rounded(line.x2) - rounded(line.x1)), std::abs(rounded(line.y2) - rounded(line.y1)),
                           std::int64_t{1}})) {}

    /// Sets the pixels that the pen passes over. In each row these are one run, since the pen is over the row for a
    /// range of its steps and moves by at most one pixel in each.
    void draw(const Surface& surface, std::uint32_t word) const {
        for (int row = 0; row < surface.height; ++row) {
            const std::int64_t first = firstStepAt(row, false);
            const std::int64_t end = firstStepAt(row, true);
            if (first >= end) continue;
            const auto [low, high] = std::minmax({xAt(first), xAt(end - 1)});
            const auto left = std::max<std::int64_t>(low, 0);
            const auto right = std::min<std::int64_t>(high + width_, surface.width);
            if (left < right) std::fill(surface.row(row) + left, surface.row(row) + right, word);
        }
    }

  private:
    std::int64_t xAt(std::int64_t step) const { return rounded(line_.x1 + along(step) * (line_.x2 - line_.x1)); }
    std::int64_t yAt(std::int64_t step) const { return rounded(line_.y1 + along(step) * (line_.y2 - line_.y1)); }
    double along(std::int64_t step) const { return static_cast<double>(step) / static_cast<double>(steps_); }

    /// The first step in which the pen has come to a row or, with `beyond`, has left it again.
    std::int64_t firstStepAt(int row, bool beyond) const {
        const bool rises = line_.y2 < line_.y1;
        std::int64_t from = 0;
        std::int64_t to = steps_ + 1;
        while (from < to) {
            const std::int64_t middle = from + (to - from) / 2;
            const std::int64_t y = yAt(middle);
            const bool above = y + height_ <= row;
            const bool below = y > row;
            const bool reached = rises ? (beyond ? above : !below) : (beyond ? below : !above);
            (reached ? to : from) = reached ? middle : middle + 1;
        }
        return from;
    }

    Segment line_;
    std::int64_t width_;
    std::int64_t height_;
    std::int64_t steps_;
};

/// Draws libgd's line, moved by (dx, dy). False when this build has no libgd.
bool drawLibgdLine(gdImage& image, const Surface& surface, Segment line, int dx, int dy, int thickness, Argb colour) {
    // libgd draws from points in the picture only, so that a line twice as thick as the picture is large covers as much
    // as any thicker one.
    const int thickest = 2 * std::max(surface.width, surface.height) + 4;
    // Beyond this libgd's own clipping might overflow.
    constexpr double farthest = 1 << 20;
    line = {static_cast<double>(rounded(line.x1) + dx), static_cast<double>(rounded(line.y1) + dy),
            static_cast<double>(rounded(line.x2) + dx), static_cast<double>(rounded(line.y2) + dy)};
    const bool isFar =
        std::max({std::abs(line.x1), std::abs(line.y1), std::abs(line.x2), std::abs(line.y2)}) > farthest;
    if (isFar && !clip(line, surface.width, surface.height, 0)) return true;
    const auto whole = [](double value) { return static_cast<int>(rounded(value)); };
    return drawGdLine(image, whole(line.x1), whole(line.y1), whole(line.x2), whole(line.y2),
                      std::min(thickness, thickest), colour);
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
    if (surface.width == 0 || !clip(line, surface.width, surface.height, 2.0 * thickness)) return;

    const Argb colour = opaqueAlpha | (foreColor & 0xFFFFFFu);
    // libgd centres a thick line on its points, so the points move to the pen's middle.
    const bool drawn = target_->gd() != nullptr &&
                       drawLibgdLine(*target_->gd(), surface, line, width / 2, height / 2, thickness, colour);
    if (!drawn) MovingPen(line, width, height).draw(surface, wordFromArgb(surface.layout, colour));
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
