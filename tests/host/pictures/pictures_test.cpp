// Pictures: their pixels in every layout, locks, masks and properties.

#include <dlfcn.h>

#include <algorithm>
#include <set>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using pxk::REALpictureDescription;
using testing::Each;
using testing::ElementsAre;

class PictureTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }

    static bool lock(const Picture& picture, std::int32_t type, REALpictureDescription& description) {
        return service<bool(void*, REALpictureDescription*, std::int32_t)>("REALLockPictureDescription")(
            picture.handle(), &description, type);
    }
    static bool lock(const Picture& picture, std::int32_t type) {
        REALpictureDescription description{};
        return lock(picture, type, description);
    }
    static void unlock(const Picture& picture) { service<void(void*)>("unlockPictureDescription")(picture.handle()); }
};

// ---- pixels ----

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

class PictureFormatTest : public FormatTest {
  protected:
    void SetUp() override {
        Options options = optionsFor(GetParam());
        options.entry = [](pxk::HostResolver) {};
        open(options);
    }
};

TEST_P(PictureFormatTest, NewPictureIsOpaqueBlackOrWhite) {
    const Ref<Picture> picture = host().newPicture(5, 3);
    EXPECT_EQ(picture->layout(), GetParam().layout);
    EXPECT_THAT(picture->pixels(), Each(GetParam().isConsole() ? 0xFF000000u : 0xFFFFFFFFu));
    EXPECT_FALSE(picture->hasAlphaChannel());
}

TEST_P(PictureFormatTest, PixelsRoundTrip) {
    const Ref<Picture> picture = makePicture(GetParam(), 3, 2);
    const std::vector<Argb> pixels{0xFF010203, 0xFF040506, 0xFF070809, 0xFF0A0B0C, 0xFF0D0E0F, 0xFFFFEEDD};
    picture->setPixels(pixels);
    EXPECT_EQ(picture->pixels(), pixels);
    EXPECT_EQ(picture->pixel(2, 1), 0xFFFFEEDDu);
    picture->setPixel(1, 0, 0xFF998877);
    EXPECT_EQ(picture->pixel(1, 0), 0xFF998877u);
    EXPECT_EQ(picture->pixel(0, 0), 0xFF010203u);
    picture->fill(0xFF123456);
    EXPECT_THAT(picture->pixels(), Each(0xFF123456u));
}

TEST_P(PictureFormatTest, CopyKeepsColours) {
    const Ref<Picture> picture = makeNoise(GetParam(), 17, 5);
    for (const PictureFormat& format : allFormats()) {
        const Ref<Picture> copy = makePicture(format, 17, 5);
        copyPixels(picture->surface(), copy->surface());
        std::vector<Argb> expected = picture->pixels();
        std::vector<Argb> actual = copy->pixels();
        for (auto* pixels : {&expected, &actual})
            for (Argb& pixel : *pixels) pixel &= 0xFFFFFF;
        EXPECT_EQ(actual, expected) << format.name();
    }
}

TEST_P(PictureFormatTest, RowsArePaddedAsAsked) {
    const Ref<Picture> picture = makePicture(GetParam(), 3, 4);
    if (GetParam().isConsole()) {
        EXPECT_EQ(picture->surface().rows, reinterpret_cast<std::uint32_t* const*>(picture->gd()->tpixels));
    } else {
        EXPECT_EQ(picture->bitmap()->bytesPerRow(), 12 + GetParam().rowPadding);
        EXPECT_EQ(picture->row(1) - picture->row(0), static_cast<std::ptrdiff_t>(3 + GetParam().rowPadding / 4));
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureFormatTest, ::testing::ValuesIn(allFormats()), formatName);

TEST_F(PictureTest, PixelsOutsideAreRefused) {
    const Ref<Picture> picture = Picture::console(3, 2);
    EXPECT_EQ(errorOf([&] { picture->pixel(3, 0); }), "pixel (3, 0) lies outside picture 1 (3 x 2)");
    EXPECT_EQ(errorOf([&] { picture->setPixel(0, -1, 0); }), "pixel (0, -1) lies outside picture 1 (3 x 2)");
    EXPECT_EQ(errorOf([&] { picture->setPixels(std::vector<Argb>(5)); }), "picture 1 (3 x 2) takes 6 pixels, not 5");
}

TEST_F(PictureTest, ConsolePicturesMadeAgainAreBlackAgain) {
    for (int i = 0; i < 20; ++i) {
        const Ref<Picture> one = Picture::console(5, 3);
        const Ref<Picture> two = Picture::console(5, 3);
        ASSERT_NE(one->gd(), two->gd());
        for (const auto& picture : {one, two}) {
            ASSERT_THAT(rawWords(*picture), Each(0u));
            EXPECT_EQ(picture->gd()->thick, one->gd()->thick);
            picture->fill(0x12345678);
            const Ref<Graphics> graphics = Graphics::make(picture);
            graphics->penWidth = 3;
            graphics->drawLine(0, 0, 4, 2);
        }
    }
}

TEST_F(PictureTest, OddPaddingIsRefused) { EXPECT_THROW(Picture::desktop(3, 2, {.rowPadding = 6}), HostError); }

TEST_F(PictureTest, ImpossibleSizesGiveNothing) {
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}}) {
        EXPECT_FALSE(Picture::console(width, height));
        EXPECT_FALSE(Picture::desktop(width, height));
        EXPECT_FALSE(host().newPicture(width, height));
    }
}

