/// The C interface over the host. No C++ exception leaves this file.
#include <algorithm>
#include <cstring>
#include <deque>
#include <memory>
#include <new>
#include <string>

#include "host/host.h"
#include "host/include/pxkhost.h"
#ifdef PXK_WITH_GD
#include "files/picture_files.h"
#endif

using namespace pxkhost;

struct pxk_host {
    explicit pxk_host(Options options) : host(std::move(options)) {
        for (const Member& member : host.members().all()) deprecated.push_back(member.deprecated());
    }

    Host host;
    std::string lastError;
    std::string inspected;
    std::deque<std::string> deprecated;
};

namespace {

// The C enumerations are those of C++ under other names.
static_assert(PXK_PICTURE_METHOD == static_cast<int>(MemberKind::pictureMethod));
static_assert(PXK_CLASS_PROPERTY == static_cast<int>(MemberKind::classProperty));
static_assert(PXK_NOTHING == static_cast<int>(ValueKind::nothing));
static_assert(PXK_COLOR == static_cast<int>(ValueKind::color));
static_assert(PXK_MEMORY_BLOCK == static_cast<int>(ValueKind::memoryBlock));
static_assert(PXK_INSTANCE == static_cast<int>(ValueKind::instance));
static_assert(PXK_CONSOLE == static_cast<int>(Personality::console));
static_assert(PXK_DESKTOP == static_cast<int>(Personality::desktop));

constexpr int largestSide = 32767;

std::string& processError() {
    static std::string error;
    return error;
}

std::string& errorOf(pxk_host* host) { return host != nullptr ? host->lastError : processError(); }

/// Runs one function of the interface: what it throws becomes the last error, and `failed` the result.
template <class Result, class Action>
Result guarded(pxk_host* host, Result failed, Action action) noexcept {
    std::string& error = errorOf(host);
    error.clear();
    try {
        return action();
    } catch (const std::bad_alloc&) {
        error = "there is not enough memory";
    } catch (const std::exception& exception) {
        error = exception.what();
    } catch (...) {
        error = "an unknown error";
    }
    return failed;
}

template <class T>
T& required(T* pointer, const char* argument) {
    if (pointer == nullptr) throw HostError(std::string("argument \"") + argument + "\" is NULL");
    return *pointer;
}

/// An enumeration's number as the caller wrote it, which may be none of the enumeration's.
template <class Enumeration>
int numberOf(const Enumeration& value) {
    int number = 0;
    static_assert(sizeof value == sizeof number);
    std::memcpy(&number, &value, sizeof number);
    return number;
}

Object* fromC(pxk_object* object) { return reinterpret_cast<Object*>(object); }
const Object* fromC(const pxk_object* object) { return reinterpret_cast<const Object*>(object); }
pxk_object* toC(Object* object) { return reinterpret_cast<pxk_object*>(object); }

template <class T>
pxk_object* handOver(Ref<T> object) {
    return toC(object.detach());
}

template <class T>
T& expected(pxk_object* object, const char* argument) {
    Object& given = required(fromC(object), argument);
    if (given.kind() != T::ownKind)
        throw HostError(std::string("argument \"") + argument + "\" is a " + kindName(given.kind()) + ", not a " +
                        kindName(T::ownKind));
    return static_cast<T&>(given);
}

const Picture* asPicture(const pxk_object* object) {
    const Object* const given = fromC(object);
    return given != nullptr && given->kind() == Object::Kind::picture ? static_cast<const Picture*>(given) : nullptr;
}

void requireKind(const Object& object, Object::Kind kind, ValueKind declared) {
    if (object.kind() != kind)
        throw HostError(std::string("a value of kind ") + kindName(declared) + " holds " + object.describe());
}

/// The value with a reference of its own to its object.
Value fromC(const pxk_value& value) {
    const auto kind = static_cast<ValueKind>(numberOf(value.kind));
    switch (kind) {
        case ValueKind::nothing:
            return {};
        case ValueKind::integer:
            return Value::ofInteger(value.as.integer);
        case ValueKind::real:
            return Value::ofReal(value.as.real);
        case ValueKind::boolean:
            return Value::ofBoolean(value.as.boolean != 0);
        case ValueKind::color:
            return Value::ofColor(value.as.color);
        case ValueKind::picture:
        case ValueKind::memoryBlock:
        case ValueKind::string:
        case ValueKind::instance:
            break;
        default:
            throw HostError("a value of the unknown kind " + std::to_string(numberOf(value.kind)));
    }
    Object* const object = fromC(value.as.object);
    if (object != nullptr) {
        if (kind == ValueKind::picture) requireKind(*object, Object::Kind::picture, kind);
        if (kind == ValueKind::memoryBlock) requireKind(*object, Object::Kind::memoryBlock, kind);
        if (kind == ValueKind::string) requireKind(*object, Object::Kind::string, kind);
        if (kind == ValueKind::instance) requireKind(*object, Object::Kind::instance, kind);
    }
    return Value::ofObject(kind, Ref<Object>::share(object));
}

/// The value, its reference going to the caller.
pxk_value toC(Value value) {
    pxk_value result{};
    result.kind = static_cast<pxk_kind>(value.kind);
    switch (value.kind) {
        case ValueKind::nothing:
            break;
        case ValueKind::integer:
            result.as.integer = value.integer;
            break;
        case ValueKind::real:
            result.as.real = value.real;
            break;
        case ValueKind::boolean:
            result.as.boolean = value.boolean ? 1 : 0;
            break;
        case ValueKind::color:
            result.as.color = value.color;
            break;
        default:
            result.as.object = toC(value.object.detach());
    }
    return result;
}

std::vector<Value> fromC(const pxk_value* arguments, std::size_t count) {
    std::vector<Value> values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(fromC((&required(arguments, "arguments"))[i]));
    return values;
}

#ifdef PXK_WITH_GD

bool hasTransparency(const Surface& surface) {
    for (int y = 0; y < surface.height; ++y)
        for (int x = 0; x < surface.width; ++x)
            if (surface.row(y)[x] >> 24 != 0) return true;
    return false;
}

Ref<Picture> loadPicture(const Host& host, const char* path) {
    GdImage image(readPictureFile(path));
    const Surface loaded = surfaceOf(*image);
    const bool hasAlpha = hasTransparency(loaded);
    if (host.personality() != Personality::desktop) {
        Ref<Picture> picture = Picture::console(std::move(image));
        picture->setHasAlphaChannel(hasAlpha);
        return picture;
    }
    Ref<Picture> picture = Picture::desktop(loaded.width, loaded.height, host.options().newPictures, hasAlpha);
    if (!picture) throw std::bad_alloc();
    copyPixels(loaded, picture->surface());
    return picture;
}

void savePicture(const Picture& picture, const char* path) {
    if (picture.gd() != nullptr) return writePictureFile(picture.gd(), path);
    const GdImage image = makeTrueColourImage(picture.width(), picture.height());
    if (!image) throw std::bad_alloc();
    copyPixels(picture.surface(), surfaceOf(*image));
    writePictureFile(image.get(), path);
}

#else

Ref<Picture> loadPicture(const Host&, const char*) {
    throw HostError("this build cannot read picture files; it has no libgd");
}

void savePicture(const Picture&, const char*) {
    throw HostError("this build cannot write picture files; it has no libgd");
}

#endif

}  // namespace

