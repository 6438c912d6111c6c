#include "support/every_member.h"

#include <array>

#include "support/published_interface.h"

namespace pxk::test {

namespace {

using pxkhost::byRef;
using pxkhost::Host;
using pxkhost::HostException;
using pxkhost::Instance;
using pxkhost::MemoryBlock;
using pxkhost::Picture;
using pxkhost::Ref;
using pxkhost::String;
using pxkhost::Value;
using pxkhost::ValueKind;

using Self = const Ref<Picture>&;

Outcome outcome(bool full) { return full ? Outcome::full : Outcome::nothing; }

template <class Call>
Outcome outcomeOf(Call call) {
    try {
        return outcome(static_cast<bool>(call()));
    } catch (const HostException&) {
        return Outcome::nothing;
    }
}

// A method of a picture that returns a picture.
template <class... Arguments>
MemberCall pictureMethod(const char* declaration, Arguments... arguments) {
    return {declaration,
            [=](Host& host, Self self) {
                return outcomeOf([&] { return host.invoke<Ref<Picture>>(declaration, self, arguments...); });
            },
            true};
}

// A method of a picture that takes another one, for which the same picture serves.
MemberCall channelMethod(const char* declaration) {
    return {declaration,
            [=](Host& host, Self self) {
                return outcomeOf([&] { return host.invoke<Ref<Picture>>(declaration, self, self); });
            },
            true};
}

template <class Result, class... Arguments>
MemberCall question(const char* declaration, Arguments... arguments) {
    return {declaration,
            [=](Host& host, Self self) {
                return outcomeOf([&] {
                    static_cast<void>(host.invoke<Result>(declaration, self, arguments...));
                    return true;
                });
            },
            false};
}

constexpr auto scrollDeclaration =
    "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean";

std::vector<MemberCall> pictureCalls() {
    return {
        question<double>("ColornessPXK(threshold as integer = 10) as double", 10),
        question<bool>("ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", 1,
                       true, true),
        question<bool>("ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", 1,
                       true, true),
        question<bool>(scrollDeclaration, 1, -1, false, true),
        question<bool>("HasMaskPXK as boolean"),
        pictureMethod(
            "ChangeContrastBrightnessAbsolutePXK(ContrastRed as double, ContrastGreen as double, ContrastBlue "
            "as double, BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
            "picture",
            0.5, 0.4, 0.3, 10.0, 20.0, 30.0),
        pictureMethod("ChangeContrastBrightnessLinearPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue "
                      "as double, BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as double) as "
                      "picture",
                      0.5, 0.4, 0.3, 10.0, 20.0, 30.0),
        pictureMethod("ChangeContrastBrightnessAbsolutePXK(Contrast as double, Brightness as double) as picture", 0.5,
                      10.0),
        pictureMethod("ChangeContrastBrightnessLinearPXK(Contrast as double, Brightness as double) as picture", 0.5,
                      10.0),
        pictureMethod("ChangeBrightnessAbsolutePXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue "
                      "as double) as picture",
                      10.0, 20.0, 30.0),
        pictureMethod("ChangeBrightnessLinearPXK(BrightnessRed as double, BrightnessGreen as double, BrightnessBlue as "
                      "double) as picture",
                      10.0, 20.0, 30.0),
        pictureMethod("ChangeBrightnessAbsolutePXK(Brightness as double) as picture", 10.0),
        pictureMethod("ChangeBrightnessLinearPXK(Brightness as double) as picture", 10.0),
        pictureMethod("ChangeContrastPXK(Contrast as double) as picture", 0.5),
        pictureMethod("ChangeContrastPXK(ContrastRed as double, ContrastGreen as double, ContrastBlue as double) as "
                      "picture",
                      0.5, 0.4, 0.3),
        pictureMethod("ChangeCustomPXK(a as double, b as double) as picture", 0.5, 10.0),
        pictureMethod("ChangeCustomPXK(Ra as double, Rb as double, Ga as double, Gb as double, Ba as double, Bb as "
                      "double) as picture",
                      0.5, 10.0, 0.4, 20.0, 0.3, 30.0),
        pictureMethod("InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture", 1, 1,
                      2, 2),
        pictureMethod("InvertPXK as picture"),
        pictureMethod("InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture", 1,
                      1, 2, 2),
        pictureMethod("InvertGrayPXK as picture"),
        pictureMethod("ExtractColorRectangleMaskPXK(left as integer,top as integer,width as integer,height as integer) "
                      "as picture",
                      1, 0, 2, 2),
        pictureMethod("ExtractColorRectangleMaskPXK as picture"),
        pictureMethod("EmbeddedMaskPXK(swap as boolean) as picture", true),
        {"assignment to EmbeddedMaskPXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 host.assign(publishedPictureProperty, self, false, self);
                 return true;
             });
         },
         false},
        question<int>("CountColorPXK(col as color) as integer", 0xFF0000U),
        {"CountColorsPXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 Ref<MemoryBlock> red;
                 Ref<MemoryBlock> blue;
                 Ref<MemoryBlock> green;
                 int count = 0;
                 host.invoke<void>(
                     "CountColorsPXK(byref red as memoryblock, byref blue as memoryblock, byref green as "
                     "memoryblock, byref count as integer)",
                     self, byRef(red), byRef(blue), byRef(green), byRef(count));
                 return count > 0;
             });
         },
         false},
        {"TransformColorsPXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 const Ref<MemoryBlock> table = MemoryBlock::make(256);
                 return host.invoke<Ref<Picture>>(
                     "TransformColorsPXK(red as memoryblock, blue as memoryblock, green as memoryblock, dest as "
                     "picture "
                     "= nil) as picture",
                     self, table, table, table, Ref<Picture>());
             });
         },
         true},
        pictureMethod("ReplaceColorPXK(SearchColor as color, ReplaceWithColor as color) as picture", 0xFF0000U,
                      0x00FF00U),
        pictureMethod("ExtractColorPXK(SearchColor as color, ReplaceWithColor as color, BackGroundColor as color) as "
                      "picture",
                      0xFF0000U, 0x00FF00U, 0x0000FFU),
        pictureMethod("ChangeSaturationPXK(Amount as integer) as picture", 100),
        channelMethod("ReplaceRedChannelPXK(RedChannel as picture) as picture"),
        channelMethod("ReplaceGreenChannelPXK(GreenChannel as picture) as picture"),
        channelMethod("ReplaceBlueChannelPXK(BlueChannel as picture) as picture"),
        {"FindPicturePXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 int x = 0;
                 int y = 0;
                 return host.invoke<bool>(
                     "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, "
                     "StartX as Integer = 0, StartY as Integer = 0, Tolerance as Integer = 3) as "
                     "boolean",
                     self, self, byRef(x), byRef(y), 0, 0, 3);
             });
         },
         false},
        question<bool>("isWhitePXK as boolean"),
        question<bool>("isWhitePXK(left as integer,top as integer,width as integer,height as integer) as boolean", 0, 0,
                       2, 2),
        question<bool>("isBlackPXK as boolean"),
        question<bool>("isBlackPXK(left as integer,top as integer,width as integer,height as integer) as boolean", 0, 0,
                       2, 2),
        question<bool>("isGrayPXK(tolerance as integer = 0) as boolean", 0),
        question<bool>("isGrayPXK(tolerance as integer, left as integer,top as integer,width as integer,height as "
                       "integer) as boolean",
                       3, 0, 0, 2, 2),
    };
}

