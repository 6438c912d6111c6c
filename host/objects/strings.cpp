#include "host/objects/strings.h"

#include <iconv.h>

#include <algorithm>
#include <utility>

namespace pxkhost {

namespace {

/// The name that iconv knows an encoding by; nil for unknown encodings.
const char* iconvName(std::uint32_t encoding) {
    switch (encoding) {
        case encoding::macRoman:
            return "MACINTOSH";
        case encoding::utf16:
            return "UTF-16LE";
        case encoding::latin1:
            return "ISO-8859-1";
        case encoding::windowsLatin1:
            return "CP1252";
        case encoding::ascii:
            return "ASCII";
        case encoding::utf8:
            return "UTF-8";
        case encoding::utf32:
            return "UTF-32LE";
        default:
            return nullptr;
    }
}

std::size_t unitSize(std::uint32_t encoding) {
    if (encoding == encoding::utf16) return 2;
    if (encoding == encoding::utf32) return 4;
    return 1;
}

class Converter {
  public:
    Converter(const char* from, const char* to) : descriptor_(iconv_open(to, from)) {}
    ~Converter() {
        if (isOpen()) iconv_close(descriptor_);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return descriptor_ != reinterpret_cast<iconv_t>(-1); }

    /// Converts what it can from the front of `input`, appends it to `output`, and drops it from `input`. Stops before
    /// the first character that cannot be converted.
    void convert(std::string_view& input, std::string& output) {
        // iconv only reads from here.
        char* source = const_cast<char*>(input.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
        std::size_t left = input.size();
        std::string buffer(left * 4 + 16, '\0');
        char* target = buffer.data();
        std::size_t room = buffer.size();
        iconv(descriptor_, &source, &left, &target, &room);
        output.append(buffer.data(), buffer.size() - room);
        input.remove_prefix(input.size() - left);
    }

  private:
    iconv_t descriptor_;
};

/// Bytes of the first character of `text`, which the converter could not take.
std::size_t refusedLength(std::string_view text, std::uint32_t encoding) {
    std::size_t length = unitSize(encoding);
    if (encoding == encoding::utf8)
        while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) ++length;
    return std::min(length, text.size());
}

}  // namespace

String::String(std::string bytes, std::uint32_t encoding)
    : Object(ownKind), bytes_(std::move(bytes)), encoding_(encoding) {
    publish(record_.header);
    record_.length = static_cast<std::int32_t>(bytes_.size());
    record_.bytes = bytes_.empty() ? nullptr : bytes_.data();
}

Ref<String> String::make(std::string bytes, std::uint32_t encoding) {
    return Ref<String>::adopt(new String(std::move(bytes), encoding));
}

void String::dispose() { std::string().swap(bytes_); }

std::string String::details() const { return std::to_string(record_.length) + " bytes"; }

Ref<String> String::converted(std::uint32_t target) const {
    const char* const from = iconvName(encoding_);
    const char* const to = iconvName(target);
    if (from == nullptr || to == nullptr || encoding_ == target) return make(bytes_, target);

    Converter converter(from, to);
    if (!converter.isOpen()) return make(bytes_, target);
    Converter replacement("ASCII", to);
    std::string output;
    std::string_view rest = bytes_;
    while (!rest.empty()) {
        converter.convert(rest, output);
        if (rest.empty()) break;
        std::string_view question = "?";
        replacement.convert(question, output);
        rest.remove_prefix(refusedLength(rest, encoding_));
    }
    return make(std::move(output), target);
}

}  // namespace pxkhost
