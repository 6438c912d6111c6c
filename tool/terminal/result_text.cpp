#include "tool/terminal/result_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "chain/text.h"

namespace pxk::tool {
namespace {

/// The fewest digits that read back as the same double.
std::string shortest(double value) {
    std::array<char, 32> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    return {digits.data(), end};
}

std::string colorText(std::uint32_t rgb) {
    std::array<char, 16> digits{};
    std::snprintf(digits.data(), digits.size(), "&c%06X", rgb);
    return digits.data();
}

Json sizeJson(const chain::Object& picture) {
    const chain::PictureSize size = sizeOf(picture);
    return {{"width", size.width}, {"height", size.height}};
}

Json byteNumbers(std::string_view bytes) {
    Json numbers = Json::array();
    for (const char byte : bytes) numbers.push_back(static_cast<unsigned char>(byte));
    return numbers;
}

}  // namespace

std::string asText(const chain::Value& value) {
    if (value.isNil()) return "nil";
    switch (value.kind()) {
        case PXK_INTEGER:
            return std::to_string(value.asInteger());
        case PXK_DOUBLE:
            return shortest(value.asReal());
        case PXK_BOOLEAN:
            return value.asBoolean() ? "true" : "false";
        case PXK_COLOR:
            return colorText(value.asColor());
        case PXK_STRING:
            return std::string(bytesOf(value.asObject()));
        case PXK_MEMORY_BLOCK:
            return std::to_string(bytesOf(value.asObject()).size()) + " bytes";
        case PXK_PICTURE:
            return "picture of " + sizeText(sizeOf(value.asObject()));
        case PXK_INSTANCE:
            return "an object";
        case PXK_NOTHING:
            break;
    }
    return "";
}

Json asJson(const chain::Value& value) {
    if (value.isNil()) return nullptr;
    switch (value.kind()) {
        case PXK_INTEGER:
            return value.asInteger();
        case PXK_DOUBLE:
            return value.asReal();
        case PXK_BOOLEAN:
            return value.asBoolean();
        case PXK_PICTURE:
            return sizeJson(value.asObject());
        case PXK_MEMORY_BLOCK:
            return byteNumbers(bytesOf(value.asObject()));
        case PXK_STRING: {
            const std::string_view bytes = bytesOf(value.asObject());
            return chain::isPlainText(bytes) ? Json(bytes) : byteNumbers(bytes);
        }
        case PXK_NOTHING:
            return nullptr;
        case PXK_COLOR:
        case PXK_INSTANCE:
            break;
    }
    return asText(value);
}

std::vector<std::string> linesOf(const chain::Outcome& outcome) {
    std::vector<std::string> lines;
    if (outcome.value.kind() != PXK_NOTHING) lines.push_back(asText(outcome.value));
    for (const auto& [name, value] : outcome.variables) lines.push_back(name + " = " + asText(value));
    return lines;
}

std::string oneLine(const Json& json) {
    std::string line;
    for (const char each : json.dump(-1, ' ', false, Json::error_handler_t::replace)) {
        const auto byte = static_cast<unsigned char>(each);
        if (byte == 0x7F) {
            line += "\\u007f";
        } else if (byte >= 0x80 && byte < 0xA0 && !line.empty() && line.back() == '\xC2') {
            // A terminal obeys these two-byte characters, which JSON does not escape of itself.
            line.pop_back();
            line += std::string("\\u00") + (byte < 0x90 ? '8' : '9') + "0123456789abcdef"[byte & 0xFU];
        } else {
            line += each;
        }
    }
    return line;
}

}  // namespace pxk::tool
