#include "host/registration/members.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "host/objects/errors.h"

namespace pxkhost {

namespace {

constexpr std::string_view suffix = "pxk";

/// A name in small letters, without the suffix that a program may leave out.
std::string bareName(std::string_view name) {
    std::string bare = normalised(name);
    if (bare.size() > suffix.size() && bare.ends_with(suffix)) bare.resize(bare.size() - suffix.size());
    return bare;
}

bool sameText(std::string_view a, std::string_view b) { return normalised(a) == normalised(b); }

bool isMethod(const Member& member) { return member.kind != MemberKind::classProperty; }

/// How far the arguments are from a form's parameters: 0 for an exact fit, a little for every conversion, a lot for
/// every default used. Empty when they do not fit.
std::optional<int> distance(const Member& member, std::span<const Value> arguments) {
    constexpr int conversion = 1;
    constexpr int defaultUsed = 100;
    const auto& parameters = member.declaration.parameters;
    if (arguments.size() > parameters.size()) return std::nullopt;
    int total = 0;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const bool given = i < arguments.size() && arguments[i].kind != ValueKind::nothing;
        if (given) {
            const bool exact = arguments[i].kind == parameters[i].type.kind;
            // A variable handed over by reference has to be of the very type.
            const bool convertible = !parameters[i].byRef || isObject(arguments[i].kind);
            if (!exact && !(convertible && arguments[i].as(parameters[i].type.kind))) return std::nullopt;
            total += exact ? 0 : conversion;
        } else if (parameters[i].defaultText || (parameters[i].byRef && i < arguments.size())) {
            total += defaultUsed;
        } else {
            return std::nullopt;
        }
    }
    return total;
}

std::string listOf(std::span<const Value> arguments) {
    std::string text = "(";
    for (const Value& argument : arguments) {
        if (text.size() > 1) text += ", ";
        text += argument.kind == ValueKind::nothing ? "default" : kindName(argument.kind);
    }
    return text + ")";
}

/// What a name is called on, for messages.
std::string callOf(const Member& member) {
    if (member.kind == MemberKind::globalMethod) return member.declaration.name + " is called on nothing";
    return member.declaration.name + " is called on a " + member.owner;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            row[j] = std::min({above + 1, row[j - 1] + 1, diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

std::string didYouMean(std::string_view name, std::span<const std::string> candidates) {
    const std::string nearest = nearestName(name, candidates);
    return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

}  // namespace

std::string nearestName(std::string_view name, std::span<const std::string> candidates) {
    const std::string wanted = bareName(name);
    // A third of the letters may be wrong; beyond that a guess helps nobody.
    std::size_t allowed = std::max<std::size_t>(2, wanted.size() / 3) + 1;
    std::string nearest;
    for (const std::string& candidate : candidates) {
        const std::size_t away = editDistance(wanted, bareName(candidate));
        if (away < allowed) {
            allowed = away;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string Member::deprecated() const {
    for (const auto& [name, value] : attributes) {
        if (!sameText(name, "Deprecated")) continue;
        const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
        return quoted ? value.substr(1, value.size() - 2) : value;
    }
    return {};
}

void Members::collect(const Registry& registry) {
    for (const Registration& registration : registry.order()) {
        switch (registration.kind) {
            case Registration::Kind::classRecord:
                addClass(registry.classes()[registration.index]);
                break;
            case Registration::Kind::extension: {
                const ClassRecord& extension = registry.extensions()[registration.index];
                for (const MethodRecord& method : extension.methods)
                    addMethod(method, MemberKind::pictureMethod, extension.name);
                break;
            }
            case Registration::Kind::module:
                for (const MethodRecord& method : registry.modules()[registration.index].methods)
                    addModuleMethod(method);
                break;
            case Registration::Kind::globalMethod:
                addMethod(registry.globalMethods()[registration.index], MemberKind::globalMethod, "");
                break;
        }
    }
}

void Members::addClass(const ClassRecord& record) {
    for (const PropertyRecord& property : record.properties) {
        Member member;
        member.kind = MemberKind::classProperty;
        member.owner = record.name;
        member.declaration.name = property.name;
        member.declaration.result = parseType(property.type);
        member.declaration.text = property.name + " as " + property.type;
        member.key = normalised(member.declaration.text);
        member.property = &property;
        members_.push_back(std::move(member));
    }
    for (const MethodRecord& method : record.methods) addMethod(method, MemberKind::classMethod, record.name);
}

void Members::addMethod(const MethodRecord& record, MemberKind kind, const std::string& owner) {
    Member member;
    member.kind = kind;
    member.owner = owner;
    member.declaration = asProgramsReadIt(parseDeclaration(record.declaration));
    member.key = normalised(member.declaration.text);
    member.function = record.function;
    member.setter = record.setter;
    member.attributes = record.attributes;
    members_.push_back(std::move(member));
}

void Members::addModuleMethod(const MethodRecord& record) {
    const Declaration registered = parseDeclaration(record.declaration);
    const auto& parameters = registered.parameters;
    const auto extended = std::find_if(parameters.begin(), parameters.end(), [](auto& each) { return each.extends; });
    const bool assigns = std::any_of(parameters.begin(), parameters.end(), [](auto& each) { return each.assigns; });
    const MemberKind kind = extended == parameters.end() ? MemberKind::globalMethod : MemberKind::pictureMethod;
    const std::string owner = extended == parameters.end() ? "" : extended->type.name;

    addMethod(record, kind, owner);
    Member& added = members_.back();
    if (assigns) added.setter = std::exchange(added.function, nullptr);

    // The getter and the setter of one property come as two records.
    const auto other = std::find_if(members_.begin(), members_.end() - 1, [&](const Member& member) {
        return member.key == added.key && sameText(member.owner, owner) &&
               (member.function == nullptr || added.function == nullptr);
    });
    if (other == members_.end() - 1) return;
    if (added.function != nullptr) other->function = added.function;
    if (added.setter != nullptr) other->setter = added.setter;
    members_.pop_back();
}

const Member& Members::byDeclaration(std::string_view declaration) const {
    const std::string whole = normalised(declaration);
    const std::size_t point = whole.substr(0, whole.find('(')).find('.');
    const std::string owner = point == std::string::npos ? "" : whole.substr(0, point);
    const std::string key = point == std::string::npos ? whole : whole.substr(point + 1);
    const Member* found = nullptr;
    for (const Member& member : members_) {
        if (!isMethod(member) || member.key != key || (!owner.empty() && !sameText(member.owner, owner))) continue;
        if (found != nullptr)
            throw HostError("\"" + std::string(declaration) + "\" is declared by " + found->owner + " and by " +
                            member.owner + "; put the class and a dot in front");
        found = &member;
    }
    if (found == nullptr) throw HostError("the plugin registered no \"" + std::string(declaration) + "\"");
    return *found;
}

const Member& Members::byCall(std::string_view owner, std::string_view name, std::span<const Value> arguments) const {
    return choose(owner, name, arguments, nullptr);
}

const Member& Members::byAssignment(std::string_view owner, std::string_view name, std::span<const Value> arguments,
                                    const Value& value) const {
    return choose(owner, name, arguments, &value);
}

const Member& Members::choose(std::string_view owner, std::string_view name, std::span<const Value> arguments,
                              const Value* assigned) const {
    const std::string wanted = bareName(name);
    std::vector<std::string> names;
    std::string forms;
    const Member* elsewhere = nullptr;
    const Member* best = nullptr;
    int bestDistance = std::numeric_limits<int>::max();
    for (const Member& member : members_) {
        if (!isMethod(member) || (assigned != nullptr ? member.setter : member.function) == nullptr) continue;
        const bool named = bareName(member.declaration.name) == wanted;
        if (!sameText(member.owner, owner)) {
            if (named) elsewhere = &member;
            continue;
        }
        names.push_back(member.declaration.name);
        if (!named) continue;
        forms += (forms.empty() ? "" : "; ") + member.declaration.text;
        if (assigned != nullptr && !assigned->as(member.declaration.result.kind)) continue;
        const auto away = distance(member, arguments);
        if (away && *away < bestDistance) {
            bestDistance = *away;
            best = &member;
        }
    }
    if (best != nullptr) return *best;

    const std::string quoted = '"' + std::string(name) + '"';
    if (!forms.empty())
        throw HostError("no form of " + quoted + " takes " + listOf(arguments) +
                        (assigned != nullptr ? std::string(" and is assigned a ") + kindName(assigned->kind) : "") +
                        "; there is " + forms);
    const std::string object = owner.empty() ? "nothing" : "a " + std::string(owner);
    if (elsewhere != nullptr) throw HostError(callOf(*elsewhere) + ", not on " + object);
    throw HostError("there is no " + std::string(assigned != nullptr ? "assignable member " : "member ") + quoted +
                    " to call on " + object + didYouMean(name, names));
}

const Member& Members::property(std::string_view className, std::string_view name) const {
    std::vector<std::string> names;
    for (const Member& member : members_) {
        if (isMethod(member) || !sameText(member.owner, className)) continue;
        if (sameText(member.declaration.name, name)) return member;
        names.push_back(member.declaration.name);
    }
    throw HostError("a " + std::string(className) + " has no property \"" + std::string(name) + "\"" +
                    didYouMean(name, names));
}

}  // namespace pxkhost
