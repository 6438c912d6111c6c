#include "channels/replace_channel.h"

#include "channels/combine_channels.h"
#include "frame/errors.h"

namespace pxk {

namespace {

enum class Channel : unsigned char { red, green, blue };

REALpictureStruct* replaceChannel(REALpictureStruct* self, REALpictureStruct* channelPicture, Channel channel) {
    if (channelPicture == nullptr) {
        RaiseException("NilObjectException", "The channel picture is nil.");
        return nullptr;
    }
    PictureReader source;
    PictureReader replacement;
    PictureWriter result;
    if (!source.open(self) || !replacement.open(channelPicture)) return nullptr;
    if (replacement.height < source.height || replacement.width < source.width) return nullptr;
    if (!result.NewPictureWriter(source.width, source.height)) return nullptr;
    const auto giverOf = [&](Channel wanted) -> const PictureReader& {
        return wanted == channel ? replacement : source;
    };
    combineChannels(giverOf(Channel::red), giverOf(Channel::green), giverOf(Channel::blue), result);
    return result.RenderPictureWriter();
}

}  // namespace

REALpictureStruct* ReplaceRedChannel(REALpictureStruct* self, REALpictureStruct* redChannel) {
    return replaceChannel(self, redChannel, Channel::red);
}

REALpictureStruct* ReplaceGreenChannel(REALpictureStruct* self, REALpictureStruct* greenChannel) {
    return replaceChannel(self, greenChannel, Channel::green);
}

REALpictureStruct* ReplaceBlueChannel(REALpictureStruct* self, REALpictureStruct* blueChannel) {
    return replaceChannel(self, blueChannel, Channel::blue);
}

}  // namespace pxk
