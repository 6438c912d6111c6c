#include "chain/color_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <string>
#include <string_view>

#include "chain/catalogue.h"
#include "chain/error.h"
#include "chain/runner.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr const char* onlyColors = "; a cube can hold only steps that map each colour to another";

// ---- steps that are told a place or a mask

/// The names, as declared, by which members are told where to work. Running the plan cannot show a rectangle beyond the
/// edge of the pictures that it is run on.
constexpr std::array placeNames{"left", "top",  "width", "height", "x",      "y",      "MinX",  "MinY",
                                "MaxX", "MaxY", "delta", "deltaX", "deltaY", "StartX", "StartY"};

bool namesPlace(const std::string& name) {
    return std::any_of(placeNames.begin(), placeNames.end(), [&](const char* each) { return sameLetters(each, name); });
}

/// Every class and method takes 0 for no offset, or for no edge.
bool isZero(const PlannedArgument& argument) {
    const auto* value = std::get_if<Value>(&argument.source);
    return value != nullptr && value->kind() == PXK_INTEGER && value->asInteger() == 0;
}

void checkSteps(const PlannedSteps& steps);

void checkArgument(const PlannedStep& step, const PlannedArgument& argument, const std::string& name) {
    if (const auto* steps = std::get_if<PlannedSteps>(&argument.source)) return checkSteps(*steps);
    if (const auto* file = std::get_if<std::string>(&argument.source); file != nullptr && argument.kind == PXK_PICTURE)
        throw ChainError(step.position, "the result of " + step.name + " depends on where a pixel is, since it uses " +
                                            inQuotes(*file) + onlyColors);
    if (namesPlace(name) && !isZero(argument))
        throw ChainError(step.position,
                         "the result of " + step.name + " depends on where a pixel is (" + name + ")" + onlyColors);
}

void checkSteps(const PlannedSteps& steps) {
    for (const PlannedStep& step : steps) {
        if (sameName(step.name, "EmbeddedMask"))
            throw ChainError(step.position, step.name + " works on the mask, not on colours" + onlyColors);
        for (const PlannedArgument& each : step.arguments) checkArgument(step, each, each.parameter);
        for (const PlannedProperty& property : step.properties) {
            for (const PlannedArgument& each : property.index) checkArgument(step, each, "");
            checkArgument(step, property.value, property.name);
        }
    }
}

// ---- steps that turn out to depend on it

/// A picture of the colours, by their indexes.
struct Layout {
    std::size_t width;
    std::size_t height;
    std::vector<std::size_t> indexes;
};

/// The colours in an order, in rows of `width`; the last row is filled up with the first colours.
Layout inRows(std::vector<std::size_t> indexes, std::size_t width) {
    const std::size_t count = indexes.size();
    const std::size_t height = (count + width - 1) / width;
    indexes.reserve(width * height);
    for (std::size_t i = 0; indexes.size() < width * height; ++i) indexes.push_back(indexes[i % count]);
    return {width, height, std::move(indexes)};
}

std::vector<std::size_t> inOrder(std::size_t count) {
    std::vector<std::size_t> indexes(count);
    std::iota(indexes.begin(), indexes.end(), std::size_t{0});
    return indexes;
}

/// Backwards and in strides, so that each colour has other neighbours and another place.
std::vector<std::size_t> scattered(std::size_t count) {
    std::size_t stride = count * 3 / 8 + 1;
    while (std::gcd(stride, count) != 1) ++stride;
    std::vector<std::size_t> indexes(count);
    for (std::size_t i = 0; i < count; ++i) indexes[i] = (count - 1 - i) * stride % count;
    return indexes;
}

