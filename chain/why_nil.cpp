#include "chain/why_nil.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "chain/catalogue.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

constexpr std::int32_t longestSide = 32767;
constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();

struct NamedPicture {
    std::string name;
    Object picture;
};

/// The arguments of one call, by their parameters' names.
class Given {
  public:
    Given(const PlannedStep& step, const Object& self, const std::vector<Value>& values)
        : step_(step), self_(self), values_(values) {}

    /// The picture that the method was called on first, then those among the arguments; nil ones are left out.
    std::vector<NamedPicture> pictures() const {
        std::vector<NamedPicture> found;
        if (self_) found.push_back({"the picture", self_});
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (values_[i].kind() == PXK_PICTURE && !values_[i].isNil())
                found.push_back({nameOf(step_.arguments[i]), values_[i].asObject()});
        }
        return found;
    }

    /// An argument; null when it was left out.
    const Value* find(const char* parameter) const {
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (sameLetters(step_.arguments[i].parameter, parameter)) return &values_[i];
        }
        return nullptr;
    }

    std::int32_t integer(const char* parameter, std::int32_t whenLeftOut) const {
        const Value* found = find(parameter);
        return found != nullptr ? found->asInteger() : whenLeftOut;
    }

    std::string_view bytes(const char* parameter) const {
        const Value* found = find(parameter);
        return found != nullptr ? bytesOf(found->asObject()) : std::string_view();
    }

    std::string whyNilArgument() const {
        for (std::size_t i = 0; i < values_.size(); ++i) {
            if (values_[i].isNil() && values_[i].kind() == PXK_PICTURE && step_.arguments[i].variable.empty())
                return step_.arguments[i].parameter + " is nil; give a picture";
        }
        return "";
    }

  private:
    static std::string nameOf(const PlannedArgument& argument) {
        const auto* file = std::get_if<std::string>(&argument.source);
        return argument.parameter + (file != nullptr ? ", " + inQuotes(*file) + "," : "");
    }

    const PlannedStep& step_;
    const Object& self_;
    const std::vector<Value>& values_;
};

std::string withSize(const NamedPicture& each) { return each.name + " is " + sizeText(sizeOf(each.picture)); }

std::string whyDifferentSizes(const Given& given) {
    const auto pictures = given.pictures();
    const auto differs = [&](const NamedPicture& each) {
        const PictureSize a = sizeOf(each.picture);
        const PictureSize b = sizeOf(pictures.front().picture);
        return a.width != b.width || a.height != b.height;
    };
    if (std::none_of(pictures.begin(), pictures.end(), differs)) return "";
    std::string sizes;
    for (const NamedPicture& each : pictures) sizes += (sizes.empty() ? "" : "; ") + withSize(each);
    return "the pictures must have the same size, but " + sizes;
}

std::string whySmallChannel(const Given& given) {
    const auto pictures = given.pictures();
    if (pictures.size() != 2) return "";
    const PictureSize picture = sizeOf(pictures[0].picture);
    const PictureSize channel = sizeOf(pictures[1].picture);
    if (channel.width >= picture.width && channel.height >= picture.height) return "";
    return "the channel must be at least as large as the picture, but " + withSize(pictures[1]) + " and " +
           withSize(pictures[0]);
}

std::string whyStringTooLarge(const Given& given) {
    for (const NamedPicture& each : given.pictures()) {
        const PictureSize size = sizeOf(each.picture);
        if (std::int64_t{size.width} * size.height * 3 + 40 > mostBytes)
            return withSize(each) + ", which does not fit a string of 2147483647 bytes";
    }
    return "";
}

std::string whyMaskTooLarge(const Given& given) {
    for (const NamedPicture& each : given.pictures()) {
        const PictureSize size = sizeOf(each.picture);
        if (std::int64_t{size.width + 2} * (size.height + 2) > mostBytes)
            return withSize(each) + "; it works on at most 2147483647 pixels, a border of one pixel included";
    }
    return "";
}

