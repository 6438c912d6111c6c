/// The pictures that members are measured on, made by program and the same in every run.
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

/// Fills an opaque picture. `photo` is smooth light and shade with texture, edges and a little grain; `noise` is one
/// random colour a pixel; `flat` is one colour and `nearlyFlat` differs from it by at most 1 a channel; `blobs` has
/// round blobs of blobColour on 5 % of grey noise; the others are as they are named. Seeds make different pictures of
/// the first three kinds.
void fill(pxkhost::Picture& picture, Content content, unsigned seed);

}  // namespace pxkbench
