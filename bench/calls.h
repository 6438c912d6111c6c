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
void callOnce(const pxkhost::TypedMember<Result(Parameters...)>& member, const Arguments&... arguments) {
    if constexpr (std::is_void_v<Result>)
        member(arguments...);
    else
        expectWork(member(arguments...));
}

/// A method of pictures, called on the workspace's source. `Result` is the C++ type of its result, as for Host::member.
template <class Result, class... Arguments>
Prepare method(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source()] { callOnce(member, self, arguments...); };
    };
}

/// A method of pictures that takes another of the same size first.
template <class Result, class... Arguments>
Prepare methodOfTwo(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source(), other = &work.second()] { callOnce(member, self, other, arguments...); };
    };
}

/// A method that changes the picture which the limits write.
template <class Result, class... Arguments>
Prepare methodOnTarget(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.target()] { callOnce(member, self, arguments...); };
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
        return [=, destination = &destination] {
            callOnce(run, instance.get());
            pxkhost::setProperty(*instance, *destination, pxkhost::Value::ofObject(ValueKind::picture, nullptr));
        };
    };
}

}  // namespace pxkbench
