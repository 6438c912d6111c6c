/// The plugin's members as a program sees them, in whatever form they were registered.
#pragma once

#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/objects/values.h"
#include "host/registration/declarations.h"
#include "host/registration/registry.h"

namespace pxkhost {

enum class MemberKind { pictureMethod, globalMethod, classMethod, classProperty };

struct Member {
    MemberKind kind = MemberKind::globalMethod;
    std::string owner;        ///< "Picture", empty for global methods, or the class
    Declaration declaration;  ///< without "extends" and "assigns" parameters
    void* function = nullptr;
    void* setter = nullptr;  ///< nil unless the member may be assigned
    std::vector<std::pair<std::string, std::string>> attributes;
    const PropertyRecord* property = nullptr;  ///< for class properties
    std::string key;                           ///< the declaration's text, normalised

    /// The attribute "Deprecated" without quotes; empty when there is none.
    std::string deprecated() const;
};

class Members {
  public:
    /// Reads everything registered; `registry` must outlive the members.
    void collect(const Registry& registry);

    const std::deque<Member>& all() const { return members_; }

    /// The member with this declaration as it stands in the plugin's tables, whatever form it was registered in. A
    /// class name and a dot in front select a member of that class: "PictureSepiaPXK.Run as boolean". Blanks and
    /// letter case do not matter. Throws HostError when there is none.
    const Member& byDeclaration(std::string_view declaration) const;

    /// The member that a call by name means: the name in any letter case and with or without "PXK", the form by count
    /// and then by type of the arguments. `owner` is "Picture", a class, or empty for global methods. Throws HostError
    /// with the forms there are, or the nearest name.
    const Member& byCall(std::string_view owner, std::string_view name, std::span<const Value> arguments) const;

    /// The same for an assignment `object.name(arguments) = value`.
    const Member& byAssignment(std::string_view owner, std::string_view name, std::span<const Value> arguments,
                               const Value& value) const;

    /// A property of a class; throws HostError with the nearest name when there is none.
    const Member& property(std::string_view className, std::string_view name) const;

  private:
    void addMethod(const MethodRecord& record, MemberKind kind, const std::string& owner);
    void addModuleMethod(const MethodRecord& record);
    void addClass(const ClassRecord& record);
    const Member& choose(std::string_view owner, std::string_view name, std::span<const Value> arguments,
                         const Value* assigned) const;

    std::deque<Member> members_;
};

/// The candidate that is nearest to a misspelt name, in any letter case; empty when none is near.
std::string nearestName(std::string_view name, std::span<const std::string> candidates);

}  // namespace pxkhost
