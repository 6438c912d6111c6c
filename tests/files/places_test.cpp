// Where files are read and written: whole or not at all, with the permissions and links that were there.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "files/files_module.h"

namespace pxkfiles::test {

namespace fs = std::filesystem;

class Places : public testing::Test {
  public:
    ~Places() override { fs::remove_all(folder_); }
    Places(const Places&) = delete;
    Places& operator=(const Places&) = delete;

  protected:
    Places() {
        std::string pattern = (fs::temp_directory_path() / "picture-files-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }

    fs::path place(const std::string& name) const { return folder_ / name; }

    std::vector<std::string> filesInFolder() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder_)) names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    static void putContent(const fs::path& path, const FileBytes& bytes) {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    static FileBytes contentOf(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    static void expectSame(const Raster& picture, const fs::path& path) {
        const Reading reading = readFile(path);
        EXPECT_EQ(reading.message, "");
        EXPECT_EQ(largestDifference(picture, reading.picture), 0);
    }

    static void expectMessage(const std::string& message, const std::string& words) {
        EXPECT_NE(message.find(words), std::string::npos) << message;
        EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }

  private:
    fs::path folder_;
};

namespace {

// The superuser may read and write everything, so what permissions forbid is tried as another user.
class AsOrdinaryUser {
  public:
    AsOrdinaryUser() : before_(geteuid()) {
        constexpr uid_t nobody = 65534;
        if (before_ == 0 && seteuid(nobody) != 0) ADD_FAILURE() << "cannot become an ordinary user";
    }
    ~AsOrdinaryUser() { EXPECT_EQ(seteuid(before_), 0); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

  private:
    uid_t before_;
};

}  // namespace

TEST_F(Places, ContentDecidesAndNeverTheName) {
    for (const char* format : formats()) {
        for (const char* name : {"misnamed.png", "misnamed.jpg", "misnamed.txt", "noextension"}) {
            putContent(place(name), written(flagPicture(), format));
            EXPECT_EQ(readFile(place(name)).message, "") << format << " as " << name;
        }
    }
}

TEST_F(Places, TheExtensionChoosesAndAnExplicitFormatOverridesIt) {
    EXPECT_EQ(writeFile(flagPicture(), place("a.GIF")), "");
    EXPECT_EQ(readFile(place("a.GIF")).format, "GIF");
    WriteOptions options;
    options.format = "bmp";
    EXPECT_EQ(writeFile(flagPicture(), place("noextension"), options), "");
    EXPECT_EQ(readFile(place("noextension")).format, "BMP");
    expectMessage(writeFile(flagPicture(), place("picture")), "its extension names no format");
    expectMessage(writeFile(flagPicture(), place("picture.")), "its extension names no format");
    EXPECT_EQ(filesInFolder(), (std::vector<std::string>{"a.GIF", "noextension"}));
}

TEST_F(Places, FilesThatHoldNoPictureAreRefusedWithClearWords) {
    putContent(place("empty.png"), {});
    expectMessage(readFile(place("empty.png")).message, "empty");
    expectMessage(readFile(place("missing.png")).message, "No such file");
    fs::create_directory(place("folder.png"));
    expectMessage(readFile(place("folder.png")).message, "folder");
    expectMessage(readFile("/dev/zero").message, "no ordinary file");
    ASSERT_EQ(mkfifo(place("pipe.png").c_str(), 0600), 0);
    expectMessage(readFile(place("pipe.png")).message, "no ordinary file");
    expectMessage(readFile(place("two\nlines.png")).message, "two?lines.png\"");
    expectMessage(readFile(place("missing.png")).message, "cannot read picture \"" + place("missing.png").string());
}

TEST_F(Places, ALongForeignNameGivesAShortMessage) {
    const std::string message = readFile(place(std::string(5000, 'x'))).message;
    EXPECT_LT(message.size(), 600U);
    expectMessage(message, "File name too long");
}

TEST_F(Places, PermissionsAreRespected) {
    const FileBytes old = written(flagPicture(), "png");
    putContent(place("locked.png"), old);
    fs::permissions(place("locked.png"), fs::perms::none);
    putContent(place("fixed.png"), old);
    fs::permissions(place("fixed.png"), fs::perms::owner_read | fs::perms::others_read);
    fs::create_directory(place("closed"));
    fs::permissions(place("closed"), fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_exec);
    fs::permissions(place(""), fs::perms::all);
    {
        const AsOrdinaryUser user;
        expectMessage(readFile(place("locked.png")).message, "Permission denied");
        expectMessage(writeFile(flagPicture(), place("fixed.png")), "Permission denied");
        expectMessage(writeFile(flagPicture(), place("closed") / "a.png"), "Permission denied");
    }
    EXPECT_EQ(contentOf(place("fixed.png")), old);
    EXPECT_TRUE(fs::is_empty(place("closed")));
}

TEST_F(Places, WritingReplacesAFileAndKeepsItsPermissions) {
    putContent(place("old.png"), {'o', 'l', 'd'});
    const fs::perms permissions = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(place("old.png"), permissions);
    EXPECT_EQ(writeFile(flagPicture(), place("old.png")), "");
    expectSame(flagPicture(), place("old.png"));
    EXPECT_EQ(fs::status(place("old.png")).permissions(), permissions);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"old.png"});
}

TEST_F(Places, NewFilesFollowTheUsersMask) {
    const mode_t before = umask(027);
    EXPECT_EQ(writeFile(flagPicture(), place("new.png")), "");
    umask(before);
    struct stat status {};
    ASSERT_EQ(stat(place("new.png").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(Places, WritingFollowsASymbolicLink) {
    fs::create_directory(place("deep"));
    putContent(place("deep") / "target.png", {'o', 'l', 'd'});
    fs::create_symlink(place("deep") / "target.png", place("link.png"));
    EXPECT_EQ(writeFile(flagPicture(), place("link.png")), "");
    EXPECT_TRUE(fs::is_symlink(place("link.png")));
    expectSame(flagPicture(), place("deep") / "target.png");
}

TEST_F(Places, AFileNameMayBeAsLongAsTheSystemAllows) {
    const std::string name = std::string(249, 'n') + ".png";  // 253 bytes
    EXPECT_EQ(writeFile(flagPicture(), place(name)), "");
    expectSame(flagPicture(), place(name));
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{name});
}

TEST_F(Places, ARelativeNameWorks) {
    const fs::path before = fs::current_path();
    fs::current_path(place(""));
    EXPECT_EQ(writeFile(flagPicture(), "relative.png"), "");
    expectSame(flagPicture(), "relative.png");
    fs::current_path(before);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"relative.png"});
}

TEST_F(Places, ThatCannotBeWrittenAreRefused) {
    expectMessage(writeFile(flagPicture(), place("none") / "a.png"), "No such file");
    fs::create_directory(place("folder.png"));
    expectMessage(writeFile(flagPicture(), place("folder.png")), "folder");
    EXPECT_TRUE(fs::is_directory(place("folder.png")));
    putContent(place("file"), {'x'});
    expectMessage(writeFile(flagPicture(), place("file") / "a.png"), "Not a directory");
    ASSERT_EQ(mkfifo(place("pipe.png").c_str(), 0600), 0);
    expectMessage(writeFile(flagPicture(), place("pipe.png")), "no ordinary file");
    EXPECT_EQ(filesInFolder(), (std::vector<std::string>{"file", "folder.png", "pipe.png"}));
}

TEST_F(Places, AFailedWriteLeavesTheOldFileAndNothingElse) {
    const FileBytes old = written(flagPicture(), "png");
    putContent(place("kept.png"), old);

    // The system stops the file at 4 KiB; the noise takes more.
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handlerBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string message = writeFile(noisePicture(200, 200), place("kept.png"));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, handlerBefore);

    expectMessage(message, "File too large");
    EXPECT_EQ(contentOf(place("kept.png")), old);
    EXPECT_EQ(filesInFolder(), std::vector<std::string>{"kept.png"});
}

TEST_F(Places, AnInterruptedWriteCanBeTidiedUpBySignalHandlers) {
    const FileBytes old = written(flagPicture(), "png");
    putContent(place("kept.png"), old);
    // The system's signal at the file's limit comes while the file is being written.
    static std::function<void()> look;
    std::vector<std::string> before;
    std::vector<std::string> after;
    look = [&] {
        before = filesInFolder();
        module().removeUnfinished();
        after = filesInFolder();
    };
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto handlerBefore = std::signal(SIGXFSZ, [](int) { look(); });
    const rlimit small{4096, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const std::string message = writeFile(noisePicture(200, 200), place("kept.png"));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, handlerBefore);

    EXPECT_NE(message, "");
    EXPECT_EQ(before.size(), 2U);
    EXPECT_EQ(after, std::vector<std::string>{"kept.png"});
    EXPECT_EQ(contentOf(place("kept.png")), old);
}

}  // namespace pxkfiles::test
