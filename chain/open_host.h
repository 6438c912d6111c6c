/// The reference host with owning handles and exceptions, on top of its C interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "chain/raster.h"
#include "host/include/pxkhost.h"

namespace pxk::chain {

/// One reference to an object of the host, or none.
class Object {
  public:
    Object() = default;
    /// Takes over the reference that the caller holds.
    explicit Object(pxk_object* owned) : handle_(owned) {}
    Object(const Object& other);
    Object(Object&& other) noexcept;
    Object& operator=(Object other) noexcept;
    ~Object();

    /// The handle, without a reference of its own.
    pxk_object* handle() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

  private:
    pxk_object* handle_ = nullptr;
};

/// A value of the host's language; one of an object kind holds a reference, or nil.
class Value {
  public:
    Value() = default;
    static Value integer(std::int32_t value);
    static Value real(double value);
    static Value boolean(bool value);
    static Value color(std::uint32_t rgb);
    static Value object(pxk_kind kind, Object object);
    /// The value that a variable of this kind starts with: zero, false or nil.
    static Value initial(pxk_kind kind);
    /// Takes over the reference in `value` that the caller holds.
    static Value adopt(const pxk_value& value);

    pxk_kind kind() const { return value_.kind; }
    bool isObject() const { return value_.kind >= PXK_PICTURE; }
    bool isNil() const { return isObject() && !object_; }
    std::int32_t asInteger() const { return value_.as.integer; }
    double asReal() const { return value_.as.real; }
    bool asBoolean() const { return value_.as.boolean != 0; }
    std::uint32_t asColor() const { return value_.as.color; }
    const Object& asObject() const { return object_; }

    /// The value as the C interface takes it, without a reference of its own.
    pxk_value raw() const;

  private:
    pxk_value value_{};
    Object object_;
};

/// The host to open, and the plugin to load into it.
struct HostOptions {
    std::string plugin;       ///< the shared library; empty: the one beside the host
    double version = 0;       ///< for example 2013.04; 0: the host's own choice
    std::string application;  ///< the kind of application: "console" or "desktop"; empty: "console"
};

/// An open host with the plugin in it. Every failure is thrown as WorkError with the host's own message.
class OpenHost {
  public:
    explicit OpenHost(const HostOptions& options);
    ~OpenHost();
    OpenHost(const OpenHost&) = delete;
    OpenHost& operator=(const OpenHost&) = delete;

    /// Closes the host; every object must have been released. Throws when the plugin leaked or over-released a
    /// reference.
    void close();

    std::vector<pxk_member> members() const;
    std::vector<std::string> classes() const;
    std::string inspection() const;

    /// Calls a member by name; `self` is the picture or instance, none for a global method. Values that the member
    /// writes back replace those in `arguments`.
    Value call(const Object& self, const std::string& name, std::vector<Value>& arguments);
    void assign(const Object& self, const std::string& name, const std::vector<Value>& arguments, const Value& value);

    Object newInstance(const std::string& className);
    Value property(const Object& instance, const std::string& name);
    void setProperty(const Object& instance, const std::string& name, const Value& value);

    Object newPicture(std::int32_t width, std::int32_t height);
    Object newPicture(const Raster& pixels);
    Raster pixelsOf(const Object& picture);
    Object loadPicture(const std::string& path, const pxk_load_options& options = {});
    void savePicture(const Object& picture, const std::string& path, const pxk_save_options& options = {});
    /// The same from and to the bytes of a file; `name` stands for it in messages.
    Object decodePicture(std::string_view file, const std::string& name, const pxk_load_options& options = {});
    std::string encodePicture(const Object& picture, const std::string& name, const pxk_save_options& options = {});
    /// Gives `to` the file metadata of `from`.
    void copyMetadata(const Object& from, const Object& to);
    /// Describes a picture file. The texts stay valid until the next call.
    pxk_file_info fileInfo(const std::string& path);

    Object newMemoryBlock(std::string_view bytes);
    /// A string of UTF-8 text.
    Object newString(std::string_view text);
    /// A string of bytes in no known encoding.
    Object newBinaryString(std::string_view bytes);

  private:
    [[noreturn]] void fail() const;
    Object kept(pxk_object* object) const;
    void check(int outcome) const;

    pxk_host* host_;
};

/// The bytes of a memory block or string, valid while the object is held.
std::string_view bytesOf(const Object& object);

struct PictureSize {
    std::int32_t width;
    std::int32_t height;
};
PictureSize sizeOf(const Object& picture);

/// "640 x 480".
std::string sizeText(const PictureSize& size);

/// The version of the host and tool.
std::string versionText();

}  // namespace pxk::chain
