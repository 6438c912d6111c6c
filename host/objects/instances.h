/// Instances of the plugin's classes.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "host/objects/object.h"

namespace pxkhost {

/// Instance data starts at a multiple of this from its object's handle.
inline constexpr std::size_t instanceAlignment = 16;

/// What an instance needs of its class; a copy, since the class may be gone before its last instance.
struct InstanceClass {
    using Function = void (*)(REALobjectStruct*);

    std::string name;
    std::size_t dataSize = 0;
    std::size_t offset = instanceAlignment;  ///< from an instance's handle to its data
    Function constructor = nullptr;          ///< may be nil, like the destructor
    Function destructor = nullptr;
    std::weak_ptr<const void> plugin{};  ///< expires when the plugin, and the destructor with it, is gone
};

class Instance final : public Object {
  public:
    /// A new instance: zero-filled data, then the class's constructor. The destructor runs at the last release,
    /// if the plugin is still loaded then.
    static Ref<Instance> make(InstanceClass instanceClass);

    const std::string& className() const { return class_.name; }

    /// The instance data, aligned for doubles, and its size in bytes.
    std::byte* data() const { return memory_.get() + class_.offset; }
    std::size_t dataSize() const { return class_.dataSize; }

    REALobjectStruct* handle() const { return static_cast<REALobjectStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::instance;

  private:
    explicit Instance(InstanceClass instanceClass);
    void dispose() override;
    std::string details() const override { return class_.name; }

    struct Free {
        void operator()(std::byte* memory) const;
    };

    InstanceClass class_;
    std::unique_ptr<std::byte, Free> memory_;
};

}  // namespace pxkhost
