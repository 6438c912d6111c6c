/// What can go wrong in the host, as C++ exceptions.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace pxkhost {

/// The host was asked for something that it cannot do; what() says what was wrong and what would be right.
class HostError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// An exception of the host language that a member raised, as a program would catch it.
class HostException : public std::runtime_error {
  public:
    HostException(std::string exceptionClass, std::string exceptionMessage, std::int32_t number)
        : std::runtime_error(exceptionClass + ": " + exceptionMessage),
          className(std::move(exceptionClass)),
          message(std::move(exceptionMessage)),
          errorNumber(number) {}

    std::string className;     ///< for example "NilObjectException"
    std::string message;       ///< the property "Message", as UTF-8; empty when it is nil
    std::int32_t errorNumber;  ///< the property "ErrorNumber"
};

}  // namespace pxkhost
