#include "host/objects/exceptions.h"

#include <utility>

namespace pxkhost {

Exception::Exception(std::string className) : Object(ownKind), className_(std::move(className)) { publish(header_); }

Ref<Exception> Exception::make(std::string className) {
    return Ref<Exception>::adopt(new Exception(std::move(className)));
}

void Exception::dispose() { message = nullptr; }

}  // namespace pxkhost
