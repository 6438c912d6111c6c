#include "chain/open_host.h"

#include <limits>
#include <utility>

#include "chain/error.h"

namespace pxk::chain {
namespace {

// The host's encoding numbers.
constexpr std::uint32_t utf8 = 0x08000100;
constexpr std::uint32_t unknownEncoding = 0xFFFF;

std::int32_t checkedSize(std::string_view bytes) {
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw WorkError("more than 2147483647 bytes do not fit the host");
    }
    return static_cast<std::int32_t>(bytes.size());
}

std::vector<pxk_value> rawValues(const std::vector<Value>& values) {
    std::vector<pxk_value> raw;
    raw.reserve(values.size());
    for (const Value& value : values) raw.push_back(value.raw());
    return raw;
}

}  // namespace

Object::Object(const Object& other) : handle_(other.handle_) { pxk_retain(handle_); }
Object::Object(Object&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
Object& Object::operator=(Object other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}
Object::~Object() { pxk_release(handle_); }

Value Value::integer(std::int32_t value) {
    Value result = initial(PXK_INTEGER);
    result.value_.as.integer = value;
    return result;
}

Value Value::real(double value) {
    Value result = initial(PXK_DOUBLE);
    result.value_.as.real = value;
    return result;
}

Value Value::boolean(bool value) {
    Value result = initial(PXK_BOOLEAN);
    result.value_.as.boolean = value ? 1 : 0;
    return result;
}

Value Value::color(std::uint32_t rgb) {
    Value result = initial(PXK_COLOR);
    result.value_.as.color = rgb;
    return result;
}

Value Value::object(pxk_kind kind, Object object) {
    Value result = initial(kind);
    result.object_ = std::move(object);
    return result;
}

Value Value::initial(pxk_kind kind) {
    Value result;
    result.value_.kind = kind;
    return result;
}

Value Value::adopt(const pxk_value& value) {
    Value result;
    result.value_ = value;
    if (result.isObject()) {
        result.object_ = Object(value.as.object);
        result.value_.as.object = nullptr;
    }
    return result;
}

pxk_value Value::raw() const {
    pxk_value raw = value_;
    if (isObject()) raw.as.object = object_.handle();
    return raw;
}

OpenHost::OpenHost(const HostOptions& options) {
    pxk_options raw{};
    raw.plugin_path = options.plugin.empty() ? nullptr : options.plugin.c_str();
    raw.host_version = options.version;
    raw.application = options.application == "desktop" ? PXK_DESKTOP : PXK_CONSOLE;
    host_ = pxk_open(&raw);
    if (host_ == nullptr) fail();
}

OpenHost::~OpenHost() { pxk_close(host_); }

void OpenHost::close() {
    if (pxk_close(std::exchange(host_, nullptr)) != PXK_OK) fail();
}

std::vector<pxk_member> OpenHost::members() const {
    std::vector<pxk_member> result;
    const std::size_t count = pxk_member_count(host_);
    for (std::size_t index = 0; index < count; ++index) result.push_back(pxk_member_at(host_, index));
    return result;
}

std::vector<std::string> OpenHost::classes() const {
    std::vector<std::string> result;
    for (std::size_t index = 0;; ++index) {
        const char* name = pxk_class_at(host_, index);
        if (name == nullptr) return result;
        result.emplace_back(name);
    }
}

std::string OpenHost::inspection() const {
    const char* text = pxk_inspect(host_);
    if (text == nullptr) fail();
    return text;
}

Value OpenHost::call(const Object& self, const std::string& name, std::vector<Value>& arguments) {
    std::vector<pxk_value> raw = rawValues(arguments);
    pxk_value result{};
    check(pxk_call(host_, self.handle(), name.c_str(), raw.data(), raw.size(), &result));
    for (std::size_t i = 0; i < raw.size(); ++i) {
        // An object that is still the one passed in came back without a reference of its own.
        const Value& passed = arguments[i];
        if (passed.isObject() && raw[i].as.object == passed.asObject().handle()) continue;
        arguments[i] = Value::adopt(raw[i]);
    }
    return Value::adopt(result);
}

void OpenHost::assign(const Object& self, const std::string& name, const std::vector<Value>& arguments,
                      const Value& value) {
    const std::vector<pxk_value> raw = rawValues(arguments);
    check(pxk_assign(host_, self.handle(), name.c_str(), raw.data(), raw.size(), value.raw()));
}

Object OpenHost::newInstance(const std::string& className) { return kept(pxk_new_instance(host_, className.c_str())); }

Value OpenHost::property(const Object& instance, const std::string& name) {
    pxk_value value{};
    check(pxk_get_property(host_, instance.handle(), name.c_str(), &value));
    return Value::adopt(value);
}

void OpenHost::setProperty(const Object& instance, const std::string& name, const Value& value) {
    check(pxk_set_property(host_, instance.handle(), name.c_str(), value.raw()));
}

Object OpenHost::newPicture(std::int32_t width, std::int32_t height) {
    return kept(pxk_new_picture(host_, width, height));
}

Object OpenHost::newPicture(const Raster& pixels) {
    Object picture = newPicture(pixels.width, pixels.height);
    check(pxk_set_pixels(host_, picture.handle(), pixels.words.data()));
    return picture;
}

Raster OpenHost::pixelsOf(const Object& picture) {
    const PictureSize size = sizeOf(picture);
    Raster pixels = Raster::filled(size.width, size.height, 0);
    check(pxk_get_pixels(host_, picture.handle(), pixels.words.data()));
    return pixels;
}

Object OpenHost::loadPicture(const std::string& path, const pxk_load_options& options) {
    return kept(pxk_load_picture_with(host_, path.c_str(), &options));
}

void OpenHost::savePicture(const Object& picture, const std::string& path, const pxk_save_options& options) {
    check(pxk_save_picture_with(host_, picture.handle(), path.c_str(), &options));
}

Object OpenHost::decodePicture(std::string_view file, const std::string& name, const pxk_load_options& options) {
    return kept(pxk_load_picture_bytes(host_, file.data(), file.size(), name.c_str(), &options));
}

std::string OpenHost::encodePicture(const Object& picture, const std::string& name, const pxk_save_options& options) {
    const Object file = kept(pxk_save_picture_bytes(host_, picture.handle(), name.c_str(), &options));
    return std::string(bytesOf(file));
}

void OpenHost::copyMetadata(const Object& from, const Object& to) {
    check(pxk_copy_metadata(host_, from.handle(), to.handle()));
}

pxk_file_info OpenHost::fileInfo(const std::string& path) {
    pxk_file_info info{};
    check(pxk_get_file_info(host_, path.c_str(), &info));
    return info;
}

Object OpenHost::newMemoryBlock(std::string_view bytes) {
    return kept(pxk_new_memory_block(host_, bytes.data(), checkedSize(bytes)));
}

Object OpenHost::newString(std::string_view text) {
    return kept(pxk_new_string(host_, text.data(), checkedSize(text), utf8));
}

Object OpenHost::newBinaryString(std::string_view bytes) {
    return kept(pxk_new_string(host_, bytes.data(), checkedSize(bytes), unknownEncoding));
}

void OpenHost::fail() const { throw WorkError(pxk_last_error(host_)); }

Object OpenHost::kept(pxk_object* object) const {
    if (object == nullptr) fail();
    return Object(object);
}

void OpenHost::check(int outcome) const {
    if (outcome != PXK_OK) fail();
}

std::string_view bytesOf(const Object& object) {
    std::int32_t size = 0;
    const void* bytes = pxk_bytes(object.handle(), &size);
    if (bytes == nullptr || size <= 0) return {};
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

PictureSize sizeOf(const Object& picture) {
    return {pxk_picture_width(picture.handle()), pxk_picture_height(picture.handle())};
}

std::string sizeText(const PictureSize& size) {
    return std::to_string(size.width) + " x " + std::to_string(size.height);
}

std::string versionText() { return pxk_version(); }

}  // namespace pxk::chain