TEST_F(PictureTest, SamePixelsWhateverTheLayout) {
    const std::vector<Argb> pixels{0xFF102030, 0xFF405060};
    const Ref<Picture> console = makePicture({}, 2, 1, pixels);
    const Ref<Picture> desktop = makePicture({PixelLayout::last, 8}, 2, 1, pixels);
    EXPECT_TRUE(samePixels(*console, *desktop));
    desktop->setPixel(1, 0, 0xFF405061);
    EXPECT_FALSE(samePixels(*console, *desktop));
    EXPECT_FALSE(samePixels(*console, *makePicture({}, 1, 2, pixels)));
}

// ---- locks ----

TEST_F(PictureTest, ConsoleLockGivesTheGdImage) {
    const Ref<Picture> picture = Picture::console(7, 4);
    REALpictureDescription description{};
    EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    ASSERT_TRUE(lock(*picture, pxk::gdImageType, description));
    EXPECT_EQ(description.type, 10);
    EXPECT_EQ(description.platformImage, picture->gd());
    EXPECT_EQ(description.width, 7);
    EXPECT_EQ(description.height, 4);
    const auto& image = *static_cast<const gdImage*>(description.platformImage);
    EXPECT_EQ(image.pixels, nullptr);
    EXPECT_NE(image.trueColor, 0);
    EXPECT_EQ(picture->locks(), 1);
    unlock(*picture);
    EXPECT_EQ(picture->locks(), 0);
    EXPECT_EQ(picture->timesLocked(), 1);
    EXPECT_EQ(picture->timesRefused(), 1);
}

TEST_F(PictureTest, DesktopLockGivesAContextWithGetters) {
    const Ref<Picture> picture =
        Picture::desktop(7, 4, {.layout = PixelLayout::first, .rowPadding = 20, .bitsPerPixel = 24});
    REALpictureDescription description{};
    EXPECT_FALSE(lock(*picture, pxk::gdImageType));
    ASSERT_TRUE(lock(*picture, pxk::bitmapContextType, description));
    const auto get = [&]<class Result>(const char* name, Result) {
        const auto getter = reinterpret_cast<Result (*)(void*)>(dlsym(RTLD_DEFAULT, name));
        return getter != nullptr ? getter(description.platformImage) : Result{};
    };
    EXPECT_EQ(get("CGBitmapContextGetData", static_cast<void*>(nullptr)), picture->row(0));
    EXPECT_EQ(get("CGBitmapContextGetWidth", std::size_t{}), 7u);
    EXPECT_EQ(get("CGBitmapContextGetHeight", std::size_t{}), 4u);
    EXPECT_EQ(get("CGBitmapContextGetBytesPerRow", std::size_t{}), 48u);
    EXPECT_EQ(get("CGBitmapContextGetBitsPerPixel", std::size_t{}), 24u);
    EXPECT_EQ(get("CGBitmapContextGetAlphaInfo", std::uint32_t{}), 4u);
    unlock(*picture);
}

