#include "picture_file.h"

#include "error.h"
#include "files.h"
#include "text.h"

namespace pxk::tool {
namespace {

constexpr std::string_view magic = "PPIC";

}  // namespace

Object readPicture(OpenHost& host, const std::string& path) {
    if (startOfFile(path, magic.size()) != magic) return host.loadPicture(path);
    std::vector<Value> arguments{Value::object(PXK_STRING, host.newBinaryString(readFile(path)))};
    const Value picture = host.call(Object(), "BinaryStringtoPicturePXK", arguments);
    if (picture.isNil()) {
        throw WorkError("cannot read binary string " + inQuotes(path) +
                        ": it is not the picture that its header states");
    }
    return picture.asObject();
}

void writePicture(OpenHost& host, const Object& picture, const std::string& path) {
    if (!endsIn(path, ".ppic")) return host.savePicture(picture, path);
    std::vector<Value> arguments{Value::object(PXK_PICTURE, picture)};
    const Value string = host.call(Object(), "PicturetoBinaryStringPXK", arguments);
    if (string.isNil()) throw WorkError("cannot write " + inQuotes(path) + ": the picture is too large for a string");
    writeFile(path, bytesOf(string.asObject()));
}

}  // namespace pxk::tool
