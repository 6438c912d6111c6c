/// Instances of the plugin's classes.
#pragma once

#include <cstddef>
#include <memory>

#include "host/registration/members.h"
#include "host/objects/object.h"
#include "host/registration/registry.h"
#include "host/objects/values.h"

namespace pxkhost {

class Instance final : public Object {
  public:
    /// A new instance: zero-filled data, then the class's constructor. The destructor runs when the last reference
    /// goes, if the plugin is still loaded then.
    static Ref<Instance> make(const ClassRecord& record);

    const ClassRecord& classRecord() const { return record_; }
    const std::string& className() const { return record_.name; }

    /// The instance data, aligned for doubles.
    std::byte* data() const;

    REALobjectStruct* handle() const { return static_cast<REALobjectStruct*>(Object::handle()); }

    static constexpr Kind ownKind = Kind::instance;

  private:
    explicit Instance(const ClassRecord& record);
    void dispose() override;
    std::string details() const override { return record_.name; }

    struct Free {
        void operator()(std::byte* memory) const;
    };

    // A copy, for the class may be gone before the last instance is.
    ClassRecord record_;
    int opening_;
    std::unique_ptr<std::byte, Free> memory_;
};

/// Reads and writes a property, in place or through its accessors; needs no libffi. Reading an object takes a
/// reference; assigning one to a field takes a reference and gives back the one of the object replaced.
Value getProperty(Instance& instance, const Member& property);
void setProperty(Instance& instance, const Member& property, const Value& value);

}  // namespace pxkhost
