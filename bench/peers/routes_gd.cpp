// The routes of libgd: filters that work in place.
#include <gd.h>

#include <memory>

#include "bench/peers/route.h"
#include "bench/pictures.h"

namespace pxkbench {
namespace {

using Image = std::shared_ptr<gdImage>;

Image imageOf(const PeerPictures& pictures, const Words& words) {
    Image image(gdImageCreateTrueColor(pictures.width, pictures.height), gdImageDestroy);
    std::size_t i = 0;
    for (int y = 0; y < pictures.height; ++y)
        for (int x = 0; x < pictures.width; ++x) image->tpixels[y][x] = static_cast<int>(words[i++] & 0xFFFFFF);
    return image;
}

Outcome coloursOf(const gdImage& image) {
    Outcome colours;
    for (int y = 0; y < image.sy; ++y)
        for (int x = 0; x < image.sx; ++x)
            colours.push_back(static_cast<std::uint32_t>(image.tpixels[y][x]) & 0xFFFFFF);
    return colours;
}

// `filter` changes the image in place, repeatedly while it is timed.
template <class Filter>
auto inPlace(Filter filter) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const Image image = imageOf(pictures, pictures.source);
        return {[=] { filter(image.get()); }, [=] { return coloursOf(*image); }};
    };
}

void replaceColour(gdImage* image) { gdImageColorReplace(image, static_cast<int>(blobColour), 0x20A040); }

}  // namespace

Library libgd() {
    return {std::string("libgd ") + gdVersionString(),
            {
                {"InvertPXK", "gdImageNegate", 0, inPlace(gdImageNegate)},
                {"ChangeBrightnessAbsolutePXK(10)", "gdImageBrightness", 0,
                 inPlace([](gdImage* image) { gdImageBrightness(image, 10); })},
                {"ReplaceColorPXK", "gdImageColorReplace", 0, inPlace(replaceColour)},
            }};
}

}  // namespace pxkbench
