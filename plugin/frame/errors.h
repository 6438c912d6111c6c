/// Errors as a program in the host's language sees them: host exceptions, raised when the member returns.
#pragma once

namespace pxk {

/// Raises a host exception of class `className`, or a "RuntimeException" when the host does not know that class. The
/// member still returns normally. `message` is UTF-8 and copied before anything else; nil leaves the "Message" nil.
/// The exception's "ErrorNumber" is always 0: the two trailing arguments are accepted and ignored.
void RaiseException(const char* className, const char* message, unsigned long errorNumber = 0, int = 0);

/// To be called while an exception is being handled: raises the corresponding host exception.
void raiseCurrentException();

/// Runs `work` so that no exception leaves it: what is thrown becomes a host exception, and the result 0, nil or false.
template <class Work>
auto guarded(Work work) -> decltype(work()) {
    try {
        return work();
    } catch (...) {
        raiseCurrentException();
        return {};
    }
}

}  // namespace pxk
