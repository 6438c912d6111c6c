/// Exceptions of the host language.
#pragma once

#include <cstdint>
#include <string>

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

}  // namespace pxkhost
