#include "chain/picture_file.h"

#include "chain/error.h"
#include "chain/text.h"
#include "chain/whole_file.h"

namespace pxk::chain {
namespace {

constexpr std::string_view magic = "PPIC";

/// The host's message for an unknown extension lists those that it knows; .ppic is added to them.
void savePicture(OpenHost& host, const Object& picture, const std::string& path) {
    try {
        host.savePicture(picture, path);
    } catch (const WorkError& error) {
        std::string message = error.what();
        const std::size_t named = message.find(inQuotes(path));
        const std::size_t reason = named == std::string::npos ? 0 : named + inQuotes(path).size();
        if (message.find(".png", reason) == std::string::npos) throw;
        throw WorkError(message + "; .ppic stores a binary string");
    }
}

}  // namespace

Object readPicture(OpenHost& host, const std::string& path) {
    if (startOfFile(path, magic.size()) != magic) return host.loadPicture(path);
    std::vector<Value> arguments{Value::object(PXK_STRING, host.newBinaryString(readFile(path)))};
    const Value picture = host.call(Object(), "BinaryStringtoPicturePXK", arguments);
    if (picture.isNil()) {
        throw WorkError("cannot read binary string " + inQuotes(path) +
                        ": it does not hold the picture that its header describes");
    }
    return picture.asObject();
}

void writePicture(OpenHost& host, const Object& picture, const std::string& path) {
    if (!endsIn(path, ".ppic")) return savePicture(host, picture, path);
    std::vector<Value> arguments{Value::object(PXK_PICTURE, picture)};
    const Value string = host.call(Object(), "PicturetoBinaryStringPXK", arguments);
    if (string.isNil()) throw WorkError("cannot write " + inQuotes(path) + ": the picture is too large for a string");
    writeFile(path, bytesOf(string.asObject()));
}

}  // namespace pxk::chain
