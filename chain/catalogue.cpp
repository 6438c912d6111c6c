#include "chain/catalogue.h"

#include "chain/text.h"

namespace pxk::chain {
namespace {

std::string_view withoutSuffix(std::string_view name) {
    constexpr std::size_t length = 3;
    if (name.size() > length && sameLetters(name.substr(name.size() - length), "PXK")) name.remove_suffix(length);
    return name;
}

}  // namespace

bool sameName(std::string_view a, std::string_view b) { return sameLetters(withoutSuffix(a), withoutSuffix(b)); }

Catalogue::Catalogue(const OpenHost& host) : classes_(host.classes()) {
    for (const pxk_member& each : host.members()) {
        members_.push_back({each.kind, each.owner, each.name, each.declaration, parseDeclaration(each.declaration),
                            each.deprecated == nullptr ? "" : each.deprecated, each.has_setter != 0});
    }
}

std::vector<const Member*> Catalogue::methods(std::string_view name) const {
    std::vector<const Member*> found;
    for (const Member& each : members_) {
        const bool callable = each.kind == PXK_PICTURE_METHOD || each.kind == PXK_GLOBAL_METHOD;
        if (callable && sameName(each.name, name)) found.push_back(&each);
    }
    return found;
}

const std::string* Catalogue::findClass(std::string_view name) const {
    for (const std::string& each : classes_) {
        if (sameName(each, name)) return &each;
    }
    return nullptr;
}

std::vector<const Member*> Catalogue::membersOf(std::string_view className, pxk_member_kind kind) const {
    std::vector<const Member*> found;
    for (const Member& each : members_) {
        if (each.kind == kind && each.owner == className) found.push_back(&each);
    }
    return found;
}

const Member* Catalogue::findInClass(std::string_view className, std::string_view name) const {
    for (const Member& each : members_) {
        if (each.owner == className && sameName(each.name, name)) return &each;
    }
    return nullptr;
}

bool Catalogue::hasLut3d(std::string_view className) const {
    const Member* table = findInClass(className, "Table");
    return table != nullptr && table->kind == PXK_CLASS_METHOD && table->hasSetter &&
           table->declaration.parameters.size() == 4;
}

}  // namespace pxk::chain
