// Any bytes give a picture of an acceptable size or a line of words; never a crash, and never a word on stderr.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "files/files_module.h"
#include "files/sample_files.h"
#include "support/sanitizers.h"

namespace pxkfiles::test {

namespace {

#ifdef PXK_ADDRESS_SANITIZER
constexpr int filesAFormat = 250;
#else
constexpr int filesAFormat = 2000;
#endif

void expectHarmless(const FileBytes& file) {
    const Reading reading = readBytes(file);
    if (reading.message.empty()) {
        EXPECT_GE(reading.picture.width, 1);
        EXPECT_LE(reading.picture.width, 32767);
        EXPECT_GE(reading.picture.height, 1);
        EXPECT_EQ(reading.picture.pixels.size(),
                  static_cast<std::size_t>(reading.picture.width) * static_cast<std::size_t>(reading.picture.height));
        const auto isOpaque = [](std::uint32_t pixel) { return pixel >> 24 == 255; };
        EXPECT_TRUE(reading.picture.hasAlpha ||
                    std::all_of(reading.picture.pixels.begin(), reading.picture.pixels.end(), isOpaque));
    } else {
        EXPECT_EQ(reading.message.find('\n'), std::string::npos) << reading.message;
        EXPECT_LT(reading.message.size(), 1000U) << reading.message;
        EXPECT_NE(reading.message.back(), '.') << reading.message;
    }
}

}  // namespace

class Damage : public testing::TestWithParam<const char*> {
  public:
    ~Damage() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
    Damage(const Damage&) = delete;
    Damage& operator=(const Damage&) = delete;

  protected:
    Damage() { testing::internal::CaptureStderr(); }

    // Files of every way in which the format is written, with metadata.
    static std::vector<FileBytes> wholeFiles() {
        std::vector<FileBytes> files;
        for (Raster picture : {smoothPicture(), alphaPicture(), flagPicture()}) {
            files.push_back(written(picture, GetParam()));
            picture.exif = exifWith(6);
            picture.profile = rgbProfile("RGB");
            files.push_back(written(picture, GetParam()));
        }
        return files;
    }
};

TEST_P(Damage, OfAFewBytesDoesNoHarm) {
    std::mt19937 random(20);
    const std::vector<FileBytes> files = wholeFiles();
    for (int round = 0; round < filesAFormat; ++round) {
        FileBytes bytes = files[static_cast<std::size_t>(round) % files.size()];
        const std::size_t reach = round % 2 == 0 ? bytes.size() : std::min<std::size_t>(bytes.size(), 64);
        for (auto changes = 1 + random() % 4; changes > 0; --changes) {
            const std::size_t at = random() % reach;
            switch (random() % 8) {
                case 0:
                    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at % bytes.size()));
                    break;
                case 1:
                    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::uint8_t>(random()));
                    break;
                default:
                    bytes[at % bytes.size()] = static_cast<std::uint8_t>(random());
            }
        }
        expectHarmless(bytes);
    }
}

TEST_P(Damage, OfTheHeaderDoesNoHarm) {
    const FileBytes whole = written(flagPicture(), GetParam());
    const std::size_t step = filesAFormat < 1000 ? 3 : 1;
    for (std::size_t at = 0; at < std::min<std::size_t>(whole.size(), 128); at += step) {
        for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
            FileBytes bytes = whole;
            bytes[at] = static_cast<std::uint8_t>(value);
            expectHarmless(bytes);
        }
    }
}

TEST_P(Damage, ToNoiseBehindASignatureDoesNoHarm) {
    std::mt19937 random(11);
    const FileBytes whole = written(flagPicture(), GetParam());
    for (int round = 0; round < filesAFormat / 10; ++round) {
        FileBytes bytes(whole.begin(), whole.begin() + 16);
        for (auto count = random() % 600; count > 0; --count) bytes.push_back(static_cast<std::uint8_t>(random()));
        expectHarmless(bytes);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, Damage, testing::ValuesIn(formats()),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace pxkfiles::test
