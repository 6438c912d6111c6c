/// Whether one plugin is slower than another, told from noise.
///
/// A sitting is a fresh process for each plugin and some rounds in which they take turns; it comes to one ratio, the
/// median of new / old over its rounds, so that slow moments of the machine fall on both. Where pictures come to lie in
/// memory differs from process to process and can cost a tenth, which no number of rounds would show: only sittings do.
#pragma once

#include <span>
#include <string>

namespace pxkbench {

/// The least difference that is ever called one: a smaller one may be real, but is not worth an alarm.
inline constexpr double leastThreshold = 0.03;

/// The same for calls on one pixel, of which only where the linker puts their code changes a twentieth.
inline constexpr double leastThresholdOfFixedCosts = 0.1;

enum class Change { faster, none, slower };

struct Verdict {
    double ratio = 0;      ///< new / old: the median over sittings
    double threshold = 0;  ///< how far from 1 it has to be
    Change change = Change::none;
};

/// The median over sittings is held against three times its own standard error, which is estimated from the median
/// distance of the sittings from it, as for normally distributed ratios (1.4826 times that distance is their standard
/// deviation, and 1.2533 / sqrt(n) of it the error of a median). One wild sitting moves neither. Fewer than three
/// sittings say nothing, and give Change::none.
Verdict judge(std::span<const double> ratiosOfSittings, double least = leastThreshold);

/// "slower", "faster" or nothing.
std::string textOf(Change change);

}  // namespace pxkbench
