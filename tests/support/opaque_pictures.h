/// Pictures of given colours, every pixel opaque.
#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "support/settings.h"

namespace pxk::test {

/// The format code of a picture.
inline int formatOf(const Picture& picture) { return static_cast<int>(picture.layout()); }

/// Expects a picture of the size that holds the colours, row by row, every pixel opaque.
inline void expectOpaque(const Ref<Picture>& result, int width, int height, const std::vector<Colour>& colours) {
    ASSERT_TRUE(result);
    ASSERT_EQ(result->width(), width);
    ASSERT_EQ(result->height(), height);
    const std::vector<std::uint32_t> words = rawWords(*result);
    ASSERT_EQ(words.size(), colours.size());
    for (std::size_t i = 0; i < words.size(); ++i) {
        ASSERT_EQ(words[i], opaqueWord(formatOf(*result), colours[i])) << "pixel " << i << " of rows of " << width;
    }
}

/// A picture of one colour.
inline Ref<Picture> plainPicture(const Setting& setting, int width, int height, Colour colour) {
    return pictureOf(setting, width,
                     std::vector<Colour>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), colour));
}

/// A desktop picture of any layout, with random words and padded rows.
inline Ref<Picture> noiseIn(PixelLayout layout, int width, int height, Random& random) {
    return Setting{{}, ApplicationKind::desktop, layout, layout}.makeSource(width, height, random);
}

inline constexpr PixelLayout desktopLayouts[] = {
    PixelLayout::premultipliedLast, PixelLayout::premultipliedFirst, PixelLayout::last, PixelLayout::first,
    PixelLayout::noneSkipLast,      PixelLayout::noneSkipFirst};

/// Opens a desktop host on every runnable plugin and runs `check` in it.
inline void forEveryDesktop(const std::function<void(Host&)>& check) {
    for (const auto& plugin : runnablePlugins()) {
        SCOPED_TRACE(plugin.filename().string());
        Options options;
        options.plugin = plugin;
        options.application = ApplicationKind::desktop;
        Host host(options);
        check(host);
        closeCleanly(host);
    }
}

}  // namespace pxk::test
