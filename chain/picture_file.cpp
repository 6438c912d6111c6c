#include "chain/picture_file.h"

#include "chain/error.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "chain/why_nil.h"

namespace pxk::chain {
namespace {

constexpr std::string_view magic = "PPIC";

/// Does something with a picture file of the host's. Its message for an unknown extension or format lists those that it
/// knows; .ppic is added to them.
template <class Action>
auto listingBinaryStrings(const std::string& name, const Action& action) {
    try {
        return action();
    } catch (const WorkError& error) {
        std::string message = error.what();
        const std::size_t named = message.find(inQuotes(name));
        const std::size_t reason = named == std::string::npos ? 0 : named + inQuotes(name).size();
        if (message.find(".png", reason) == std::string::npos) throw;
        throw WorkError(message + "; .ppic stores a binary string");
    }
}

Object pictureOf(OpenHost& host, const std::string& binaryString, const std::string& name,
                 const pxk_load_options& options) {
    if (options.page > 1) throw WorkError("cannot read binary string " + inQuotes(name) + ": it has one page");
    std::vector<Value> arguments{Value::object(PXK_STRING, host.newBinaryString(binaryString))};
    const Value picture = host.call(Object(), "BinaryStringtoPicturePXK", arguments);
    if (picture.isNil()) {
        throw WorkError("cannot read binary string " + inQuotes(name) + ": " + whyNoBinaryString(binaryString));
    }
    return picture.asObject();
}

Object binaryStringOf(OpenHost& host, const Object& picture, const std::string& name, const pxk_save_options& options) {
    if (options.quality != 0 || options.compression != PXK_DEFAULT_COMPRESSION) {
        throw WorkError("cannot write " + inQuotes(name) + ": a binary string has no quality and no compression");
    }
    std::vector<Value> arguments{Value::object(PXK_PICTURE, picture)};
    const Value string = host.call(Object(), "PicturetoBinaryStringPXK", arguments);
    if (string.isNil()) throw WorkError("cannot write " + inQuotes(name) + ": the picture is too large for a string");
    return string.asObject();
}

}  // namespace

bool isBinaryString(const std::string& path) { return startOfFile(path, magic.size()) == magic; }

Object readPicture(OpenHost& host, const std::string& path, const pxk_load_options& options) {
    return isBinaryString(path) ? pictureOf(host, readFile(path), path, options) : host.loadPicture(path, options);
}

Object decodePicture(OpenHost& host, const std::string& file, const std::string& name,
                     const pxk_load_options& options) {
    return file.starts_with(magic) ? pictureOf(host, file, name, options) : host.decodePicture(file, name, options);
}

void writePicture(OpenHost& host, const Object& picture, const std::string& path, const pxk_save_options& options) {
    if (endsIn(path, ".ppic")) return writeFile(path, bytesOf(binaryStringOf(host, picture, path, options)));
    listingBinaryStrings(path, [&] { host.savePicture(picture, path, options); });
}

std::string encodePicture(OpenHost& host, const Object& picture, const std::string& name,
                          const pxk_save_options& options) {
    const std::string extension = options.format != nullptr ? "." + std::string(options.format) : name;
    if (endsIn(extension, ".ppic")) return std::string(bytesOf(binaryStringOf(host, picture, name, options)));
    return listingBinaryStrings(name, [&] { return host.encodePicture(picture, name, options); });
}

void checkFormat(OpenHost& host, const std::string& path, const pxk_save_options& options) {
    constexpr std::int32_t side = 16;
    encodePicture(host, host.newPicture(side, side), path, options);
}

}  // namespace pxk::chain
