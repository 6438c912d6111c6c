#include "host/objects/instances.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace pxkhost {

namespace {

std::size_t roundedUp(std::size_t size) {
    return (size + instanceAlignment - 1) / instanceAlignment * instanceAlignment;
}

}  // namespace

void Instance::Free::operator()(std::byte* memory) const { std::free(memory); }

Instance::Instance(InstanceClass instanceClass) : Object(ownKind), class_(std::move(instanceClass)) {
    const std::size_t size = roundedUp(class_.offset + class_.dataSize);
    memory_.reset(static_cast<std::byte*>(std::aligned_alloc(instanceAlignment, size)));
    if (!memory_) throw std::bad_alloc();
    std::memset(memory_.get(), 0, size);
    publish(*new (memory_.get()) pxk::REALobjectHeader{});
}

Ref<Instance> Instance::make(InstanceClass instanceClass) {
    Ref<Instance> instance = Ref<Instance>::adopt(new Instance(std::move(instanceClass)));
    if (const auto construct = instance->class_.constructor) construct(instance->handle());
    return instance;
}

void Instance::dispose() {
    if (class_.destructor != nullptr && !class_.plugin.expired()) class_.destructor(handle());
}

}  // namespace pxkhost
