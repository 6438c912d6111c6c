/// The host's strings: bytes with an encoding.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/objects/object.h"

namespace pxkhost {

/// The host's encoding numbers.
namespace encoding {
inline constexpr std::uint32_t macRoman = 0;
inline constexpr std::uint32_t utf16 = 0x0100;
inline constexpr std::uint32_t latin1 = 0x0201;
inline constexpr std::uint32_t windowsLatin1 = 0x0500;
inline constexpr std::uint32_t ascii = 0x0600;
inline constexpr std::uint32_t unknown = 0xFFFF;
inline constexpr std::uint32_t utf8 = 0x08000100;
inline constexpr std::uint32_t utf32 = 0x0C000100;
}  // namespace encoding

class String final : public Object {
  public:
    static Ref<String> make(std::string bytes, std::uint32_t encoding = encoding::utf8);

    /// The bytes as they are.
    const std::string& bytes() const { return bytes_; }
    /// The same for callers that know no const.
    void* pointer() { return bytes_.data(); }
    std::uint32_t encoding() const { return encoding_; }
    void setEncoding(std::uint32_t encoding) { encoding_ = encoding; }

    /// A new string of the same text in another encoding. UTF-16 and UTF-32 are in the machine's byte order. Text of
    /// unknown encoding, or into it, keeps its bytes. Characters that the target lacks become "?".
    Ref<String> converted(std::uint32_t target) const;

    /// The text as UTF-8.
    std::string text() const { return converted(encoding::utf8)->bytes(); }

    REALstringStruct* handle() const { return static_cast<REALstringStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::string;

  private:
    explicit String(std::string bytes, std::uint32_t encoding);
    void dispose() override;
    std::string details() const override;

    pxk::REALstringRecord record_{};
    std::string bytes_;
    std::uint32_t encoding_;
};

}  // namespace pxkhost
