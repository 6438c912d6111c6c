// The methods added to the host's class "Picture", in their published order.
//
// The tables are written with plain casts, which the compiler turns into data: nothing runs when the library loads.
#include <iterator>

#include "frame/registration_tables.h"
#include "pointops/inversion.h"

namespace pxk {

namespace {

constexpr HostWord plain = 0x40000;

REALmethodDefinition pictureMethods[] = {
    {(void*)InvertPicture, nullptr,
     "InvertPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertPicture2, nullptr, "InvertPXK as picture", plain},
    {(void*)InvertGrayPicture, nullptr,
     "InvertGrayPXK(left as integer,top as integer,width as integer,height as integer) as picture", plain},
    {(void*)InvertGrayPicture2, nullptr, "InvertGrayPXK as picture", plain},
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
