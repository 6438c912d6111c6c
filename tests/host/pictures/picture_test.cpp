// Pictures: their pixels in every layout, masks and properties.

#include <algorithm>
#include <set>

#include "host/host_test_support.h"

namespace pxktest {
namespace {

using testing::Each;
using testing::ElementsAre;

class PictureTest : public ServiceTest {
  protected:
    void SetUp() override { openBare(); }
};

// ---- pixels ----

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
    pxk::REALpictureDescription description{};
    EXPECT_FALSE(none->lock(description, pxk::gdImageType, host().lockRules()));
    const Ref<Picture> picture = constructed(resolver_, 4, 3);
    EXPECT_FALSE(picture->constructConsole(9, 9));
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