TEST_F(PictureTest, DrawnOnlyAndRefusingPicturesAreNeverLocked) {
    const Ref<Picture> drawn = Picture::drawnOnly(3, 3);
    EXPECT_FALSE(lock(*drawn, pxk::bitmapContextType));
    EXPECT_FALSE(lock(*drawn, pxk::gdImageType));
    const Ref<Picture> console = Picture::console(3, 3);
    console->refuseLocks(true);
    EXPECT_FALSE(lock(*console, pxk::gdImageType));
    console->refuseLocks(false);
    EXPECT_TRUE(lock(*console, pxk::gdImageType));
    unlock(*console);
}

TEST_F(PictureTest, PaletteLockGivesAPaletteImage) {
    const Ref<Picture> picture = Picture::palette(6, 2);
    REALpictureDescription description{};
    ASSERT_TRUE(lock(*picture, pxk::gdImageType, description));
    const auto& image = *static_cast<const gdImage*>(description.platformImage);
    EXPECT_NE(image.pixels, nullptr);
    EXPECT_EQ(image.trueColor, 0);
    EXPECT_EQ(image.tpixels, nullptr);
    EXPECT_EQ(description.width, 6);
    EXPECT_EQ(description.height, 2);
    unlock(*picture);
}

TEST_F(PictureTest, UnlockWithoutLockIsNamed) {
    const Ref<Picture> picture = Picture::console(3, 2);
    unlock(*picture);
    EXPECT_THAT(host().ledger().takeProblems(), ElementsAre("picture 1 (3 x 2) was unlocked without a lock"));
}

TEST_F(PictureTest, LockLeftBehindIsNamedWhenThePictureEnds) {
    {
        const Ref<Picture> picture = Picture::console(3, 2);
        lock(*picture, pxk::gdImageType);
    }
    EXPECT_THAT(closeAndTakeProblems(), ElementsAre("picture 1 (3 x 2) was left locked 1 times"));
}

TEST_F(PictureTest, LockLeftBehindIsNamedAtClose) {
    const Ref<Picture> picture = Picture::console(3, 2);
    lock(*picture, pxk::gdImageType);
    EXPECT_THAT(closeAndTakeProblems(),
                ElementsAre("picture 1 (3 x 2) was left locked 1 times", "leaked: picture 1 (3 x 2): 1 reference"));
}

TEST_F(PictureTest, LockLeftBehindOnPurposeIsForgiven) {
    const Ref<Picture> picture = Picture::console(3, 2);
    lock(*picture, pxk::gdImageType);
    picture->forgiveLocks();
    EXPECT_EQ(picture->locks(), 0);
}

TEST_F(PictureTest, RefusedLockOnOldHostsNeedsAnUnlock) {
    openBareDesktop(2011.5);
    {
        const Ref<Picture> picture = Picture::console(3, 2);
        EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
        unlock(*picture);
        EXPECT_TRUE(host().ledger().problems().empty());
        EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    }
    EXPECT_THAT(
        host().ledger().takeProblems(),
        ElementsAre("picture 1 (3 x 2): a refused lock was not followed by the unlock that hosts before 2012.0 need"));
}

TEST_F(PictureTest, UnlockOnOldHostsWithoutLocksIsNoProblem) {
    openBare({.version = 2011.5, .missing = {"REALLockPictureDescription"}});
    unlock(*Picture::console(3, 2));
    EXPECT_TRUE(host().ledger().problems().empty());
    openBare({.version = 2012.0, .missing = {"REALLockPictureDescription"}});
    unlock(*Picture::console(3, 2));
    EXPECT_EQ(host().ledger().takeProblems().size(), 1u);
}

TEST_F(PictureTest, RefusedLockOnNewerHostsTakesNoUnlock) {
    openBareDesktop(2012.0);
    const Ref<Picture> picture = Picture::console(3, 2);
    EXPECT_FALSE(lock(*picture, pxk::bitmapContextType));
    unlock(*picture);
    EXPECT_EQ(host().ledger().takeProblems().size(), 1u);
}

// ---- properties, masks, constructor ----

