/// Picture files, including the plugin's own binary strings (.ppic).
#pragma once

#include <string>

#include "chain/open_host.h"

namespace pxk::chain {

/// Reads a picture, its format detected from the content: a file that begins with "PPIC" through
/// BinaryStringtoPicturePXK, any other through the host. Throws WorkError.
Object readPicture(OpenHost& host, const std::string& path);

/// Writes a picture in the format chosen by the path's extension: .ppic through PicturetoBinaryStringPXK, any other
/// through the host. A failure leaves what was there before. Throws WorkError.
void writePicture(OpenHost& host, const Object& picture, const std::string& path);

}  // namespace pxk::chain
