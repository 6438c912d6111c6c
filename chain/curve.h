/// Tone curves: lookup tables for a channel, written as a few points.
#pragma once

#include <string>
#include <string_view>

namespace pxk::chain {

/// Whether a file's bytes are a curve: its first word, comments apart, is "curve". A table or samples would have to
/// begin with exactly these letters to be mistaken for one.
bool isCurve(std::string_view bytes);

/// The table of 256 bytes that a curve describes:
///
///     curve smooth     # or: curve linear
///     0    0           # a value of the channel, and what it becomes
///     64   48
///     255  255
///
/// Two points or more, from 0 to 255, fractions allowed, the first numbers increasing. Between the points the curve is
/// straight or, where it is smooth, the monotone cubic of Fritsch and Butland ("A method for constructing local
/// monotone piecewise cubic interpolants", SIAM J. Sci. Stat. Comput. 5, 1984), which never leaves the range of the two
/// points beside it; before the first point and after the last it is constant. Values are rounded to the nearest.
/// Throws WorkError, naming `path` and the line, when the text breaks these rules.
std::string tableOfCurve(const std::string& path, std::string_view text);

/// The table of 256 bytes that a file's bytes are, or describe as a curve. Throws WorkError, naming `path`, when they
/// are neither.
std::string tableOf(const std::string& path, const std::string& bytes);

}  // namespace pxk::chain