TEST_F(PictureTest, Properties) {
    const Ref<Picture> picture = Picture::drawnOnly(9, 4, true);
    const auto integer = [&](const char* service_name, const char* name) {
        std::int32_t value = -1;
        return service<bool(void*, const char*, std::int32_t*)>(service_name)(picture->handle(), name, &value) ? value
                                                                                                               : -2;
    };
    EXPECT_EQ(integer("REALGetPropValueInteger", "Width"), 9);
    EXPECT_EQ(integer("REALGetPropValueInt", "height"), 4);
    EXPECT_EQ(integer("REALGetPropValueInteger", "Depth"), -2);
    picture->pretendSize(0, -3);
    EXPECT_EQ(integer("REALGetPropValueInteger", "Width"), 0);
    EXPECT_EQ(integer("REALGetPropValueInteger", "Height"), -3);
    host().deny("Picture.Width");
    EXPECT_EQ(integer("REALGetPropValueInteger", "Width"), -2);
    EXPECT_EQ(integer("REALGetPropValueInteger", "Height"), -3);

    bool alpha = false;
    const auto getBoolean = service<bool(void*, const char*, bool*)>("REALGetPropValueBool");
    EXPECT_TRUE(getBoolean(picture->handle(), "HasAlphaChannel", &alpha));
    EXPECT_TRUE(alpha);
    EXPECT_FALSE(getBoolean(picture->handle(), "Width", &alpha));
    host().deny("Picture.HasAlphaChannel");
    EXPECT_FALSE(getBoolean(picture->handle(), "HasAlphaChannel", &alpha));
}

TEST_F(PictureTest, TypeCodes) {
    const auto type = service<std::int32_t(void*)>("PluginPictureGetType");
    EXPECT_EQ(type(Picture::console(1, 1)->handle()), 10);
    const Ref<Picture> desktop = Picture::desktop(1, 1);
    EXPECT_EQ(type(desktop->handle()), 8);
    EXPECT_EQ(type(Picture::drawnOnly(1, 1)->handle()), 3);
    desktop->setTypeCode(1);
    EXPECT_EQ(type(desktop->handle()), 1);
}

TEST_F(PictureTest, MaskIsHandedOutWithAReference) {
    const auto getMask = service<REALpictureStruct*(void*, bool)>("REALGetPictureMask");
    const Ref<Picture> picture = Picture::console(2, 2);
    EXPECT_EQ(getMask(picture->handle(), false), nullptr);
    const Ref<Picture> mask = Picture::console(2, 2);
    picture->setMask(mask);
    EXPECT_EQ(mask->references(), 2);
    EXPECT_EQ(getMask(picture->handle(), false), mask->handle());
    EXPECT_EQ(mask->references(), 3);
    mask->release();
}

TEST_F(PictureTest, MaskIsMadeWhenAskedFor) {
    const auto getMask = service<REALpictureStruct*(void*, bool)>("REALGetPictureMask");
    const Ref<Picture> picture = Picture::console(3, 2);
    const Ref<Picture> mask = Ref<Picture>::adopt(fromHandle<Picture>(getMask(picture->handle(), true), "test"));
    EXPECT_EQ(mask.get(), picture->mask().get());
    EXPECT_THAT(mask->pixels(), Each(0xFF000000u));
}

TEST_F(PictureTest, MaskSetter) {
    const auto load = service<void*(void*, const char*)>("REALLoadObjectMethod");
    const Ref<Picture> picture = Picture::console(2, 2);
    const Ref<Picture> mask = Picture::console(2, 2);
    const auto assign =
        reinterpret_cast<void (*)(void*, void*)>(load(picture->handle(), "mask(assigns newMask As Picture)"));
    ASSERT_NE(assign, nullptr);
    assign(picture->handle(), mask->handle());
    EXPECT_EQ(picture->mask().get(), mask.get());
    EXPECT_EQ(mask->references(), 2);
    assign(picture->handle(), nullptr);
    EXPECT_FALSE(picture->mask());
    EXPECT_EQ(mask->references(), 1);
}

TEST_F(PictureTest, ObjectMethodsCanBeDeniedOneByOne) {
    const auto load = service<void*(void*, const char*)>("REALLoadObjectMethod");
    const Ref<Picture> picture = Picture::console(2, 2);
    const char* const constructor = "Constructor(width as integer, height as integer)";
    EXPECT_NE(load(picture->handle(), constructor), nullptr);
    host().deny("Picture.Constructor");
    EXPECT_EQ(load(picture->handle(), constructor), nullptr);
    EXPECT_NE(load(picture->handle(), "Mask(assigns newMask As Picture)"), nullptr);
    EXPECT_EQ(load(picture->handle(), "Rotate(angle as double)"), nullptr);
    EXPECT_EQ(load(picture->handle(), "DrawPicture(Image as Picture)"), nullptr);
    host().allow("Picture.Constructor");
    EXPECT_NE(load(picture->handle(), constructor), nullptr);
}