std::string whyNoWave(const Given& given) {
    constexpr std::array formats{7, 8, 15, 16, -32, -64};
    const std::int32_t bits = given.integer("Bits", 8);
    if (std::find(formats.begin(), formats.end(), bits) == formats.end())
        return "Bits is " + std::to_string(bits) + "; use 7, 8, 15, 16, -32 or -64";
    const std::int64_t size = std::ssize(given.bytes("Samples"));
    if (size == 0) return "Samples is empty";
    const std::int64_t sampleSize = (std::abs(bits) + 7) / 8;
    const std::int64_t count = given.integer("SampleCount", 0);
    for (const char* side : {"Width", "Height"}) {
        if (given.integer(side, 0) > longestSide)
            return std::string(side) + " is " + std::to_string(given.integer(side, 0)) + "; the largest is 32767";
    }
    if (given.integer("Width", 0) < 1 && std::max(count, size / sampleSize) > longestSide)
        return "Width is not given, and there are more than 32767 samples; give a Width from 1 to 32767";
    return "";
}

std::uint32_t wordAt(std::string_view bytes, std::size_t at) {
    std::uint32_t word = 0;
    for (const char each : bytes.substr(at, 4)) word = word << 8U | static_cast<unsigned char>(each);
    return word;
}

/// What is known of the member that was called, beyond what holds for all.
std::string whyByMember(const std::string& name, const Given& given) {
    if (sameName(name, "MergePicture") || sameName(name, "CombinePictures")) return whyDifferentSizes(given);
    for (const char* each : {"ReplaceRedChannel", "ReplaceGreenChannel", "ReplaceBlueChannel"}) {
        if (sameName(name, each)) return whySmallChannel(given);
    }
    if (sameName(name, "BinaryStringtoPicture")) return whyNoBinaryString(given.bytes("data"));
    if (sameName(name, "PicturetoBinaryString")) return whyStringTooLarge(given);
    if (sameName(name, "ExtractColorRectangleMask")) return whyMaskTooLarge(given);
    if (sameName(name, "RenderSamples")) return whyNoWave(given);
    return "";
}

}  // namespace

std::string whyNil(const PlannedStep& step, const Object& self, const std::vector<Value>& values) {
    const Given given(step, self, values);
    // A destination may be nil, and every other picture that is makes the member return nil.
    const bool mayBeNil = sameName(step.name, "TransformColors");
    std::string reason = mayBeNil ? "" : given.whyNilArgument();
    if (reason.empty()) reason = whyByMember(step.name, given);
    for (const NamedPicture& each : given.pictures()) {
        if (reason.empty()) reason = whyTooLarge(each.name, each.picture);
    }
    return reason;
}

std::string whyNoBinaryString(std::string_view bytes) {
    constexpr std::size_t headerSize = 40;
    if (!bytes.starts_with("PPIC")) return "a binary string begins with the letters PPIC";
    if (bytes.size() < headerSize)
        return "it has " + std::to_string(bytes.size()) + " bytes; the header alone has " + std::to_string(headerSize);
    if (wordAt(bytes, 4) != bytes.size())
        return "it has " + std::to_string(bytes.size()) + " bytes; its header states " +
               std::to_string(wordAt(bytes, 4));
    const std::uint64_t width = wordAt(bytes, 8);
    const std::uint64_t height = wordAt(bytes, 12);
    if (width < 1 || height < 1 || width > longestSide || height > longestSide)
        return "its header states " + std::to_string(width) + " x " + std::to_string(height) +
               " pixels; each side is 1 to 32767";
    const std::uint64_t end = wordAt(bytes, 20) + 3 * width * height;
    if (end > bytes.size())
        return "its header states " + std::to_string(width) + " x " + std::to_string(height) + " pixels, which need " +
               std::to_string(end) + " bytes; it has " + std::to_string(bytes.size());
    return "";
}

std::string whyTooLarge(const std::string& name, const Object& picture) {
    const PictureSize size = sizeOf(picture);
    if (size.width <= longestSide && size.height <= longestSide) return "";
    return name + " is " + sizeText(size) + "; the longest side is 32767";
}

}  // namespace pxk::chain
