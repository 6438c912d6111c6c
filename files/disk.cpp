#include "files/disk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "files/messages.h"

namespace pxkfiles {
namespace {

namespace fs = std::filesystem;

// A path that a signal handler can read at any moment.
struct UnfinishedPath {
    enum State : int { unused, inPreparation, listed };

    std::atomic<int> state = unused;
    std::array<char, PATH_MAX> path{};
};
static_assert(std::atomic<int>::is_always_lock_free);

std::array<UnfinishedPath, 64> unfinishedPaths;

// Lists a path for removeUnfinishedFiles() while it lives; when the list is full or the path too long, it does without.
class Unfinished {
  public:
    explicit Unfinished(const std::string& path) {
        if (path.size() >= PATH_MAX) return;
        for (UnfinishedPath& entry : unfinishedPaths) {
            int expected = UnfinishedPath::unused;
            if (!entry.state.compare_exchange_strong(expected, UnfinishedPath::inPreparation)) continue;
            std::memcpy(entry.path.data(), path.c_str(), path.size() + 1);
            entry.state = UnfinishedPath::listed;
            entry_ = &entry;
            return;
        }
    }
    ~Unfinished() {
        if (entry_ != nullptr) entry_->state = UnfinishedPath::unused;
    }
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

  private:
    UnfinishedPath* entry_ = nullptr;
};

// A file that takes another's place once it is whole, and vanishes otherwise.
class ReplacementFile {
  public:
    explicit ReplacementFile(const fs::path& target) : target_(target) {
        static std::atomic<unsigned> counter = 0;
        constexpr int mostTries = 1000;
        const fs::path folder = fs::absolute(target).parent_path();
        for (int tried = 0; tried < mostTries; ++tried) {
            const fs::path path = folder / (".pxk-" + std::to_string(getpid()) + "-" + std::to_string(counter++));
            unfinished_ = std::make_unique<Unfinished>(path.string());
            descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor_ >= 0) {
                path_ = path;
                return;
            }
            if (errno != EEXIST) break;
        }
        throwSystemProblem();
    }

    ~ReplacementFile() {
        if (descriptor_ >= 0) close(descriptor_);
        if (!path_.empty()) unlink(path_.c_str());
    }

    ReplacementFile(const ReplacementFile&) = delete;
    ReplacementFile& operator=(const ReplacementFile&) = delete;

    void write(std::span<const std::uint8_t> bytes) const {
        for (std::size_t done = 0; done < bytes.size();) {
            const ssize_t count = ::write(descriptor_, bytes.data() + done, bytes.size() - done);
            if (count < 0 && errno != EINTR) throwSystemProblem();
            if (count > 0) done += static_cast<std::size_t>(count);
        }
    }

    void setPermissions(mode_t mode) const {
        if (fchmod(descriptor_, mode) != 0) throwSystemProblem();
    }

    void takePlace() {
        if (close(std::exchange(descriptor_, -1)) != 0) throwSystemProblem();
        if (rename(path_.c_str(), target_.c_str()) != 0) throwSystemProblem();
        path_.clear();
    }

  private:
    fs::path target_;
    fs::path path_;
    std::unique_ptr<Unfinished> unfinished_;
    int descriptor_ = -1;
};

}  // namespace

std::vector<std::uint8_t> readBytes(const char* path, std::uint64_t most) {
    constexpr std::uint64_t largestFile = std::numeric_limits<std::uint32_t>::max();
    struct stat status {};
    if (stat(path, &status) != 0) throwSystemProblem();
    if (S_ISDIR(status.st_mode)) throw FileProblem("it is a folder; a picture file is needed");
    if (!S_ISREG(status.st_mode)) throw FileProblem("it is no ordinary file; a picture file is needed");
    if (status.st_size == 0) throw FileProblem("the file is empty; a picture file is needed");
    const std::uint64_t size = std::min(static_cast<std::uint64_t>(status.st_size), most);
    if (size > largestFile) throw FileProblem("the file is too large; 4 GiB are the most");

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), std::fclose);
    if (!file) throwSystemProblem();
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0) throwSystemProblem();
    return bytes;
}

void replaceFile(const char* path, std::span<const std::uint8_t> bytes) {
    std::error_code isDangling;
    const fs::path followed = fs::is_symlink(path) ? fs::canonical(path, isDangling) : fs::path(path);
    const fs::path target = isDangling ? fs::path(path) : followed;

    struct stat existing {};
    const bool exists = stat(target.c_str(), &existing) == 0;
    if (exists && S_ISDIR(existing.st_mode)) throw FileProblem("it is a folder; a file name is needed");
    if (exists && !S_ISREG(existing.st_mode)) throw FileProblem("it is no ordinary file");
    if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) throwSystemProblem();

    ReplacementFile file(target);
    file.write(bytes);
    if (exists) file.setPermissions(existing.st_mode & 07777);
    file.takePlace();
}

void removeUnfinishedFiles() {
    for (const UnfinishedPath& entry : unfinishedPaths)
        if (entry.state == UnfinishedPath::listed) unlink(entry.path.data());
}

}  // namespace pxkfiles
