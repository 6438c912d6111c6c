/// New host pictures.
#pragma once

#include <cstdint>

#include "frame/host_services.h"

namespace pxk {

/// A new 32-bit picture without alpha channel, as the host makes it; or nil.
HostReference<REALpictureStruct> makeOpaquePicture(std::int32_t width, std::int32_t height);

/// A new picture with an alpha channel. Nil on hosts before 2011.04, which have none, and when the host makes none.
HostReference<REALpictureStruct> makeAlphaPicture(std::int32_t width, std::int32_t height);

/// A private copy of a picture that cannot be locked, drawn by the host into a new picture; or nil. The source's mask
/// is taken off while it is drawn, so that the copy holds the bare colours, and put back afterwards.
HostReference<REALpictureStruct> copyByDrawing(REALpictureStruct* source);

/// Whether the picture says that it has an alpha channel.
bool hasAlphaChannelProperty(REALpictureStruct* picture);

}  // namespace pxk
