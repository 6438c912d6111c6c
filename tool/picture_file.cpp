#include "picture_file.h"

#include "error.h"
#include "files.h"
#include "text.h"

namespace pxk::tool {
namespace {

constexpr std::string_view magic = "PPIC";

}  // namespace

Object readPicture(HostSession& session, const std::string& path) {
    if (startOfFile(path, magic.size()) != magic) return session.loadPicture(path);
    std::vector<Value> arguments{Value::object(PXK_STRING, session.newBinaryString(readFile(path)))};
    const Value picture = session.call(Object(), "BinaryStringtoPicturePXK", arguments);
    if (picture.isNil()) {
        throw WorkError("cannot read binary string " + inQuotes(path) +
                        ": it is not the picture that its header states");
    }
    return picture.asObject();
}

void writePicture(HostSession& session, const Object& picture, const std::string& path) {
    if (!endsIn(path, ".ppic")) return session.savePicture(picture, path);
    std::vector<Value> arguments{Value::object(PXK_PICTURE, picture)};
    const Value string = session.call(Object(), "PicturetoBinaryStringPXK", arguments);
    if (string.isNil()) throw WorkError("cannot write " + inQuotes(path) + ": the picture is too large for a string");
    writeFile(path, bytesOf(string.asObject()));
}

}  // namespace pxk::tool
