/// Picture files, including the plugin's own binary strings (.ppic).
#pragma once

#include <string>

#include "chain/open_host.h"

namespace pxk::chain {

/// Reads a picture, its format detected from the content: a file that begins with "PPIC" through
/// BinaryStringtoPicturePXK, any other through the host. Throws WorkError.
Object readPicture(OpenHost& host, const std::string& path, const pxk_load_options& options = {});

/// The same from the bytes of a file; `name` stands for it in messages.
Object decodePicture(OpenHost& host, const std::string& file, const std::string& name, const pxk_load_options& options);

/// Writes a picture in the format chosen by the path's extension: .ppic through PicturetoBinaryStringPXK, any other
/// through the host. A failure leaves what was there before. Throws WorkError.
void writePicture(OpenHost& host, const Object& picture, const std::string& path, const pxk_save_options& options = {});

/// The bytes of such a file, in the format that `options` or the extension of `name` name; `name` stands for the file
/// in messages.
std::string encodePicture(OpenHost& host, const Object& picture, const std::string& name,
                          const pxk_save_options& options);

/// Whether a file holds a binary string.
bool isBinaryString(const std::string& path);

/// Throws WorkError, as writePicture() would, when the path's extension chooses no format that can be written, or one
/// that does not have these options.
void checkFormat(OpenHost& host, const std::string& path, const pxk_save_options& options);

}  // namespace pxk::chain
