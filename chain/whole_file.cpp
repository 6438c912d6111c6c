#include "chain/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <utility>

#include "chain/error.h"
#include "chain/text.h"

namespace pxk::chain {
namespace {

[[noreturn]] void fail(const char* work, const std::string& path, int error) {
    throw WorkError(std::string("cannot ") + work + " " + inQuotes(path) + ": " + std::strerror(error));
}

/// An open file, closed at the end.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

  private:
    int number_;
};

/// The name of the temporary file, if there is one, where a signal handler finds it.
std::atomic<const char*> unfinishedName = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free);

/// Makes a file with a unique name. No signal arrives between its creation and the moment at which its name is known.
int makeUnfinishedFile(std::string& name) {
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const int number = ::mkstemp(name.data());
    const int error = errno;
    if (number >= 0) unfinishedName = name.c_str();
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return number;
}

/// A file under a temporary name; removed again unless it was renamed.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& target)
        : name_(target + ".XXXXXX"), descriptor_(makeUnfinishedFile(name_)) {
        if (descriptor_.number() < 0) fail("write", target, errno);
    }
    ~TemporaryFile() {
        if (!name_.empty()) ::unlink(name_.c_str());
        unfinishedName = nullptr;
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool write(std::string_view bytes) const {
        while (!bytes.empty()) {
            const auto written = ::write(descriptor_.number(), bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) return false;
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        return true;
    }

    /// Takes the place of `target`, with the permissions that a file made there by name would have.
    bool moveTo(const std::string& target) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        struct stat old {};
        const mode_t mode = ::stat(target.c_str(), &old) == 0 ? old.st_mode & 07777U : 0666U & ~mask;
        if (::fchmod(descriptor_.number(), mode) != 0 || !descriptor_.close()) return false;
        if (::rename(name_.c_str(), target.c_str()) != 0) return false;
        unfinishedName = nullptr;
        name_.clear();
        return true;
    }

  private:
    std::string name_;
    Descriptor descriptor_;
};

/// A symbolic link is followed, so that its target is replaced and the link stays.
std::string followed(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const auto target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target.string();
}

}  // namespace

std::string readFile(const std::string& path, bool dashIsInput) {
    const bool fromInput = dashIsInput && path == "-";
    const Descriptor file(fromInput ? ::dup(STDIN_FILENO) : ::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0) fail("read", path, errno);
    std::string bytes;
    std::string piece(std::size_t{1} << 16U, '\0');
    while (true) {
        const auto count = ::read(file.number(), piece.data(), piece.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail("read", path, errno);
        if (count == 0) return bytes;
        bytes.append(piece, 0, static_cast<std::size_t>(count));
        if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
            fail("read", path, EFBIG);
    }
}

std::string startOfFile(const std::string& path, std::size_t count) {
    // What is read from a pipe would be gone.
    std::error_code ignored;
    std::string start(count, '\0');
    std::ifstream file;
    if (std::filesystem::is_regular_file(path, ignored)) file.open(path, std::ios::binary);
    file.read(start.data(), static_cast<std::streamsize>(count));
    start.resize(static_cast<std::size_t>(file.gcount()));
    return start;
}

void writeFile(const std::string& path, std::string_view bytes) {
    const std::string target = followed(path);
    TemporaryFile file(target);
    if (!file.write(bytes) || !file.moveTo(target)) fail("write", path, errno);
}

void removeUnfinishedFile() {
    if (const char* const name = unfinishedName) ::unlink(name);
}

}  // namespace pxk::chain
