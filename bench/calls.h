/// Calls of members, looked up by their registered declarations.
#pragma once

#include <stdexcept>
#include <string>
#include <type_traits>

#include "bench/rows.h"
#include "host/host.h"

namespace pxkbench {

using PictureResult = pxkhost::Ref<pxkhost::Picture>;

/// Throws for a nil picture or string and for false. Any number is accepted.
template <class Result>
void expectSuccess(const Result& result) {
    if constexpr (!std::is_arithmetic_v<Result> || std::is_same_v<Result, bool>)
        if (!result) throw std::runtime_error("the member failed");
}

/// Calls a bound member and checks its result.
template <class Result, class... Parameters, class... Arguments>
void callOnce(Outcome* outcome, const pxkhost::TypedMember<Result(Parameters...)>& member,
              const Arguments&... arguments) {
    const Result result = member(arguments...);
    expectSuccess(result);
    if (outcome != nullptr) *outcome = outcomeOf(result);
}

/// A picture method, called on the workspace's source. `Result` is the C++ type of its result, as for Host::member.
template <class Result, class... Arguments>
Prepare method(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source()](Outcome* outcome) { callOnce(outcome, member, self, arguments...); };
    };
}

/// A picture method whose first argument is another picture of the same size.
template <class Result, class... Arguments>
Prepare methodOfTwo(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source(), other = &work.second()](Outcome* outcome) {
            callOnce(outcome, member, self, other, arguments...);
        };
    };
}

/// A picture method that works in place, called on the workspace's target.
template <class Result, class... Arguments>
Prepare methodOnTarget(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.target()](Outcome* outcome) {
            expectSuccess(member(self, arguments...));
            if (outcome != nullptr) *outcome = outcomeOf(*self);
        };
    };
}

/// "Run" of an instance of one of the plugin's classes, which creates a new DestinationPicture each time. `setUp` sets
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
            expectSuccess(run(instance.get()));
            if (outcome != nullptr) {
                const pxkhost::Value made = pxkhost::getProperty(*instance, *destination);
                *outcome = outcomeOf(dynamic_cast<const pxkhost::Picture&>(*made.object));
            }
            pxkhost::setProperty(*instance, *destination, pxkhost::Value::ofObject(ValueKind::picture, nullptr));
        };
    };
}

}  // namespace pxkbench
