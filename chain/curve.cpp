#include "chain/curve.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "chain/data_lines.h"
#include "chain/error.h"
#include "chain/nearest_word.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr double highest = 255;

struct Point {
    double in;
    double out;
    double slope;  ///< of a smooth curve
};

struct Curve {
    bool isSmooth;
    std::vector<Point> points;
};

double secant(const Point& a, const Point& b) { return (b.out - a.out) / (b.in - a.in); }

/// The slope at an inner point: level at a peak, otherwise the weighted harmonic mean of the slopes on both sides.
double innerSlope(const Point& before, const Point& point, const Point& after) {
    const double left = secant(before, point);
    const double right = secant(point, after);
    if (left * right <= 0) return 0;
    const double widthLeft = point.in - before.in;
    const double widthRight = after.in - point.in;
    const double weightLeft = 2 * widthRight + widthLeft;
    const double weightRight = widthRight + 2 * widthLeft;
    return (weightLeft + weightRight) / (weightLeft / left + weightRight / right);
}

void findSlopes(std::vector<Point>& points) {
    const std::size_t last = points.size() - 1;
    points[0].slope = secant(points[0], points[1]);
    points[last].slope = secant(points[last - 1], points[last]);
    for (std::size_t i = 1; i < last; ++i) points[i].slope = innerSlope(points[i - 1], points[i], points[i + 1]);
}

double straight(const Point& a, const Point& b, double in) { return a.out + (in - a.in) * secant(a, b); }

/// The cubic with the values and slopes of both points.
double cubic(const Point& a, const Point& b, double in) {
    const double width = b.in - a.in;
    const double t = (in - a.in) / width;
    const double s = 1 - t;
    return (1 + 2 * t) * s * s * a.out + t * s * s * width * a.slope + t * t * (3 - 2 * t) * b.out -
           t * t * s * width * b.slope;
}

double valueAt(const Curve& curve, double in) {
    const auto& points = curve.points;
    if (in <= points.front().in) return points.front().out;
    if (in >= points.back().in) return points.back().out;
    const auto after = std::find_if(points.begin(), points.end(), [in](const Point& each) { return each.in > in; });
    const Point& before = *std::prev(after);
    return curve.isSmooth ? cubic(before, *after, in) : straight(before, *after, in);
}

bool readKind(DataLines& lines) {
    lines.next();
    const auto& words = lines.words();
    const bool isSmooth = words.size() == 2 && sameLetters(words[1], "smooth");
    const bool isLinear = words.size() == 2 && sameLetters(words[1], "linear");
    if (!isSmooth && !isLinear) lines.fail("a curve must begin with the line \"curve smooth\" or \"curve linear\"");
    return isSmooth;
}

Point readPoint(const DataLines& lines) {
    if (lines.words().size() != 2) lines.fail("a point is two numbers: a value of the channel, and what it becomes");
    const Point point{lines.number(0), lines.number(1), 0};
    for (const double each : {point.in, point.out}) {
        if (each < 0 || each > highest) lines.fail("the numbers of a point must be from 0 to 255");
    }
    return point;
}

Curve readCurve(DataLines& lines) {
    Curve curve{readKind(lines), {}};
    while (lines.next()) {
        const Point point = readPoint(lines);
        if (!curve.points.empty() && point.in <= curve.points.back().in) {
            lines.fail("the first number of a point must be larger than that of the point before");
        }
        curve.points.push_back(point);
    }
    if (curve.points.size() < 2) lines.fail("a curve needs at least two points, such as 0 0 and 255 255");
    findSlopes(curve.points);
    return curve;
}

}  // namespace

bool isCurve(std::string_view bytes) {
    DataLines lines("", bytes);
    return lines.next() && sameLetters(lines.words().front(), "curve");
}

std::string tableOfCurve(const std::string& path, std::string_view text) {
    DataLines lines(path, text);
    const Curve curve = readCurve(lines);
    std::string table;
    for (int in = 0; in <= 255; ++in) {
        table += static_cast<char>(std::clamp(std::lround(valueAt(curve, in)), 0L, 255L));
    }
    return table;
}

std::string tableOf(const std::string& path, const std::string& bytes) {
    constexpr std::size_t tableSize = 256;
    if (isCurve(bytes)) return tableOfCurve(path, bytes);
    DataLines lines(path, bytes);
    if (isPlainText(bytes) && lines.next()) {
        const std::string suggestion = suggestionFor(lines.words().front(), {"curve"});
        if (!suggestion.empty()) lines.fail(lines.shown(0) + " is unknown here" + suggestion);
    }
    if (bytes.size() == tableSize) return bytes;
    throw WorkError(inQuotes(path) + " has " + std::to_string(bytes.size()) +
                    " bytes; a table has 256, and a curve begins with the word curve");
}

}  // namespace pxk::chain
