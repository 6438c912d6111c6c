/// What the plugin registered, by name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "chain/declaration.h"
#include "chain/open_host.h"

namespace pxk::chain {

/// One form of a method, or a property.
struct Member {
    pxk_member_kind kind;
    std::string owner;  ///< "Picture", a class, or empty for a global method
    std::string name;
    std::string text;  ///< the declaration as it was registered
    Declaration declaration;
    std::string deprecated;  ///< what to use instead; empty when it is not deprecated
    bool hasSetter;
};

/// Names are found in any letter case, with or without the suffix PXK.
class Catalogue {
  public:
    explicit Catalogue(const OpenHost& host);

    /// All members, in order of registration.
    const std::vector<Member>& members() const { return members_; }
    const std::vector<std::string>& classes() const { return classes_; }

    /// All forms of this name that a chain can call by themselves: methods of pictures and global methods.
    std::vector<const Member*> methods(std::string_view name) const;
    /// The class of this name as it was registered; nullptr when there is none.
    const std::string* findClass(std::string_view name) const;
    /// All properties or methods of a class.
    std::vector<const Member*> membersOf(std::string_view className, pxk_member_kind kind) const;
    /// A property or property method of a class; nullptr when there is none.
    const Member* findInClass(std::string_view className, std::string_view name) const;
    /// Whether a class has a 3D LUT that can be filled: Table(r, g, b, x).
    bool hasLut3d(std::string_view className) const;

  private:
    std::vector<Member> members_;
    std::vector<std::string> classes_;
};

/// Whether two names are the same in any letter case, with or without the suffix PXK.
bool sameName(std::string_view a, std::string_view b);

}  // namespace pxk::chain
