/// Pictures as strings of bytes: a header of 40 bytes and three bytes a pixel.
///
///     offset  size  field (integers are big-endian and unsigned)
///          0     4  the bytes "PPIC"
///          4     4  length of the whole string in bytes
///          8     4  width in pixels
///         12     4  height in pixels
///         16     4  32
///         20     4  offset of the pixels: 40
///         24    16  zero
///         40        rows from top to bottom, each pixel as red, green, blue; nothing between rows
///
/// Alpha and masks are not kept. Both members are deprecated in favour of PNG files, and work nonetheless.
#pragma once

#include "frame/host_records.h"

namespace pxk {

/// The picture as a new string, which the caller owns, of unknown encoding, or ASCII when no byte is above 127.
/// Nil when `p` cannot be read, when the string would be longer than 2^31 - 1 bytes, or when there is no memory.
REALstringStruct* PicturetoBinaryString(REALpictureStruct* p);

/// The picture that a string holds, opaque, as a new picture that the caller owns.
///
/// Nil when `data` is nil or malformed, which is whenever its length is not the one it gives, its sides are not 1 to
/// 32767 each, or its pixels do not lie within it. The pixels are where the header says, and what it has at offset 16
/// and from 24 to 39 does not matter. Nil also when the host makes no picture.
REALpictureStruct* BinaryStringtoPicture(REALstringStruct* data);

}  // namespace pxk
