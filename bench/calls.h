/// Calls of members by their declarations as registered.
#pragma once

#include <stdexcept>
#include <string>
#include <type_traits>

#include "bench/rows.h"
#include "host/host.h"

namespace pxkbench {

using PictureResult = pxkhost::Ref<pxkhost::Picture>;

/// Fails for a nil picture or string and for false. Numbers may be what they are.
template <class Result>
void expectWork(const Result& result) {
    if constexpr (!std::is_arithmetic_v<Result> || std::is_same_v<Result, bool>)
        if (!result) throw std::runtime_error("the member did not do its work");
}

/// Calls a bound member and checks what it gives.
template <class Result, class... Parameters, class... Arguments>
void callOnce(Outcome* outcome, const pxkhost::TypedMember<Result(Parameters...)>& member,
              const Arguments&... arguments) {
    const Result result = member(arguments...);
    expectWork(result);
    if (outcome != nullptr) *outcome = outcomeOf(result);
}

/// A method of pictures, called on the workspace's source. `Result` is the C++ type of its result, as for Host::member.
template <class Result, class... Arguments>
Prepare method(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source()](Outcome* outcome) { callOnce(outcome, member, self, arguments...); };
    };
}

/// A method of pictures that takes another of the same size first.
template <class Result, class... Arguments>
Prepare methodOfTwo(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source(), other = &work.second()](Outcome* outcome) {
            callOnce(outcome, member, self, other, arguments...);
        };
    };
}

/// A method that changes the picture which the limits write.
template <class Result, class... Arguments>
Prepare methodOnTarget(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.target()](Outcome* outcome) {
            expectWork(member(self, arguments...));
            if (outcome != nullptr) *outcome = outcomeOf(*self);
        };
    };
}

/// "Run" of an instance of one of the plugin's classes, which makes a new DestinationPicture each time. `setUp` sets
/// the instance's other properties.
template <class SetUp>
Prepare runOf(const char* className, SetUp setUp) {
    return [=](const Workspace& work) -> Call {
        using pxkhost::ValueKind;
        const auto instance = work.host.newInstance(className);
        pxkhost::setProperty(
            *instance, work.host.members().property(className, "SourcePicture"),
            pxkhost::Value::ofObject(ValueKind::picture, pxkhost::Ref<pxkhost::Picture>::share(&work.source())));
        setUp(work.host, *instance);
        const pxkhost::Member& destination = work.host.members().property(className, "DestinationPicture");
        const auto run = work.host.member<bool(pxkhost::Instance*)>(std::string(className) + ".Run as boolean");
        return [=, destination = &destination](Outcome* outcome) {
            expectWork(run(instance.get()));
            if (outcome != nullptr) {
                const pxkhost::Value made = pxkhost::getProperty(*instance, *destination);
                *outcome = outcomeOf(dynamic_cast<const pxkhost::Picture&>(*made.object));
            }
            pxkhost::setProperty(*instance, *destination, pxkhost::Value::ofObject(ValueKind::picture, nullptr));
        };
    };
}

}  // namespace pxkbench