Ref<Picture> constructed(pxk::HostResolver resolver, int width, int height) {
    auto* const handle =
        reinterpret_cast<REALpictureStruct* (*)(const char*)>(resolver("PluginNewInstance"))("Picture");
    const auto load = reinterpret_cast<void* (*)(void*, const char*)>(resolver("REALLoadObjectMethod"));
    reinterpret_cast<void (*)(void*, std::int32_t, std::int32_t)>(
        load(handle, "Constructor(width as integer, height as integer)"))(handle, width, height);
    return Ref<Picture>::adopt(fromHandle<Picture>(handle, "test"));
}

TEST_F(PictureTest, ConstructorOnConsoles) {
    const Ref<Picture> picture = constructed(resolver_, 4, 3);
    EXPECT_EQ(picture->layout(), PixelLayout::gd);
    EXPECT_TRUE(picture->hasAlphaChannel());
    EXPECT_THAT(rawWords(*picture), Each(0x7F000000u));
    EXPECT_EQ(picture->typeCode(), 10);
}

TEST_F(PictureTest, ConstructorOnDesktops) {
    openBareDesktop();
    host().setNewPictures({.layout = PixelLayout::last, .rowPadding = 8});
    const Ref<Picture> picture = constructed(resolver_, 4, 3);
    EXPECT_EQ(picture->layout(), PixelLayout::last);
    EXPECT_EQ(picture->bitmap()->bytesPerRow(), 24u);
    EXPECT_TRUE(picture->hasAlphaChannel());
    EXPECT_THAT(rawWords(*picture), Each(0u));
}

TEST_F(PictureTest, ConstructorRefusesImpossibleSizesAndASecondTime) {
    const Ref<Picture> none = constructed(resolver_, 0, 3);
    EXPECT_EQ(none->width(), 0);
    EXPECT_FALSE(lock(*none, pxk::gdImageType));
    const Ref<Picture> picture = constructed(resolver_, 4, 3);
    EXPECT_FALSE(picture->construct(9, 9));
    EXPECT_EQ(picture->width(), 4);
}

TEST_F(PictureTest, NewPictureService) {
    const auto make = service<REALpictureStruct*(std::int32_t, std::int32_t, std::int32_t)>("newPicture");
    const Ref<Picture> picture = Ref<Picture>::adopt(fromHandle<Picture>(make(4, 3, 32), "test"));
    EXPECT_EQ(picture->references(), 1);
    EXPECT_EQ(picture->width(), 4);
    EXPECT_EQ(make(0, 3, 32), nullptr);
    EXPECT_EQ(make(4, 3, 8), nullptr);
}

TEST_F(PictureTest, BuildPictureFromBuffer) {
    const std::vector<std::uint32_t> words{1, 2, 99, 3, 4, 99};
    using Build = REALpictureStruct*(std::int32_t, std::int32_t, std::int32_t, const void*, std::int32_t);
    const auto build = service<Build>("REALBuildPictureFromBuffer");
    const Ref<Picture> picture = Ref<Picture>::adopt(fromHandle<Picture>(build(2, 2, 1, words.data(), 12), "test"));
    EXPECT_THAT(rawWords(*picture), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(build(2, 2, 0, words.data(), 12), nullptr);
    EXPECT_EQ(build(2, 2, 1, nullptr, 12), nullptr);
}

TEST_F(PictureTest, CacheClearsAreCounted) {
    const Ref<Picture> picture = Picture::console(2, 2);
    service<void(void*)>("REALPictureClearCache")(picture->handle());
    service<void(void*)>("REALPictureClearCache")(picture->handle());
    EXPECT_EQ(picture->cacheClears(), 2);
}

TEST_F(PictureTest, NoiseIsTheSameForTheSameSeedAndDiffersOtherwise) {
    for (const PictureFormat& format : allFormats()) {
        EXPECT_EQ(rawWords(*makeNoise(format, 20, 10, 5)), rawWords(*makeNoise(format, 20, 10, 5)));
        EXPECT_NE(rawWords(*makeNoise(format, 20, 10, 5)), rawWords(*makeNoise(format, 20, 10, 6)));
    }
}

}  // namespace
}  // namespace pxktest
