/// The base of the plugin's tests: hosts with the freshly built plugin, checked for leaks when they are closed.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"

namespace pxktest {

using namespace pxkhost;

/// Opens hosts on the plugin under test. At the end of each test the host is closed; anything leaked, released twice or
/// left locked fails the test.
class HostTest : public ::testing::Test {
  protected:
    /// Opens a host on the plugin; an open one is closed first, with the same checks. `options.plugin` is filled in.
    Host& open(Options options = {});
    Host& openConsole(double version = newestVersion);
    Host& openDesktop(double version = newestVersion, const BitmapFormat& newPictures = {});

    Host& host() { return *host_; }

    /// Closes the host now and expects every reference and lock to be released.
    void close();

    /// Closes the host now and returns what was wrong, for tests that provoke it.
    std::vector<std::string> closeAndTakeProblems();

    void TearDown() override;

    std::unique_ptr<Host> host_;
};

/// The path of the plugin under test: PicturePXK, or the build of it that the environment variable PXK_TEST_PLUGIN
/// names, for example PicturePXK-baseline.
std::string pluginPath();
/// The path of a build of the plugin by its name.
std::string pluginPath(const std::string& name);

/// One way in which a host may keep the pixels of a picture: libgd, or a bitmap of one layout.
struct PictureFormat {
    PixelLayout layout = PixelLayout::gd;
    std::size_t rowPadding = 0;  ///< for bitmaps: 0, 4, 8, ... bytes behind each row

    bool isConsole() const { return layout == PixelLayout::gd; }
    /// "gd", or for example "layout2padded12".
    std::string name() const;
};

/// libgd, and layouts 1 to 6 without and with padding.
std::vector<PictureFormat> allFormats();
/// libgd, and one padded bitmap of each family: alpha last and alpha first.
std::vector<PictureFormat> oneOfEachFamily();
void PrintTo(const PictureFormat& format, std::ostream* stream);
std::string formatName(const ::testing::TestParamInfo<PictureFormat>& info);

/// A host whose own new pictures are of the format: a console host for libgd, else a desktop host.
Options optionsFor(const PictureFormat& format, double version = newestVersion);

/// A picture of the format: opaque black (libgd) or white.
Ref<Picture> makePicture(const PictureFormat& format, int width, int height);
/// A picture of the format with the given pixels, 0xAARRGGBB in row-major order.
Ref<Picture> makePicture(const PictureFormat& format, int width, int height, const std::vector<Argb>& pixels);
/// A picture whose words, alpha and padding included, are noise from `seed`.
Ref<Picture> makeNoise(const PictureFormat& format, int width, int height, std::uint32_t seed = 1);

/// The picture's raw words without padding, row by row.
std::vector<std::uint32_t> rawWords(const Picture& picture);

/// Tests deriving from this run once with each format; instantiate with allFormats() and formatName. The host that
/// SetUp opens makes its own pictures in the same format.
class FormatTest : public HostTest, public ::testing::WithParamInterface<PictureFormat> {
  protected:
    void SetUp() override { open(optionsFor(GetParam())); }
};

}  // namespace pxktest
