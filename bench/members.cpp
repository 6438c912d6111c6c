#include "bench/members.h"

#include <array>

namespace pxkbench {
namespace {

using PictureResult = pxkhost::Ref<pxkhost::Picture>;

// What every member that gives a new picture pays the host for it.
Call newPicture(const Workspace& work) {
    return [&work] { expectWork(work.host.newPicture(work.size.width, work.size.height)); };
}

constexpr bool makesPicture = true;
constexpr bool makesNone = false;

}  // namespace

std::span<const Row> rows() {
    static const std::array table = {
        Row{"New Picture", newPicture, &copyLimit, makesNone, {0, 1.0}, {Content::flat}},
        Row{"InvertPXK", method<PictureResult>("InvertPXK as picture"), &copyLimit, makesPicture, {2.0, 1.3}},
        Row{"InvertGrayPXK", method<PictureResult>("InvertGrayPXK as picture"), &copyLimit, makesPicture, {2.0, 1.3}},
    };
    return table;
}

}  // namespace pxkbench
