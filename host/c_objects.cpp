// The C interface: references, memory blocks and strings.
#include <algorithm>

#include "host/c_interface.h"

using namespace pxkhost;

extern "C" {

void pxk_retain(pxk_object* object) {
    if (object != nullptr) fromC(object)->retain();
}

void pxk_release(pxk_object* object) {
    if (object != nullptr) fromC(object)->release();
}

pxk_object* pxk_new_memory_block(pxk_host* host, const void* bytes, int32_t size) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        if (size < 0) throw HostError("a memory block of " + std::to_string(size) + " bytes cannot be; use 0 or more");
        Ref<MemoryBlock> block = MemoryBlock::make(size);
        if (bytes != nullptr) std::copy_n(static_cast<const std::uint8_t*>(bytes), size, block->bytes().begin());
        return toC(std::move(block));
    });
}

pxk_object* pxk_new_string(pxk_host* host, const void* bytes, int32_t length, uint32_t encoding) {
    return guarded<pxk_object*>(host, nullptr, [&] {
        if (length < 0) throw HostError("a string of " + std::to_string(length) + " bytes cannot be; use 0 or more");
        std::string text;
        if (length > 0)
            text.assign(static_cast<const char*>(&required(static_cast<const char*>(bytes), "bytes")),
                        static_cast<std::size_t>(length));
        return toC(String::make(std::move(text), encoding));
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