/// The colours that members treat in their own way: greys, black and white among them, and the corners of the colour
/// space; besides these a few of all.
std::vector<std::size_t> telling(const std::vector<std::uint32_t>& colors) {
    constexpr std::size_t samples = 32;
    const std::size_t step = colors.size() / samples + 1;
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        const std::array channels{colors[i] >> 16 & 0xFFU, colors[i] >> 8 & 0xFFU, colors[i] & 0xFFU};
        const bool isGrey = channels[0] == channels[1] && channels[1] == channels[2];
        const bool isCorner =
            std::all_of(channels.begin(), channels.end(), [](std::uint32_t each) { return each == 0 || each == 255; });
        if (isGrey || isCorner || i % step == 0) indexes.push_back(i);
    }
    return indexes;
}

class Mapper {
  public:
    Mapper(OpenHost& host, const Files& files, const std::vector<std::uint32_t>& colors)
        : host_(host), files_(files), colors_(colors), mapped_(colors.size()), known_(colors.size()) {}

    /// What is wrong with a plan, continuing "ScrollPXK"; empty when it maps each colour to one other.
    std::string run(const Plan& plan) {
        std::fill(known_.begin(), known_.end(), false);
        const std::size_t count = colors_.size();
        const auto side = static_cast<std::size_t>(std::sqrt(static_cast<double>(count)));
        std::string problem = run(plan, inRows(inOrder(count), side + 1));
        if (problem.empty()) problem = run(plan, inRows(scattered(count), side / 2 + 3));
        for (const std::size_t index : telling(colors_)) {
            if (!problem.empty()) break;
            problem = run(plan, {plainWidth, plainHeight, std::vector(plainWidth * plainHeight, index)});
        }
        return problem;
    }

    std::vector<std::uint32_t> takeMapped() { return std::move(mapped_); }

  private:
    static constexpr std::size_t plainWidth = 67;
    static constexpr std::size_t plainHeight = 41;

    std::string run(const Plan& plan, const Layout& layout) {
        Raster before =
            Raster::filled(static_cast<std::int32_t>(layout.width), static_cast<std::int32_t>(layout.height), 0);
        for (std::size_t i = 0; i < layout.indexes.size(); ++i) {
            before.words[i] |= colors_[layout.indexes[i]];
        }
        const Outcome outcome = runPlan(host_, files_, plan, host_.newPicture(before));
        const Raster after = host_.pixelsOf(outcome.picture);
        if (after.width != before.width || after.height != before.height) return " changes the picture's size";
        for (std::size_t i = 0; i < layout.indexes.size(); ++i) {
            if (!take(layout.indexes[i], after.words[i] & 0xFFFFFFU)) {
                return " makes different colours of one colour, depending on where a pixel is or on the pixels around "
                       "it";
            }
        }
        return "";
    }

    /// False when the colour was mapped to another before.
    bool take(std::size_t index, std::uint32_t color) {
        if (known_[index]) return mapped_[index] == color;
        known_[index] = true;
        mapped_[index] = color;
        return true;
    }

    OpenHost& host_;
    const Files& files_;
    const std::vector<std::uint32_t>& colors_;
    std::vector<std::uint32_t> mapped_;
    std::vector<bool> known_;
};

/// Runs ever more of the plan, step by step, until it goes wrong.
[[noreturn]] void blameStep(Mapper& mapper, const Plan& plan, const std::string& problem) {
    Plan part;
    for (const PlannedSteps& statement : plan.statements) {
        part.statements.emplace_back();
        for (const PlannedStep& step : statement) {
            part.statements.back().push_back(step);
            const std::string found = mapper.run(part);
            if (!found.empty()) throw ChainError(step.position, step.name + found + onlyColors);
        }
    }
    const PlannedStep& last = plan.statements.back().back();
    throw ChainError(last.position, last.name + problem + onlyColors);
}

}  // namespace

std::vector<std::uint32_t> mapColors(OpenHost& host, const Files& files, const Plan& plan,
                                     const std::vector<std::uint32_t>& colors) {
    for (const PlannedSteps& each : plan.statements) checkSteps(each);
    Mapper mapper(host, files, colors);
    const std::string problem = mapper.run(plan);
    if (!problem.empty()) blameStep(mapper, plan, problem);
    return mapper.takeMapped();
}

}  // namespace pxk::chain
