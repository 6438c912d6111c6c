#include "chain/picture_file.h"

#include <cstdlib>
#include <filesystem>

#include "chain/error.h"
#include "chain/text.h"
#include "chain/whole_file.h"
#include "chain/why_nil.h"

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

/// A folder of its own, removed with what is in it; its path is empty when it could not be made.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string name = std::filesystem::temp_directory_path() / "pxk-XXXXXX";
        if (::mkdtemp(name.data()) != nullptr) path_ = name;
    }
    ~TemporaryFolder() {
        if (path_.empty()) return;
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

}  // namespace

Object readPicture(OpenHost& host, const std::string& path) {
    if (startOfFile(path, magic.size()) != magic) return host.loadPicture(path);
    std::vector<Value> arguments{Value::object(PXK_STRING, host.newBinaryString(readFile(path)))};
    const Value picture = host.call(Object(), "BinaryStringtoPicturePXK", arguments);
    if (picture.isNil()) {
        throw WorkError("cannot read binary string " + inQuotes(path) + ": " +
                        whyNoBinaryString(bytesOf(arguments.front().asObject())));
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

void checkFormat(OpenHost& host, const std::string& path) {
    constexpr std::int32_t side = 16;
    const TemporaryFolder folder;
    if (folder.path().empty()) return;
    const std::string probe = folder.path() / ("probe" + std::filesystem::path(path).extension().string());
    try {
        writePicture(host, host.newPicture(side, side), probe);
    } catch (const WorkError& error) {
        std::string message = error.what();
        if (const std::size_t at = message.find(probe); at != std::string::npos)
            message.replace(at, probe.size(), path);
        throw WorkError(message);
    }
}

}  // namespace pxk::chain
