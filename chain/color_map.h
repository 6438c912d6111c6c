/// What a plan makes of each colour, where it maps colours at all.
#pragma once

#include <cstdint>
#include <vector>

#include "chain/files.h"
#include "chain/open_host.h"
#include "chain/plan.h"

namespace pxk::chain {

/// The colours, 0xRRGGBB, that a plan turns these into. Throws ChainError pointing at the first step whose result
/// depends on more than a pixel's colour: one that is told a place or another picture, that works on a mask, that
/// changes the size, or that makes different colours of one colour when the same colours stand elsewhere.
std::vector<std::uint32_t> mapColors(OpenHost& host, const Files& files, const Plan& plan,
                                     const std::vector<std::uint32_t>& colors);

}  // namespace pxk::chain
