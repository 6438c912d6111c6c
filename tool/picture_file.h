/// Pictures in files, the plugin's own binary strings among them.
#pragma once

#include <string>

#include "open_host.h"

namespace pxk::tool {

/// Reads a picture, told by its content: a file that begins with "PPIC" through BinaryStringtoPicturePXK, every other
/// through the host. Throws WorkError.
Object readPicture(OpenHost& host, const std::string& path);

/// Writes a picture in the format that the path's ending names: .ppic through PicturetoBinaryStringPXK, every other
/// through the host. A failure leaves what was there before. Throws WorkError.
void writePicture(OpenHost& host, const Object& picture, const std::string& path);

}  // namespace pxk::tool
