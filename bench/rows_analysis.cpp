// The rows of uniformity tests, search, scrolling and masks.
#include <algorithm>
#include <cmath>

#include "bench/calls.h"

namespace pxkbench {
namespace {

using pxkhost::Picture;

constexpr Thresholds fullScanThresholds = {1.3, 1.3};
constexpr Thresholds greyScanThresholds = {2.0, 2.0};
constexpr Thresholds searchThresholds = {3.0, 3.0};
constexpr Thresholds scrollThresholds = {1.3, 1.3};

// Pictures are scrolled as far as in their limits.
constexpr int distance = limitDistance;

constexpr auto scrollVertical =
    "ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean";
constexpr auto scrollHorizontal =
    "ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean";

// Searches for a needle of 32 x 32 pixels from near the end of the picture. In flat pictures, the needle's last pixel
// matches nothing, so that every position costs a comparison of all 32 rows and nothing is found: the worst case.
Call find(const Workspace& work) {
    using pxkhost::byRef;
    constexpr int side = 32;
    const int left = work.size.width - side - 5;
    const int top = work.size.height - side - 3;
    const PictureResult needle = work.host.newPicture(side, side);
    for (int y = 0; y < side; ++y) std::copy_n(work.source().row(top + y) + left, side, needle->row(y));
    const bool isThere = work.content == Content::photo || work.content == Content::noise;
    if (!isThere) needle->setPixel(side - 1, side - 1, 0xFF000000);
    const auto member =
        work.host.member<bool(Picture*, Picture*, pxkhost::ByRef<int>, pxkhost::ByRef<int>, int, int, int)>(
            "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, StartX as Integer = 0, StartY as "
            "Integer "
            "= 0, Tolerance as Integer = 3) as boolean");
    return [=, haystack = &work.source()](Outcome* outcome) {
        int x = 0;
        int y = 0;
        const bool found = member(haystack, needle.get(), byRef(x), byRef(y), 0, 0, 3);
        if (found != isThere || x != (isThere ? left : 0) || y != (isThere ? top : 0))
            throw std::runtime_error("the search gave a wrong position");
        if (outcome != nullptr) *outcome = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y)};
    };
}

// Its outcome is the number of coloured pixels.
Call colorness(const Workspace& work) {
    const auto member = work.host.member<double(Picture*, int)>("ColornessPXK(threshold as integer = 10) as double");
    return [=, self = &work.source(), pixels = work.size.pixels()](Outcome* outcome) {
        const double share = member(self, 10);
        if (outcome != nullptr)
            *outcome = {static_cast<std::uint32_t>(std::lround(share * static_cast<double>(pixels)))};
    };
}

// Stores the source's red channel in the target.
Call assignMask(const Workspace& work) {
    const auto setter =
        work.host.memberSetter<void(Picture*, bool, Picture*)>("EmbeddedMaskPXK(swap as boolean) as picture");
    return [=, self = &work.target(), value = &work.source()](Outcome*) { setter(self, true, value); };
}

Call hasMask(const Workspace& work) {
    const auto member = work.host.member<bool(Picture*)>("HasMaskPXK as boolean");
    return [=, self = &work.source()](Outcome*) {
        if (member(self)) throw std::runtime_error("a mask was reported for a picture without one");
    };
}

}  // namespace

std::vector<Row> analysisRows() {
    const auto scroll = [](const char* declaration, int delta, bool wrap) {
        return methodOnTarget<bool>(declaration, delta, wrap, false);
    };
    const std::vector<PictureSize> largerSizes = {smallSize, largeSize};
    return {
        {"isWhitePXK",
         method<bool>("isWhitePXK as boolean"),
         &readLimit,
         Makes::nothing,
         fullScanThresholds,
         {Content::white}},
        {"isBlackPXK",
         method<bool>("isBlackPXK as boolean"),
         &readLimit,
         Makes::nothing,
         fullScanThresholds,
         {Content::black}},
        {"isGrayPXK",
         method<bool>("isGrayPXK(tolerance as integer = 0) as boolean", 0),
         &readLimit,
         Makes::nothing,
         greyScanThresholds,
         {Content::grey}},
        {"isGrayPXK(3)",
         method<bool>("isGrayPXK(tolerance as integer = 0) as boolean", 3),
         &readLimit,
         Makes::nothing,
         greyScanThresholds,
         {Content::grey}},
        {"ColornessPXK", colorness, &readLimit, Makes::nothing, greyScanThresholds},
        {"FindPicturePXK",
         find,
         &readLimit,
         Makes::nothing,
         searchThresholds,
         {Content::photo, Content::noise},
         largerSizes},
        {"FindPicturePXK, worst case",
         find,
         &readLimit,
         Makes::nothing,
         noThresholds,
         {Content::flat, Content::nearlyFlat},
         {smallSize}},
        {"ScrollVerticalPXK(37)", scroll(scrollVertical, distance, false), &moveRowsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollVerticalPXK(-37)", scroll(scrollVertical, -distance, false), &moveRowsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollVerticalPXK(37, true)", scroll(scrollVertical, distance, true), &moveRowsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollHorizontalPXK(37)", scroll(scrollHorizontal, distance, false), &moveColumnsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollHorizontalPXK(-37)", scroll(scrollHorizontal, -distance, false), &moveColumnsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollHorizontalPXK(37, true)", scroll(scrollHorizontal, distance, true), &moveColumnsLimit, Makes::nothing,
         scrollThresholds},
        {"ScrollPXK(37, 37, true)",
         methodOnTarget<bool>(
             "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean",
             distance, distance, true, false),
         &moveBothLimit, Makes::nothing, scrollThresholds},
        {"HasMaskPXK", hasMask, &copyLimit, Makes::nothing, noThresholds, {Content::photo}, {onePixel}},
        {"EmbeddedMaskPXK", method<PictureResult>("EmbeddedMaskPXK(swap as boolean) as picture", false), &copyLimit,
         Makes::picture},
        {"EmbeddedMaskPXK =", assignMask, &copyLimit, Makes::nothing},
    };
}

}  // namespace pxkbench
