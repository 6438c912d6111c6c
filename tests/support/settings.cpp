#include "support/settings.h"

#include <algorithm>

#include "picture/isa.h"
#include "support/isa_tests.h"

namespace pxk::test {

namespace {

constexpr PixelLayout bitmapLayouts[] = {
    PixelLayout::premultipliedLast, PixelLayout::premultipliedFirst, PixelLayout::last, PixelLayout::first,
    PixelLayout::noneSkipLast,      PixelLayout::noneSkipFirst};

Setting consoleSetting(const std::filesystem::path& plugin) {
    return {plugin, ApplicationKind::console, PixelLayout::gd, PixelLayout::gd};
}

Setting desktopSetting(const std::filesystem::path& plugin, PixelLayout source, PixelLayout result) {
    return {plugin, ApplicationKind::desktop, source, result};
}

void runIn(const Setting& setting, const std::function<void(Host&, const Setting&)>& check) {
    SCOPED_TRACE(setting.name());
    Options options;
    options.plugin = setting.plugin;
    options.application = setting.application;
    if (setting.application == ApplicationKind::desktop)
        options.newPictures = {.layout = setting.result, .rowPadding = 8};
    Host host(options);
    check(host, setting);
    closeCleanly(host);
}

}  // namespace

std::vector<std::filesystem::path> runnablePlugins() {
    std::vector<std::filesystem::path> plugins;
    for (const auto isa : {Isa::baseline, Isa::avx2, Isa::avx512}) {
        if (isa <= processorIsa()) plugins.emplace_back(pluginPath(std::string("PicturePXK-") + nameOf(isa)));
    }
    return plugins;
}

std::string Setting::name() const {
    return plugin.filename().string() + ", " + std::to_string(static_cast<int>(source)) + " to " +
           std::to_string(static_cast<int>(result));
}

Ref<Picture> Setting::makeSource(int width, int height, Random& random) const {
    Ref<Picture> picture = application == ApplicationKind::desktop
                               ? Picture::desktop(width, height, {.layout = source, .rowPadding = 12})
                               : Picture::console(width, height);
    setWords(*picture, random.pixelWords(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)));
    return picture;
}

void forEverySetting(const std::function<void(Host&, const Setting&)>& check) {
    for (const auto& plugin : runnablePlugins()) {
        runIn(consoleSetting(plugin), check);
        for (const PixelLayout source : bitmapLayouts) {
            for (const PixelLayout result : bitmapLayouts) runIn(desktopSetting(plugin, source, result), check);
        }
    }
}

void forConsoleAndDesktop(const std::function<void(Host&, const Setting&)>& check) {
    runIn(consoleSetting(pluginPath()), check);
    runIn(desktopSetting(pluginPath(), PixelLayout::premultipliedLast, PixelLayout::premultipliedFirst), check);
}

void closeCleanly(Host& host) {
    for (const std::string& problem : host.close()) ADD_FAILURE() << problem;
}

void setWords(const Picture& picture, const std::vector<std::uint32_t>& words) {
    const auto width = static_cast<std::size_t>(picture.width());
    for (int y = 0; y < picture.height(); ++y) {
        std::copy_n(words.data() + static_cast<std::size_t>(y) * width, width, picture.row(y));
    }
}

Ref<Picture> pictureOf(const Setting& setting, int width, const std::vector<Colour>& colours) {
    Random unused(0);
    Ref<Picture> picture = setting.makeSource(width, static_cast<int>(colours.size()) / width, unused);
    std::vector<std::uint32_t> words;
    for (const Colour& colour : colours) words.push_back(opaqueWord(setting.sourceFormat(), colour));
    setWords(*picture, words);
    return picture;
}

std::vector<Colour> coloursOf(const Picture& picture) {
    std::vector<Colour> colours;
    for (const std::uint32_t word : rawWords(picture)) {
        colours.push_back(readColour(static_cast<int>(picture.layout()), word));
    }
    return colours;
}

std::uint32_t freshWord(const Setting& setting) {
    return setting.application == ApplicationKind::desktop ? 0xFFFFFFFF : 0;
}

void expectPoints(const Setting& setting, const Picture& source, const Ref<Picture>& result, int left, int top,
                  int right, int bottom, const std::function<Colour(Colour)>& definition) {
    ASSERT_TRUE(result);
    ASSERT_EQ(result->width(), source.width());
    ASSERT_EQ(result->height(), source.height());
    ASSERT_EQ(result->layout(), setting.result);
    for (int y = 0; y < source.height(); ++y) {
        for (int x = 0; x < source.width(); ++x) {
            const bool inside = x >= left && x < right && y >= top && y < bottom;
            const Colour old = readColour(setting.sourceFormat(), source.row(y)[x]);
            const std::uint32_t expected =
                inside ? opaqueWord(static_cast<int>(setting.result), definition(old)) : freshWord(setting);
            ASSERT_EQ(result->row(y)[x], expected) << "pixel (" << x << ", " << y << ")";
        }
    }
}

void expectPoints(const Setting& setting, const Picture& source, const Ref<Picture>& result,
                  const std::function<Colour(Colour)>& definition) {
    expectPoints(setting, source, result, 0, 0, source.width(), source.height(), definition);
}

}  // namespace pxk::test
