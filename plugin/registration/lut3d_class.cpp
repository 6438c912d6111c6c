// The class "PictureLut3DPXK".
#include <cstddef>
#include <iterator>

#include "channels/lut3d.h"
#include "frame/registration_tables.h"

namespace pxk {

namespace {

constexpr HostWord plain = 0x40000;

REALproperty properties[] = {
    {nullptr, "SourcePicture", "Picture", plain, (void*)-1, (void*)-1, offsetof(Lut3DClassData, SourcePicture)},
    {nullptr, "DestinationPicture", "Picture", plain, (void*)-1, (void*)-1,
     offsetof(Lut3DClassData, DestinationPicture)},
    {nullptr, "MaxX", "Integer", plain, (void*)-1, (void*)-1, offsetof(Lut3DClassData, MaxX)},
    {nullptr, "MinX", "Integer", plain, (void*)-1, (void*)-1, offsetof(Lut3DClassData, MinX)},
    {nullptr, "MaxY", "Integer", plain, (void*)-1, (void*)-1, offsetof(Lut3DClassData, MaxY)},
    {nullptr, "MinY", "Integer", plain, (void*)-1, (void*)-1, offsetof(Lut3DClassData, MinY)},
};

REALmethodDefinition methods[] = {
    {(void*)lut3d::Lut3DClassDestructor, nullptr, "Close", plain},
    {(void*)lut3d::Run, nullptr, "Run as boolean", plain},
    {(void*)lut3d::GetPMX, (void*)lut3d::SetPMX, "Table(r as UInt32, g as UInt32, b as UInt32, x as UInt32) as double",
     plain},
};

}  // namespace

REALclassDefinition Lut3DClass = {
    .version = 13,
    .name = "PictureLut3DPXK",
    .dataSize = sizeof(Lut3DClassData),
    .constructor = (void*)lut3d::Lut3DClassConstructor,
    .destructor = (void*)lut3d::Lut3DClassDestructor,
    .properties = properties,
    .propertyCount = std::size(properties),
    .methods = methods,
    .methodCount = std::size(methods),
    .flags = 4,
};

}  // namespace pxk