extern "C" {

pxk_host* pxk_open(const pxk_options* options) {
    return guarded<pxk_host*>(nullptr, nullptr, [&] {
        Options chosen;
        if (options != nullptr) {
            if (options->plugin_path != nullptr) chosen.plugin = options->plugin_path;
            if (options->host_version != 0) chosen.version = options->host_version;
            const int personality = numberOf(options->personality);
            if (personality != PXK_CONSOLE && personality != PXK_DESKTOP)
                throw HostError("personality " + std::to_string(personality) +
                                " is unknown; use PXK_CONSOLE or PXK_DESKTOP");
            chosen.personality = static_cast<Personality>(personality);
        }
        return new pxk_host(std::move(chosen));
    });
}

int pxk_close(pxk_host* host) {
    return guarded<int>(nullptr, PXK_FAILED, [&]() -> int {
        const std::unique_ptr<pxk_host> closing(host);
        if (!closing) return PXK_OK;
        std::string all;
        for (const std::string& problem : closing->host.close()) all += (all.empty() ? "" : "; ") + problem;
        if (!all.empty()) throw HostError(all);
        return PXK_OK;
    });
}

const char* pxk_last_error(const pxk_host* host) {
    return host != nullptr ? host->lastError.c_str() : processError().c_str();
}

const char* pxk_version(void) { return PXK_VERSION; }

const char* pxk_inspect(pxk_host* host) {
    return guarded<const char*>(host, nullptr, [&] {
        pxk_host& open = required(host, "host");
        open.inspected = open.host.inspect();
        return open.inspected.c_str();
    });
}

size_t pxk_member_count(pxk_host* host) { return host != nullptr ? host->host.members().all().size() : 0; }

pxk_member pxk_member_at(pxk_host* host, size_t index) {
    pxk_member result{};
    if (index >= pxk_member_count(host)) return result;
    const Member& member = host->host.members().all()[index];
    const std::string& deprecated = host->deprecated[index];
    result.kind = static_cast<pxk_member_kind>(member.kind);
    result.owner = member.owner.c_str();
    result.name = member.declaration.name.c_str();
    result.declaration = member.declaration.text.c_str();
    result.deprecated = deprecated.empty() ? nullptr : deprecated.c_str();
    result.has_setter = member.setter != nullptr ? 1 : 0;
    return result;
}

const char* pxk_class_at(pxk_host* host, size_t index) {
    if (host == nullptr || index >= host->host.registry().classes().size()) return nullptr;
    return host->host.registry().classes()[index].name.c_str();
}

void pxk_retain(pxk_object* object) {
    if (object != nullptr) fromC(object)->retain();
}

void pxk_release(pxk_object* object) {
    if (object != nullptr) fromC(object)->release();
}

int pxk_call(pxk_host* host, pxk_object* self, const char* name, pxk_value* arguments, size_t count,
             pxk_value* result) {
    if (result != nullptr) *result = pxk_value{};
    return guarded<int>(host, PXK_FAILED, [&] {
        Host& open = required(host, "host").host;
        std::vector<Value> values = fromC(arguments, count);
        const Member& member = open.find(fromC(self), &required(name, "name"), values);
        const auto& parameters = member.declaration.parameters;
        Value returned = open.call(member, fromC(self), values);
        for (std::size_t i = 0; i < count; ++i) {
            if (!parameters[i].byRef) continue;
            const bool sameObject = isObject(values[i].kind) && toC(values[i].object.get()) == arguments[i].as.object &&
                                    arguments[i].kind != PXK_NOTHING;
            if (!sameObject) arguments[i] = toC(std::move(values[i]));
        }
        if (result != nullptr) *result = toC(std::move(returned));
        return PXK_OK;
    });
}

int pxk_assign(pxk_host* host, pxk_object* self, const char* name, const pxk_value* arguments, size_t count,
               pxk_value value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        required(host, "host")
            .host.assignByName(fromC(self), &required(name, "name"), fromC(arguments, count), fromC(value));
        return PXK_OK;
    });
}

