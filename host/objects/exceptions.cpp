#include "host/objects/exceptions.h"

#include <utility>

#include "host/objects/errors.h"

namespace pxkhost {

Exception::Exception(std::string className) : Object(ownKind), className_(std::move(className)) { publish(header_); }

Ref<Exception> Exception::make(std::string className) {
    return Ref<Exception>::adopt(new Exception(std::move(className)));
}

void Exception::dispose() { message = nullptr; }

void PendingException::raise(Ref<Exception> exception) {
    ++timesRaised_;
    exception_ = std::move(exception);
}

void PendingException::throwNow() {
    const Ref<Exception> exception = take();
    throw HostException(exception->className(), exception->message ? exception->message->text() : "",
                        exception->errorNumber);
}

}  // namespace pxkhost
