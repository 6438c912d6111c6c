#include "host/calls/typed_member.h"

#include "host/objects/errors.h"

namespace pxkhost::native {

namespace {

bool hasObject(const Member& member) { return member.kind != MemberKind::globalMethod; }

std::size_t argumentCount(const Member& member, bool setter) {
    return member.declaration.parameters.size() + (hasObject(member) ? 1 : 0) + (setter ? 1 : 0);
}

}  // namespace

void* entryOf(const Member& member, bool setter, std::size_t count) {
    void* const entry = setter ? member.setter : member.function;
    if (entry == nullptr)
        throw HostError("\"" + member.declaration.text + "\" has no " + (setter ? "setter" : "function"));
    if (count != argumentCount(member, setter))
        throw HostError("\"" + member.declaration.text + "\" takes " + std::to_string(argumentCount(member, setter)) +
                        " arguments with its object, not " + std::to_string(count));
    return entry;
}

Parameter parameterAt(const Member& member, bool setter, std::size_t index) {
    Parameter parameter;
    if (hasObject(member) && index == 0) {
        parameter.name = "self";
        parameter.type = parseType(member.owner);
        return parameter;
    }
    const std::size_t place = index - (hasObject(member) ? 1 : 0);
    if (setter && place == member.declaration.parameters.size()) {
        parameter.name = "the assigned value";
        parameter.type = member.declaration.result;
        return parameter;
    }
    return member.declaration.parameters[place];
}

void refuseArgument(const Member& member, std::size_t index) {
    throw HostError("\"" + member.declaration.text + "\": argument " + std::to_string(index + 1) +
                    " (its object counted) is of another C++ type than declared");
}

void refuseResult(const Member& member) {
    throw HostError("\"" + member.declaration.text + "\": the result is of another C++ type than declared");
}

}  // namespace pxkhost::native
