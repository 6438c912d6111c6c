// Pixel words in every layout.

#include "host/host_test_support.h"

namespace pxktest {
namespace {

struct LayoutCase {
    PixelLayout layout;
    std::uint32_t word;  ///< what 0x11223344 (alpha, red, green, blue) is in this layout
    std::uint32_t read;  ///< what comes back
};

class LayoutTest : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(LayoutTest, WordAndBack) {
    const auto [layout, word, read] = GetParam();
    EXPECT_EQ(wordFromArgb(layout, 0x11223344u), word);
    EXPECT_EQ(argbFromWord(layout, word), read);
    EXPECT_EQ(argbFromWord(layout, wordFromArgb(layout, 0xFFFFFFFFu)), 0xFFFFFFFFu);
    EXPECT_EQ(argbFromWord(layout, wordFromArgb(layout, 0xFF000000u)), 0xFF000000u);
}

INSTANTIATE_TEST_SUITE_P(AllLayouts, LayoutTest,
                         ::testing::Values(LayoutCase{PixelLayout::premultipliedLast, 0x11443322, 0x11223344},
                                           LayoutCase{PixelLayout::premultipliedFirst, 0x44332211, 0x11223344},
                                           LayoutCase{PixelLayout::last, 0x11443322, 0x11223344},
                                           LayoutCase{PixelLayout::first, 0x44332211, 0x11223344},
                                           LayoutCase{PixelLayout::noneSkipLast, 0xFF443322, 0xFF223344},
                                           LayoutCase{PixelLayout::noneSkipFirst, 0x443322FF, 0xFF223344},
                                           LayoutCase{PixelLayout::gd, 0x77223344, 0x10223344}));

TEST(Layout, GdTransparencyIsTurnedRoundAndWidened) {
    EXPECT_EQ(argbFromWord(PixelLayout::gd, 0x00FFFFFFu), 0xFFFFFFFFu);
    EXPECT_EQ(argbFromWord(PixelLayout::gd, 0x7F000000u), 0u);
    for (std::uint32_t transparency = 0; transparency < 128; ++transparency)
        EXPECT_EQ(wordFromArgb(PixelLayout::gd, argbFromWord(PixelLayout::gd, transparency << 24)), transparency << 24);
}

TEST(Layout, OnesWithoutColourAreRefused) {
    for (const PixelLayout layout : {PixelLayout::none, PixelLayout::alphaOnly}) {
        EXPECT_THROW(argbFromWord(layout, 0), HostError);
        EXPECT_THROW(wordFromArgb(layout, 0), HostError);
    }
}

}  // namespace
}  // namespace pxktest
