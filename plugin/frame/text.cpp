#include "frame/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "frame/allocation.h"
#include "frame/errors.h"

namespace pxk {

namespace {

// Released by `HostString`, also when the conversion throws.
HostString convertToUTF8(HostString string) {
    if (string == nullptr) return nullptr;
    return HostString(REALConvertString(string.get(), encodingUTF8));
}

HostString fromUTF16(const void* data, std::int32_t length) {
    if (rbversion >= 2012.0) {
        return convertToUTF8(HostString(REALBuildStringWithEncoding(data, length, encodingUTF16)));
    }
    HostString string(REALBuildString(data, length));
    if (string == nullptr) return nullptr;
    REALSetStringEncoding(string.get(), encodingUTF16);
    return convertToUTF8(std::move(string));
}

// Writes the UTF-16 form and returns the number of units. A lone surrogate is no character and is dropped; a value
// beyond Unicode becomes U+FFFD. `units` holds two for each code point.
std::size_t toUTF16(const void* data, std::size_t codePointCount, char16_t* units) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    char16_t* next = units;
    for (std::size_t i = 0; i < codePointCount; ++i) {
        std::uint32_t value = 0;
        std::memcpy(&value, bytes + i * sizeof value, sizeof value);
        if (value > 0x10FFFF) value = 0xFFFD;
        if (value > 0xFFFF) {
            *next++ = static_cast<char16_t>(((value - 0x10000) >> 10) + 0xD800);
            *next++ = static_cast<char16_t>((value & 0x3FF) | 0xDC00);
        } else if (value < 0xD800 || value > 0xDFFF) {
            *next++ = static_cast<char16_t>(value);
        }
    }
    *next = 0;
    return static_cast<std::size_t>(next - units);
}

HostString fromUTF32OnOlderHosts(const void* data, std::int32_t length) {
    const std::size_t codePointCount = static_cast<std::size_t>(length) / 4;
    const std::size_t unitCount = codePointCount * 2 + 1;
    std::array<char16_t, 400> shortText = {};
    std::unique_ptr<char16_t[]> longText;
    if (length > 799) longText = allocateZeroed<char16_t>(unitCount);
    char16_t* units = length > 799 ? longText.get() : shortText.data();
    if (units == nullptr) return nullptr;
    const std::size_t written = toUTF16(data, codePointCount, units);
    return HostString(REALBuildUnicodeStringUTF16(units, static_cast<long>(written * sizeof(char16_t))));
}

HostString fromUTF32(const void* data, std::int32_t length) {
    if (rbversion < 2013.0) return fromUTF32OnOlderHosts(data, length);
    return convertToUTF8(HostString(REALBuildStringWithEncoding(data, length, encodingUTF32)));
}

HostString fromBytes(const void* data, std::int32_t length, std::uint32_t encoding) {
    HostString string(REALBuildString(data, length));
    if (string != nullptr) REALSetStringEncoding(string.get(), encoding);
    return string;
}

bool isASCII(const void* data, std::int32_t length) {
    const std::span bytes(static_cast<const unsigned char*>(data), static_cast<std::size_t>(length));
    return std::ranges::all_of(bytes, [](unsigned char byte) { return byte < 0x80; });
}

}  // namespace

HostString buildUnicodeString(const void* data, long long length, std::uint32_t encoding) {
    if (data == nullptr || length <= 0 || length > 0x7FFFFFFF) return nullptr;
    const auto size = static_cast<std::int32_t>(length);
    switch (encoding) {
        case encodingUTF16:
            return HostString(REALBuildUnicodeStringUTF16(data, static_cast<long>(length)));
        case encodingUTF32:
            return fromUTF32(data, size);
        case encodingMacRoman:
        case encodingISOLatin1:
        case encodingWindowsLatin1:
        case encodingUnknown:
            return fromBytes(data, size, isASCII(data, size) ? encodingASCII : encoding);
        default:
            return fromBytes(data, size, encoding);
    }
}

REALstringStruct* REALBuildUnicodeString(const void* data, long long length, unsigned long encoding) {
    return guarded([&] { return buildUnicodeString(data, length, static_cast<std::uint32_t>(encoding)); }).release();
}

REALstringStruct* REALBuildUnicodeStringUTF16(const void* data, long length) {
    return fromUTF16(data, static_cast<std::int32_t>(length)).release();
}

}  // namespace pxk
