/// The synthetic pictures that members are measured on, identical in every run.
#pragma once

#include <array>
#include <cstdint>

#include "host/pictures/picture.h"

namespace pxkbench {

enum class Content { photo, noise, flat, nearlyFlat, blobs, white, black, grey };

inline constexpr std::array allContents = {Content::photo, Content::noise, Content::flat,  Content::nearlyFlat,
                                           Content::blobs, Content::white, Content::black, Content::grey};

/// The colour of blobs, 0xRRGGBB.
inline constexpr std::uint32_t blobColour = 0xC03020;

const char* contentName(Content content);

/// Fills a picture with opaque pixels. `photo` is smooth shading with texture, edges and a little grain; `noise` is a
/// random colour for each pixel; `flat` is a single colour, from which `nearlyFlat` differs by at most 1 per channel;
/// `blobs` is grey noise, 5 % of it covered by round blobs of blobColour; the others are the colours they are named
/// after. The seed makes a difference for `photo`, `noise`, `flat` and the noise in `nearlyFlat` and `blobs`.
void fill(pxkhost::Picture& picture, Content content, unsigned seed);

}  // namespace pxkbench
