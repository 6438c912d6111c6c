#include "chain/files.h"

#include "chain/picture_file.h"
#include "chain/whole_file.h"

namespace pxk::chain {

std::string DiskFiles::bytes(const std::string& path) const { return readFile(path); }

Object DiskFiles::picture(OpenHost& host, const std::string& path) const { return readPicture(host, path); }

}  // namespace pxk::chain