pxk_object* pxk_new_instance(pxk_host* host, const char* class_name) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        return handOver(required(host, "host").host.newInstance(&required(class_name, "class_name")));
    });
}

int pxk_get_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value* value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        pxk_value& target = required(value, "value");
        target = toC(
            required(host, "host").host.property(expected<Instance>(instance, "instance"), &required(name, "name")));
        return PXK_OK;
    });
}

int pxk_set_property(pxk_host* host, pxk_object* instance, const char* name, pxk_value value) {
    return guarded<int>(host, PXK_FAILED, [&] {
        required(host, "host")
            .host.setProperty(expected<Instance>(instance, "instance"), &required(name, "name"), fromC(value));
        return PXK_OK;
    });
}

pxk_object* pxk_new_picture(pxk_host* host, int32_t width, int32_t height) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        const Host& open = required(host, "host").host;
        if (width < 1 || height < 1 || width > largestSide || height > largestSide)
            throw HostError("a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                            " pixels cannot be; each side is 1 to " + std::to_string(largestSide));
        Ref<Picture> picture = open.newPicture(width, height);
        if (!picture) throw std::bad_alloc();
        return handOver(std::move(picture));
    });
}

int32_t pxk_picture_width(const pxk_object* picture) {
    const Picture* const given = asPicture(picture);
    return given != nullptr ? given->width() : 0;
}

