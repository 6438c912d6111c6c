#include "memory_block_file.h"

#include "curve.h"
#include "files.h"

namespace pxk::tool {

std::string readMemoryBlock(const std::string& path) {
    std::string bytes = readFile(path);
    return isCurve(bytes) ? tableOfCurve(path, bytes) : bytes;
}

}  // namespace pxk::tool
