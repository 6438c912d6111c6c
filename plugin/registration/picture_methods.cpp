// The methods added to the host's class "Picture", in their published order.
//
// The tables are written with plain casts, which the compiler turns into data: nothing runs when the library loads.
#include <iterator>

#include "analysis/colorness.h"
#include "analysis/picture_search.h"
#include "analysis/scrolling.h"
#include "analysis/uniformity.h"
#include "frame/registration_tables.h"
#include "picture/masks.h"
#include "pointops/inversion.h"

namespace pxk {

namespace {

constexpr HostWord plain = 0x40000;

REALmethodDefinition pictureMethods[] = {
    {(void*)ColornessPXK, nullptr, "ColornessPXK(threshold as integer = 10) as double", plain},
    {(void*)ScrollVerticalPXK, nullptr,
     "ScrollVerticalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)ScrollHorizontalPXK, nullptr,
     "ScrollHorizontalPXK(delta as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)ScrollPXK, nullptr,
     "ScrollPXK(deltaX as integer, deltaY as integer, wrap as boolean, scrollmask as boolean) as boolean", plain},
    {(void*)PictureHasMask, nullptr, "HasMaskPXK as boolean", plain},
    {(void*)InvertPicture, nullptr,
     "InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertPicture2, nullptr, "InvertPXK as picture", plain},
    {(void*)InvertGrayPicture, nullptr,
     "InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertGrayPicture2, nullptr, "InvertGrayPXK as picture", plain},
    {(void*)GetEmbededMask, (void*)SetEmbededMask, "EmbeddedMaskPXK(swap as boolean) as picture", plain},
    {(void*)FindPicture, nullptr,
     "FindPicturePXK(pic as picture, byref x as integer, byref y as integer, StartX as Integer = 0, "
     "StartY as Integer = 0, Tolerance as Integer = 3) as boolean",
     plain},
    {(void*)isWhite2, nullptr, "isWhitePXK as boolean", plain},
    {(void*)isWhite, nullptr,
     "isWhitePXK(left as integer,top as integer,width as integer,height as integer) as boolean", plain},
    {(void*)isBlack2, nullptr, "isBlackPXK as boolean", plain},
    {(void*)isBlack, nullptr,
     "isBlackPXK(left as integer,top as integer,width as integer,height as integer) as boolean", plain},
    {(void*)isGray2, nullptr, "isGrayPXK(tolerance as integer = 0) as boolean", plain},
    {(void*)isGray, nullptr,
     "isGrayPXK(tolerance as integer, left as integer,top as integer,width as integer,height as integer) as boolean",
     plain},
};

}  // namespace

REALclassDefinition pictureClass = {
    .version = 13,
    .name = "Picture",
    .methods = pictureMethods,
    .methodCount = std::size(pictureMethods),
    .flags = 4,
};

}  // namespace pxk
