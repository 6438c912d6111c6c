/// Host strings from plain bytes.
#pragma once

#include <cstdint>

#include "frame/host_services.h"

namespace pxk {

/// The host's text encodings.
inline constexpr std::uint32_t encodingMacRoman = 0;
inline constexpr std::uint32_t encodingUTF16 = 0x0100;
inline constexpr std::uint32_t encodingISOLatin1 = 0x0201;
inline constexpr std::uint32_t encodingWindowsLatin1 = 0x0500;
inline constexpr std::uint32_t encodingASCII = 0x0600;
inline constexpr std::uint32_t encodingUnknown = 0xFFFF;
inline constexpr std::uint32_t encodingUTF8 = 0x08000100;
inline constexpr std::uint32_t encodingUTF32 = 0x0C000100;

/// A new host string of `length` bytes in `encoding`, which the caller owns. UTF-16 and UTF-32 (native byte order)
/// become UTF-8; bytes of an 8-bit or unknown encoding that are all below 0x80 are tagged ASCII.
/// Nil when `data` is nil, when `length` is 0, negative or above 2^31 - 1, when the host makes none, or when a service
/// throws, which is raised as a host exception.
REALstringStruct* REALBuildUnicodeString(const void* data, long long length, unsigned long encoding);

/// A new UTF-8 host string, which the caller owns, from `length` bytes of UTF-16 in native byte order; or nil.
REALstringStruct* REALBuildUnicodeStringUTF16(const void* data, long length);

/// `REALBuildUnicodeString` without its guard: exceptions leave it.
HostString buildUnicodeString(const void* data, long long length, std::uint32_t encoding);

}  // namespace pxk
