/// `pxk wave`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <cstdlib>

#include "tool/commands/command_run.h"
#include "tool/commands/picture_folder.h"

namespace pxk::tool {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int rate = 44100;

/// A tone that swells, on one channel.
std::vector<float> swell(std::size_t count) {
    std::vector<float> samples;
    for (std::size_t i = 0; i < count; ++i) {
        const double part = static_cast<double>(i) / static_cast<double>(count);
        samples.push_back(static_cast<float>(0.9 * part * std::sin(static_cast<double>(i) * 0.0123)));
    }
    return samples;
}

std::string bytesOf(const std::vector<float>& samples) {
    return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(float)};
}

class WaveCommand : public testing::Test {
  protected:
    /// A leak checker must ignore the leaks of the libraries.
    WaveCommand() { ::setenv("LSAN_OPTIONS", "print_suppressions=0:suppressions=" PXK_LIBRARY_LEAKS, 1); }

    CommandResult wave(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "wave");
        return runTool(folder.path(), arguments);
    }

    void writeSound(const std::string& name, const std::vector<float>& samples, int channels, int format) const {
        SF_INFO info{};
        info.samplerate = rate;
        info.channels = channels;
        info.format = format;
        SNDFILE* file = sf_open(folder.path(name).c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
        EXPECT_EQ(sf_write_float(file, samples.data(), static_cast<sf_count_t>(samples.size())),
                  static_cast<sf_count_t>(samples.size()));
        sf_close(file);
    }

    /// The picture that the command draws, expected to succeed.
    Pixels drawn(std::vector<std::string> arguments) const {
        arguments.insert(arguments.end(), {"-o", "wave.png"});
        const CommandResult result = wave(arguments);
        EXPECT_EQ(result.exitCode, 0) << result.error;
        EXPECT_EQ(result.out + result.error, "");
        return folder.readPicture("wave.png");
    }

    /// The picture that RenderSamplesPXK draws of these samples, by a chain: `arguments` are those after the count.
    Pixels rendered(const std::vector<float>& samples, const std::string& arguments) const {
        folder.writeText("samples", bytesOf(samples));
        const std::string chain =
            "RenderSamples(\"samples\", " + std::to_string(samples.size()) + ", " + arguments + ")";
        const CommandResult result = runTool(folder.path(), {"-e", chain, "-o", "rendered.png"});
        EXPECT_EQ(result.exitCode, 0) << result.error;
        return folder.readPicture("rendered.png");
    }

    PictureFolder folder;
};

const char* const defaults = "1, 1000, 240, 1, &c88B5C4, &c274C5A, &c203F4E, -32";

