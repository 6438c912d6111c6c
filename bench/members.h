/// The table of what is measured: one row a member.
#pragma once

#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "bench/limits.h"
#include "bench/workspace.h"

namespace pxkbench {

/// Calls a member once on a workspace's pictures and gives its result back.
using Call = std::function<void()>;

/// The most that a member's work may cost, as a multiple of its limit; 0 where nothing is asked.
struct Bars {
    double small = 0;
    double large = 0;
};

struct Row {
    std::string_view name;  ///< as a program would write the call
    std::function<Call(const Workspace&)> prepare;
    const Limit* limit;
    /// Whether a call makes a result picture. The cost of making one is then measured beside and taken off, since it is
    /// the host's work and the same for every member.
    bool makesPicture;
    Bars bars;
    /// What it is measured on; one content is enough where none can make a difference.
    std::vector<Content> contents = {Content::photo, Content::noise, Content::flat};
};

std::span<const Row> rows();

/// Fails for a nil picture, since a member that refuses its work must not count as fast.
template <class Result>
void expectWork(const Result& result) {
    if constexpr (std::is_same_v<Result, pxkhost::Ref<pxkhost::Picture>>)
        if (!result) throw std::runtime_error("the member gave no picture");
}

/// A method of pictures by its declaration as registered, called on the workspace's source with the given arguments.
/// `Result` is the C++ type of its result, as for Host::member.
template <class Result, class... Arguments>
auto method(const char* declaration, Arguments... arguments) {
    return [=](const Workspace& work) -> Call {
        const auto member = work.host.member<Result(pxkhost::Picture*, Arguments...)>(declaration);
        return [=, self = &work.source()] {
            if constexpr (std::is_void_v<Result>)
                member(self, arguments...);
            else
                expectWork(member(self, arguments...));
        };
    };
}

}  // namespace pxkbench
