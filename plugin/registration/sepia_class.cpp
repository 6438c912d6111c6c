// The class "PictureSepiaPXK".
#include <cstddef>
#include <iterator>

#include "frame/registration_tables.h"
#include "pointops/sepia.h"

namespace pxk {

namespace {

constexpr HostWord pictureFlags = 0x40002;
constexpr HostWord numberFlags = 6;
constexpr HostWord methodFlags = 4;

// The published size where words have 32 bits.
constexpr HostWord dataSize = sizeof(void*) == 4 ? 64 : sizeof(SepiaClassData);

REALproperty properties[] = {
    {nullptr, "SourcePicture", "Picture", pictureFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, SourcePicture)},
    {nullptr, "DestinationPicture", "Picture", pictureFlags, (void*)-1, (void*)-1,
     offsetof(SepiaClassData, DestinationPicture)},
    {nullptr, "MaxX", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, MaxX)},
    {nullptr, "MinX", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, MinX)},
    {nullptr, "MaxY", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, MaxY)},
    {nullptr, "MinY", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, MinY)},
    {nullptr, "SepiaRed", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, SepiaRed)},
    {nullptr, "SepiaGreen", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, SepiaGreen)},
    {nullptr, "SepiaBlue", "Integer", numberFlags, (void*)-1, (void*)-1, offsetof(SepiaClassData, SepiaBlue)},
    // Blue has the green weight, and green the blue one: deliberate, kept for compatibility.
    {nullptr, "FactorRed", "Double", numberFlags, (void*)sepia::GetFactorR, (void*)sepia::SetFactorR, 0},
    {nullptr, "FactorBlue", "Double", numberFlags, (void*)sepia::GetFactorG, (void*)sepia::SetFactorG, 0},
    {nullptr, "FactorGreen", "Double", numberFlags, (void*)sepia::GetFactorB, (void*)sepia::SetFactorB, 0},
};

REALmethodDefinition methods[] = {
    {(void*)sepia::PictureSepiaClassDestructor, nullptr, "Close", methodFlags},
    {(void*)sepia::Run, nullptr, "Run as boolean", methodFlags},
};

}  // namespace

REALclassDefinition PictureSepiaClass = {
    .version = 13,
    .name = "PictureSepiaPXK",
    .dataSize = dataSize,
    .constructor = (void*)sepia::PictureSepiaClassConstructor,
    .destructor = (void*)sepia::PictureSepiaClassDestructor,
    .properties = properties,
    .propertyCount = std::size(properties),
    .methods = methods,
    .methodCount = std::size(methods),
    .flags = 4,
};

}  // namespace pxk
