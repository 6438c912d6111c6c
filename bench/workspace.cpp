#include "bench/workspace.h"

#include <memory>
#include <stdexcept>

namespace pxkbench {
namespace {

std::unique_ptr<Workspace> kept;

}  // namespace

Workspace::Workspace(const pxkhost::Host& openHost, PictureSize pictureSize, Content pictureContent)
    : host(openHost), size(pictureSize), content(pictureContent) {}

pxkhost::Picture& Workspace::picture(std::size_t index) const {
    pxkhost::Ref<pxkhost::Picture>& made = pictures_[index];
    if (!made) {
        made = host.newPicture(size.width, size.height);
        if (!made) throw std::runtime_error("there is not enough memory for a picture of " + size.text());
        fill(*made, content, static_cast<unsigned>(index));
    }
    return *made;
}

const Workspace& workspaceFor(const pxkhost::Host& host, PictureSize size, Content content) {
    if (!kept || kept->size != size || kept->content != content) {
        kept.reset();
        kept = std::make_unique<Workspace>(host, size, content);
    }
    return *kept;
}

void dropWorkspace() { kept.reset(); }

}  // namespace pxkbench