int32_t pxk_picture_height(const pxk_object* picture) {
    const Picture* const given = asPicture(picture);
    return given != nullptr ? given->height() : 0;
}

int pxk_get_pixels(pxk_host* host, pxk_object* picture, uint32_t* pixels) {
    return guarded<int>(host, PXK_FAILED, [&] {
        std::ranges::copy(expected<Picture>(picture, "picture").pixels(), &required(pixels, "pixels"));
        return PXK_OK;
    });
}

int pxk_set_pixels(pxk_host* host, pxk_object* picture, const uint32_t* pixels) {
    return guarded<int>(host, PXK_FAILED, [&] {
        auto& target = expected<Picture>(picture, "picture");
        const auto count = static_cast<std::size_t>(target.width()) * static_cast<std::size_t>(target.height());
        target.setPixels({&required(pixels, "pixels"), count});
        return PXK_OK;
    });
}

pxk_object* pxk_load_picture(pxk_host* host, const char* path) {
    return guarded<pxk_object*>(
        host, nullptr, [&] { return handOver(loadPicture(required(host, "host").host, &required(path, "path"))); });
}

int pxk_save_picture(pxk_host* host, pxk_object* picture, const char* path) {
    return guarded<int>(host, PXK_FAILED, [&] {
        savePicture(expected<Picture>(picture, "picture"), &required(path, "path"));
        return PXK_OK;
    });
}

pxk_object* pxk_new_memory_block(pxk_host* host, const void* bytes, int32_t size) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        if (size < 0) throw HostError("a memory block of " + std::to_string(size) + " bytes cannot be; use 0 or more");
        Ref<MemoryBlock> block = MemoryBlock::make(size);
        if (bytes != nullptr) std::copy_n(static_cast<const std::uint8_t*>(bytes), size, block->bytes().begin());
        return handOver(std::move(block));
    });
}

pxk_object* pxk_new_string(pxk_host* host, const void* bytes, int32_t length, uint32_t encoding) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        if (length < 0) throw HostError("a string of " + std::to_string(length) + " bytes cannot be; use 0 or more");
        std::string text;
        if (length > 0)
            text.assign(static_cast<const char*>(&required(static_cast<const char*>(bytes), "bytes")),
                        static_cast<std::size_t>(length));
        return handOver(String::make(std::move(text), encoding));
    });
}

void* pxk_bytes(pxk_object* object, int32_t* size) {
    Object* const given = fromC(object);
    if (size != nullptr) *size = 0;
    if (given == nullptr) return nullptr;
    if (given->kind() == Object::Kind::memoryBlock) {
        const auto& block = static_cast<const MemoryBlock&>(*given);
        if (size != nullptr) *size = block.size();
        return block.pointer();
    }
    if (given->kind() == Object::Kind::string) {
        auto& string = static_cast<String&>(*given);
        if (size != nullptr) *size = static_cast<std::int32_t>(string.bytes().size());
        return string.pointer();
    }
    return nullptr;
}

uint32_t pxk_string_encoding(const pxk_object* string) {
    const Object* const given = fromC(string);
    const bool isString = given != nullptr && given->kind() == Object::Kind::string;
    return isString ? static_cast<const String*>(given)->encoding() : encoding::unknown;
}

}  // extern "C"