Outcome renderSamples(Host& host, int outlineWidth) {
    return outcomeOf([&] {
        const Ref<MemoryBlock> samples = MemoryBlock::make(400);
        for (std::size_t i = 0; i < 400; ++i) samples->bytes()[i] = static_cast<std::uint8_t>(i * 7);
        return host.invoke<Ref<Picture>>(publishedGlobalMethods[5], samples, 400, 2, 20, 10, outlineWidth, 0x88B5C4U,
                                         0x274C5AU, 0x203F4EU, 8, true);
    });
}

std::vector<MemberCall> globalCalls() {
    std::vector<MemberCall> calls = {
        {"PicturetoBinaryStringPXK and back",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 const auto string = host.invoke<Ref<String>>("PicturetoBinaryStringPXK(p as picture) as string", self);
                 return host.invoke<Ref<Picture>>("BinaryStringtoPicturePXK(data as String) as Picture", string);
             });
         },
         true},
        {"CombinePicturesPXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 return host.invoke<Ref<Picture>>(
                     "CombinePicturesPXK(red as picture, blue as picture, green as picture) as picture", self, self,
                     self);
             });
         },
         true},
        {"MergePicturePXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 return host.invoke<Ref<Picture>>("MergePicturePXK(source1 as picture, source2 as picture) as picture",
                                                  self, self);
             });
         },
         true},
        {"TintPicturePXK",
         [](Host& host, Self self) {
             return outcomeOf([&] {
                 return host.invoke<Ref<Picture>>(
                     "TintPicturePXK(source as picture, GreyBase as color, SepiaBase as color) as picture", self,
                     0x555555U, 0xFFCC88U);
             });
         },
         true},
    };
    for (const int outlineWidth : {0, 1, 3}) {
        calls.push_back({"RenderSamplesPXK with outline " + std::to_string(outlineWidth),
                         [=](Host& host, Self) { return renderSamples(host, outlineWidth); }, true});
    }
    return calls;
}

// Runs an instance of a class on the picture.
MemberCall classCall(const std::string& className) {
    return {className,
            [=](Host& host, Self self) {
                return outcomeOf([&] {
                    const Ref<Instance> instance = host.newInstance(className);
                    host.setProperty(*instance, "SourcePicture", Value::ofObject(ValueKind::picture, self));
                    const bool ran = host.invoke<bool>(className + ".Run as boolean", instance);
                    const bool made = static_cast<bool>(host.property(*instance, "DestinationPicture").object);
                    host.invoke<void>(className + ".Close", instance);
                    return ran && made;
                });
            },
            true};
}

std::vector<MemberCall> allCalls() {
    std::vector<MemberCall> calls = pictureCalls();
    for (MemberCall& call : globalCalls()) calls.push_back(std::move(call));
    for (const char* name : {"PictureSepiaPXK", "PictureLut3DPXK"}) calls.push_back(classCall(name));
    return calls;
}

}  // namespace

const std::vector<MemberCall>& everyMemberCall() {
    static const std::vector<MemberCall> calls = allCalls();
    return calls;
}

}  // namespace pxk::test
