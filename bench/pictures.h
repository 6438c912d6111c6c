/// The pictures that members are measured on, made by program and the same in every run.
#pragma once

#include <array>

#include "host/picture.h"

namespace pxkbench {

enum class Content { photo, noise, flat };

inline constexpr std::array<Content, 3> allContents = {Content::photo, Content::noise, Content::flat};

const char* contentName(Content content);

/// Fills an opaque picture. `photo` is smooth light and shade with texture, edges and a little grain; `noise` is one
/// random colour a pixel; `flat` is one colour. Different seeds give different pictures of the same kind.
void fill(pxkhost::Picture& picture, Content content, unsigned seed);

}  // namespace pxkbench
