/// One ordinary call of everything that the plugin offers.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/host.h"

namespace pxk::test {

/// How a call ended.
enum class Outcome {
    full,    ///< the result that the member is there for
    nothing  ///< nil, false, 0 or -1, silently
};

/// A member, and an ordinary call of it on a picture; members that take more than one picture get the same one again.
struct MemberCall {
    std::string name;
    std::function<Outcome(pxkhost::Host&, const pxkhost::Ref<pxkhost::Picture>& self)> run;
    bool makesPicture;
};

/// Every published member, called with arguments that suit a picture of at least 4 by 4 pixels. A call
/// releases what it gets; exceptions of the host are swallowed and count as nothing.
const std::vector<MemberCall>& everyMemberCall();

}  // namespace pxk::test
