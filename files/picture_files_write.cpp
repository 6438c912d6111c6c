// Writes a picture file beside its place and renames it.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <utility>

#include "files/picture_codecs.h"
#include "files/picture_files.h"
#include "files/picture_header.h"
#include "files/picture_path.h"

namespace pxkhost {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failWithSystemError() { throw BadPicture(std::strerror(errno)); }

// A file that takes another's place once it is whole, and vanishes otherwise.
class ReplacementFile {
  public:
    explicit ReplacementFile(const fs::path& target) : target_(target) {
        constexpr int mostTries = 1000;
        for (int tried = 0; tried < mostTries; ++tried) {
            path_ = target.parent_path() / (".pxk-" + std::to_string(getpid()) + "-" + std::to_string(tried));
            descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor_ >= 0) return;
            if (errno != EEXIST) break;
        }
        failWithSystemError();
    }

    ~ReplacementFile() {
        if (descriptor_ >= 0) close(descriptor_);
        if (!path_.empty()) unlink(path_.c_str());
    }

    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    void write(const FileBytes& bytes) const {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno != EINTR) failWithSystemError();
            if (count > 0) done += static_cast<std::size_t>(count);
        }
    }

    void setPermissions(mode_t mode) const {
        if (fchmod(descriptor_, mode) != 0) failWithSystemError();
    }

    void takePlace() {
        if (fsync(descriptor_) != 0) failWithSystemError();
        const int closing = std::exchange(descriptor_, -1);
        if (close(closing) != 0) failWithSystemError();
        if (rename(path_.c_str(), target_.c_str()) != 0) failWithSystemError();
        path_.clear();
    }

  private:
    fs::path target_;
    fs::path path_;
    int descriptor_ = -1;
};

void replaceFile(const fs::path& path, const FileBytes& bytes) {
    std::error_code isDangling;
    const fs::path followed = fs::is_symlink(path) ? fs::canonical(path, isDangling) : path;
    const fs::path& target = isDangling ? path : followed;

    struct stat existing {};
    const bool exists = stat(target.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) throw BadPicture("it is a folder; a file name is needed");
    if (exists && !S_ISREG(existing.st_mode)) throw BadPicture("it is no ordinary file");
    if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) failWithSystemError();

    ReplacementFile file(target);
    file.write(bytes);
    if (exists) file.setPermissions(existing.st_mode & 07777);
    file.takePlace();
}

void requireSideWithin(const gdImage& picture, int most) {
    if (picture.sx > most || picture.sy > most)
        throw BadPicture("its size of " + std::to_string(picture.sx) + " x " + std::to_string(picture.sy) +
                         " pixels does not fit the format; a side may have at most " + std::to_string(most));
}

FileBytes encode(PictureFormat format, gdImagePtr picture) {
    constexpr int longestWebpSide = 16383;
    if (format == PictureFormat::webp) requireSideWithin(*picture, longestWebpSide);
    if (format == PictureFormat::tiff) return encodeTiff(*picture);
    if (format == PictureFormat::avif) return encodeAvif(*picture);
    return encodeWithGd(format, picture);
}

}  // namespace

void writePictureFile(gdImagePtr picture, const std::filesystem::path& path) {
    std::string kind = "picture";
    try {
        const std::optional<PictureFormat> format = formatOfEnding(path);
        if (!format) throw BadPicture("its ending names no format; " + listOfEndings() + " do");
        kind = std::string(formatName(*format)) + " picture";
        if (picture == nullptr || !gdImageTrueColor(picture)) throw BadPicture("a true-colour picture is needed");
        replaceFile(path, encode(*format, picture));
    } catch (const BadPicture& problem) {
        throw PictureFileError("cannot write " + kind + " " + quoted(path) + ": " + problem.what());
    } catch (const fs::filesystem_error& problem) {
        throw PictureFileError("cannot write " + kind + " " + quoted(path) + ": " + problem.code().message());
    } catch (const std::bad_alloc&) {
        throw PictureFileError("cannot write " + kind + " " + quoted(path) + ": there is not enough memory");
    }
}

}  // namespace pxkhost