TEST_F(WaveCommand, HandsTheSamplesOfAFileToTheMember) {
    const std::vector<float> samples = swell(50000);
    writeSound("a.wav", samples, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    const Pixels picture = drawn({"a.wav"});
    EXPECT_EQ(picture.width, 1000);
    EXPECT_EQ(picture.height, 240);
    EXPECT_EQ(picture, rendered(samples, defaults));
}

TEST_F(WaveCommand, TakesSizeSmoothingOutlineColoursAndScale) {
    const std::vector<float> samples = swell(20000);
    writeSound("a.wav", samples, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(drawn({"a.wav", "--width", "300", "--height", "99", "--smooth", "5", "--outline", "0"}),
              rendered(samples, "5, 300, 99, 0, &c88B5C4, &c274C5A, &c203F4E, -32"));
    EXPECT_EQ(drawn({"a.wav", "--width", "300", "--outline", "4", "--back", "FFFFFF", "--fore", "#ff8000", "--line",
                     "&c010203", "--autoscale"}),
              rendered(samples, "1, 300, 240, 4, &cFFFFFF, &cFF8000, &c010203, -32, true"));
    EXPECT_EQ(drawn({"a.wav", "--line", "ff0000"}),
              rendered(samples, "1, 1000, 240, 1, &c88B5C4, &c274C5A, &cFF0000, -32"));
}

TEST_F(WaveCommand, MixesChannelsByTheirMean) {
    const std::vector<float> samples = swell(20000);
    std::vector<float> three;
    std::vector<float> mean;
    for (const float each : samples) {
        three.insert(three.end(), {each, 0.25F, -each / 2});
        mean.push_back((each + 0.25F + -each / 2) / 3);
    }
    writeSound("three.wav", three, 3, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(drawn({"three.wav"}), rendered(mean, defaults));
}

TEST_F(WaveCommand, ReadsEveryKindOfFileByItsContent) {
    const std::vector<float> samples = swell(60000);
    writeSound("sound", samples, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    Pixels expected = drawn({"sound"});
    for (const int format : {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, SF_FORMAT_AIFF | SF_FORMAT_PCM_16}) {
        writeSound("sound", samples, 1, format);
        EXPECT_EQ(drawn({"sound"}), expected) << std::hex << format;
    }
    const std::vector<std::string> coarse = {"sound", "--width", "60", "--height", "100", "--outline", "0"};
    writeSound("sound", samples, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    expected = drawn(coarse);
    // These lose a little, and MP3 adds silence at both ends.
    for (const int format : {SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}) {
        writeSound("sound", samples, 1, format);
        const Pixels picture = drawn(coarse);
        ASSERT_EQ(picture.words.size(), expected.words.size());
        std::size_t different = 0;
        for (std::size_t i = 0; i < picture.words.size(); ++i) different += picture.words[i] != expected.words[i];
        EXPECT_LT(different, picture.words.size() / 20) << std::hex << format;
    }
}

TEST_F(WaveCommand, DrawsALongFileAndAShortOne) {
    writeSound("one.wav", {0.5F}, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(drawn({"one.wav"}), rendered({0.5F}, defaults));
    const std::vector<float> samples = swell(3000000);
    writeSound("long.wav", samples, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(drawn({"long.wav"}), rendered(samples, defaults));
}

TEST_F(WaveCommand, DrawsWhatIsNoNumberToo) {
    writeSound("odd.wav", {NAN, INFINITY, -INFINITY, 3e38F, 0.5F, -0.5F}, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    EXPECT_EQ(drawn({"odd.wav", "--width", "6"}).width, 6);
    EXPECT_EQ(drawn({"odd.wav", "--width", "2", "--outline", "3", "--autoscale"}).width, 2);
}

TEST_F(WaveCommand, SaysInOneLineWhyASoundCannotBeRead) {
    writeSound("whole.flac", swell(50000), 1, SF_FORMAT_FLAC | SF_FORMAT_PCM_16);
    writeSound("whole.ogg", swell(50000), 1, SF_FORMAT_OGG | SF_FORMAT_VORBIS);
    writeSound("whole.mp3", swell(50000), 1, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III);
    writeSound("none.wav", {}, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    folder.writeText("text.wav", "hello");
    folder.writeText("empty.wav", "");
    const std::string flac = folder.readText("whole.flac");
    folder.writeText("cut.flac", flac.substr(0, flac.size() / 2));
    folder.writeText("head.flac", folder.readText("whole.flac").substr(0, 50));
    folder.writeText("head.ogg", folder.readText("whole.ogg").substr(0, 100));
    folder.writeText("head.mp3", folder.readText("whole.mp3").substr(0, 100));
    const std::vector<std::pair<std::string, std::string>> reasons = {{"none.wav", "it has no samples"},
                                                                      {"text.wav", "its format is unknown"},
                                                                      {"empty.wav", "its format is unknown"},
                                                                      {"cut.flac", "of its 50000 samples"},
                                                                      {"head.flac", "it is damaged or not supported"},
                                                                      {"head.ogg", "it is damaged or not supported"},
                                                                      {"head.mp3", ""},
                                                                      {".", ""},
                                                                      {"missing.wav", "No such file or directory"}};
    for (const auto& [name, reason] : reasons) {
        const CommandResult result = wave({name, "-o", "wave.png"});
        EXPECT_EQ(result.exitCode, 1) << name;
        EXPECT_THAT(result.error, StartsWith("pxk: cannot read sound \"" + name + "\": "));
        EXPECT_THAT(result.error, HasSubstr(reason));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
        EXPECT_FALSE(folder.has("wave.png"));
    }
}

TEST_F(WaveCommand, SurvivesDamagedFiles) {
    for (const int format : {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                             SF_FORMAT_OGG | SF_FORMAT_VORBIS, SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III}) {
        writeSound("sound", swell(20000), 2, format);
        const std::string whole = folder.readText("sound");
        for (std::size_t place = 4; place < whole.size(); place += 1 + place / 2) {
            std::string damaged = whole;
            for (std::size_t i = place; i < std::min(place + 4, damaged.size()); ++i) damaged[i] = '\xFF';
            folder.writeText("damaged", damaged);
            const CommandResult result = wave({"damaged", "-o", "wave.png"});
            EXPECT_LE(result.exitCode, 1) << std::hex << format << " at " << place;
            EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), result.exitCode) << result.error;
        }
    }
}

TEST_F(WaveCommand, IsAskedForProperly) {
    writeSound("a.wav", swell(100), 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT);
    const std::vector<std::vector<std::string>> mistakes = {{},
                                                            {"a.wav"},
                                                            {"-", "-o", "w.png"},
                                                            {"a.wav", "-o", ""},
                                                            {"a.wav", "-o", "-"},
                                                            {"a.wav", "-o", "w.png", "--width", "0"},
                                                            {"a.wav", "-o", "w.png", "--width", "32768"},
                                                            {"a.wav", "-o", "w.png", "--height", "-1"},
                                                            {"a.wav", "-o", "w.png", "--smooth", "0"},
                                                            {"a.wav", "-o", "w.png", "--smooth", "1e9"},
                                                            {"a.wav", "-o", "w.png", "--outline", "-1"},
                                                            {"a.wav", "-o", "w.png", "--fore", "blue"},
                                                            {"a.wav", "-o", "w.png", "--back", "12345"},
                                                            {"a.wav", "-o", "w.png", "--line", "1234567"},
                                                            {"a.wav", "-o", "w.png", "--line", "&c12345G"}};
    for (const std::vector<std::string>& arguments : mistakes) {
        const CommandResult result = wave(arguments);
        EXPECT_EQ(result.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(result.error, StartsWith("pxk: "));
        EXPECT_EQ(std::count(result.error.begin(), result.error.end(), '\n'), 1) << result.error;
    }
    EXPECT_EQ(wave({"a.wav", "-o", "gone/w.png"}).exitCode, 1);
    EXPECT_EQ(wave({"a.wav", "-o", "w.unknown"}).exitCode, 1);
    EXPECT_THAT(folder.names(), testing::ElementsAre("a.wav"));
}

}  // namespace
}  // namespace pxk::tool
