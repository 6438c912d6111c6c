/// Whether one plugin is slower than another by more than the noise.
///
/// A run starts a fresh process for each plugin, which take turns for some rounds. Its result is one ratio, the median
/// of new / old over the rounds, so that temporary slowdowns of the machine affect both. The addresses of the pictures
/// differ from process to process and can make a difference of a tenth, which shows only across runs, never within one.
#pragma once

#include <span>
#include <string>

namespace pxkbench {

/// The smallest difference that is ever reported: a smaller one may be real, but is not worth an alarm.
inline constexpr double minimumThreshold = 0.03;

/// The same for calls on one pixel, where code placement by the linker alone can make a difference of a twentieth.
inline constexpr double minimumOverheadThreshold = 0.1;

enum class Change { faster, none, slower };

struct Verdict {
    double ratio = 0;      ///< new / old: the median over runs
    double threshold = 0;  ///< how far from 1 counts as a change
    Change change = Change::none;
};

/// There is a change when the median over runs is further from 1 than three times its standard error, and than
/// `minimum`. The error is estimated from the median absolute deviation, as for normally distributed ratios (1.4826
/// times it is their standard deviation, and 1.2533 / sqrt(n) of that the standard error of the median), so that a
/// single outlier has hardly any influence. Fewer than three runs always give Change::none.
Verdict judge(std::span<const double> runRatios, double minimum = minimumThreshold);

/// "slower", "faster" or nothing.
std::string textOf(Change change);

}  // namespace pxkbench
