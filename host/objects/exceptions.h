/// Exceptions of the host language.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "host/objects/object.h"
#include "host/objects/strings.h"

namespace pxkhost {

class Exception final : public Object {
  public:
    static Ref<Exception> make(std::string className);

    Ref<String> message;            ///< the property "Message"; may be nil
    std::int32_t errorNumber = -1;  ///< the property "ErrorNumber"; -1 until it is set

    const std::string& className() const { return className_; }

    static constexpr Kind ownKind = Kind::exception;

  private:
    explicit Exception(std::string className);
    void dispose() override;
    std::string details() const override { return className_; }

    pxk::REALobjectHeader header_{};
    std::string className_;
};

/// The exception that a call raised, to be thrown when the call returns.
class PendingException {
  public:
    /// Called by the service that raises; a second exception replaces the first.
    void raise(Ref<Exception> exception);

    /// The pending exception, which is then forgotten; empty when there is none.
    Ref<Exception> take() { return std::exchange(exception_, nullptr); }

    /// Throws the pending exception, if any, as HostException.
    void throwIfAny() {
        if (exception_) [[unlikely]]
            throwNow();
    }

    /// How many were raised so far.
    int timesRaised() const { return timesRaised_; }

  private:
    [[noreturn]] void throwNow();

    Ref<Exception> exception_;
    int timesRaised_ = 0;
};

}  // namespace pxkhost
