/// The data of instances of the plugin's own classes.
#pragma once

#include <utility>

#include "frame/host_services.h"

namespace pxk {

/// An instance's data: where the host said, at registration, that the data of instances of this class lies.
template <class Data>
Data& instanceData(REALobjectStruct* instance, const REALclassDefinition& registered) {
    return *reinterpret_cast<Data*>(reinterpret_cast<unsigned char*>(instance) + registered.hostWord);
}

/// Releases the reference in a field, which is nil from before then on; nil stays nil.
template <class Object>
void releaseField(Object*& field) {
    if (field != nullptr) REALUnlockObject(std::exchange(field, nullptr));
}

}  // namespace pxk
