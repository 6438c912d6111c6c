#include "host/registration/default_values.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/objects/errors.h"
#include "host/objects/strings.h"

namespace pxkhost {

namespace {

template <class Number>
bool readNumber(std::string_view text, Number& number, int base) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

/// An integer as the language writes it: decimal, or "&h", "&c", "&b" in front of another base.
bool readInteger(std::string_view text, std::int32_t& number) {
    if (text.size() > 2 && text[0] == '&') {
        const int base = text[1] == 'b' ? 2 : 16;
        std::uint32_t bits = 0;
        if (!readNumber(text.substr(2), bits, base)) return false;
        number = static_cast<std::int32_t>(bits);
        return true;
    }
    return readNumber(text, number, 10);
}

bool readReal(std::string_view text, double& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

}  // namespace

Value defaultValue(const Parameter& parameter) {
    const ValueKind kind = parameter.type.kind;
    const std::string& written = parameter.defaultText.value();
    const std::string text = normalised(written);
    Value value = Value::zeroOf(kind);
    bool understood = false;
    if (kind == ValueKind::integer) {
        understood = readInteger(text, value.integer);
    } else if (kind == ValueKind::color) {
        std::int32_t bits = 0;
        understood = readInteger(text, bits);
        value.color = static_cast<std::uint32_t>(bits);
    } else if (kind == ValueKind::real) {
        understood = readReal(text, value.real);
    } else if (kind == ValueKind::boolean) {
        value.boolean = text == "true";
        understood = value.boolean || text == "false";
    } else if (kind == ValueKind::string && written.size() >= 2 && written.front() == '"' && written.back() == '"') {
        value.object = String::make(written.substr(1, written.size() - 2));
        understood = true;
    } else {
        understood = isObject(kind) && text == "nil";
    }
    if (!understood)
        throw HostError("the default " + written + " of parameter " + parameter.name + " is not of type " +
                        parameter.type.name);
    return value;
}

}  // namespace pxkhost
