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

/// Gives the reference in a field back and leaves nil there; a field that holds nil stays so.
template <class Object>
void releaseField(Object*& field) {
    if (field != nullptr) REALUnlockObject(std::exchange(field, nullptr));
}

}  // namespace pxk
