#include "support/host_fixture.h"

#include <cstdlib>
#include <random>

namespace pxktest {

Host& HostTest::open(Options options) {
    if (host_) close();
    if (options.plugin.empty() && options.entry == nullptr) options.plugin = pluginPath();
    host_ = std::make_unique<Host>(std::move(options));
    return *host_;
}

Host& HostTest::openConsole(double version) {
    return open({.version = version, .application = ApplicationKind::console});
}

Host& HostTest::openDesktop(double version, const BitmapFormat& newPictures) {
    return open({.version = version, .application = ApplicationKind::desktop, .newPictures = newPictures});
}

std::vector<std::string> HostTest::closeAndTakeProblems() {
    auto problems = host_->close();
    host_.reset();
    return problems;
}

void HostTest::close() {
    for (const std::string& problem : closeAndTakeProblems()) ADD_FAILURE() << problem;
}

void HostTest::TearDown() {
    if (host_) close();
}

std::string pluginPath() {
    const char* chosen = std::getenv("PXK_TEST_PLUGIN");
    return pluginPath(chosen != nullptr ? chosen : "PicturePXK");
}

std::string pluginPath(const std::string& name) { return PXK_PLUGIN_DIR "/" + name + PXK_MODULE_SUFFIX; }

std::string PictureFormat::name() const {
    if (isConsole()) return "gd";
    const std::string plain = "layout" + std::to_string(static_cast<unsigned>(layout));
    return rowPadding == 0 ? plain : plain + "padded" + std::to_string(rowPadding);
}

std::vector<PictureFormat> allFormats() {
    std::vector<PictureFormat> formats{{PixelLayout::gd, 0}};
    for (std::uint32_t layout = 1; layout <= 6; ++layout)
        for (std::size_t padding : {std::size_t{0}, std::size_t{12}})
            formats.push_back({static_cast<PixelLayout>(layout), padding});
    return formats;
}

std::vector<PictureFormat> oneOfEachFamily() {
    return {{PixelLayout::gd, 0}, {PixelLayout::premultipliedLast, 4}, {PixelLayout::premultipliedFirst, 12}};
}

void PrintTo(const PictureFormat& format, std::ostream* stream) { *stream << format.name(); }

std::string formatName(const ::testing::TestParamInfo<PictureFormat>& info) { return info.param.name(); }

Options optionsFor(const PictureFormat& format, double version) {
    if (format.isConsole()) return {.version = version, .application = ApplicationKind::console};
    return {.version = version,
            .application = ApplicationKind::desktop,
            .newPictures = {.layout = format.layout, .rowPadding = format.rowPadding}};
}

Ref<Picture> makePicture(const PictureFormat& format, int width, int height) {
    if (format.isConsole()) return Picture::console(width, height);
    return Picture::desktop(width, height, {.layout = format.layout, .rowPadding = format.rowPadding});
}

Ref<Picture> makePicture(const PictureFormat& format, int width, int height, const std::vector<Argb>& pixels) {
    Ref<Picture> picture = makePicture(format, width, height);
    picture->setPixels(pixels);
    return picture;
}

Ref<Picture> makeNoise(const PictureFormat& format, int width, int height, std::uint32_t seed) {
    Ref<Picture> picture = makePicture(format, width, height);
    std::mt19937 random(seed);
    const std::size_t words = picture->surface().rows != nullptr ? static_cast<std::size_t>(width)
                                                                 : picture->surface().rowBytes / sizeof(std::uint32_t);
    // libgd keeps 7 bits of transparency: the top bit is never set in its pictures.
    const std::uint32_t allowed = format.isConsole() ? 0x7FFFFFFFu : 0xFFFFFFFFu;
    for (int y = 0; y < height; ++y)
        for (std::size_t x = 0; x < words; ++x) picture->row(y)[x] = static_cast<std::uint32_t>(random()) & allowed;
    return picture;
}

std::vector<std::uint32_t> rawWords(const Picture& picture) {
    std::vector<std::uint32_t> words;
    for (int y = 0; y < picture.height(); ++y)
        words.insert(words.end(), picture.row(y), picture.row(y) + picture.width());
    return words;
}

}  // namespace pxktest
