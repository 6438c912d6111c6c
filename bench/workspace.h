/// What a measurement works on.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "bench/pictures.h"
#include "host/host.h"

namespace pxkbench {

struct PictureSize {
    int width = 0;
    int height = 0;

    long long pixels() const { return static_cast<long long>(width) * height; }
    std::string text() const { return std::to_string(width) + "x" + std::to_string(height); }
    bool operator==(const PictureSize&) const = default;
};

inline constexpr PictureSize smallSize = {512, 512};
inline constexpr PictureSize largeSize = {4096, 3072};

/// Pictures of one size and content, all with warm memory.
class Workspace {
  public:
    Workspace(const pxkhost::Host& openHost, PictureSize pictureSize, Content pictureContent);

    const pxkhost::Host& host;
    const PictureSize size;
    const Content content;

    /// What members are called on. All pictures are of the same kind and differ; each is made when first asked for.
    pxkhost::Picture& source() const { return picture(0); }
    /// For members and limits that read more than one picture.
    pxkhost::Picture& second() const { return picture(1); }
    pxkhost::Picture& third() const { return picture(2); }
    /// What the limits write.
    pxkhost::Picture& target() const { return picture(3); }

  private:
    pxkhost::Picture& picture(std::size_t index) const;

    mutable std::array<pxkhost::Ref<pxkhost::Picture>, 4> pictures_;
};

/// The workspace for a size and content. The last one is kept, since measurements of the same follow each other.
const Workspace& workspaceFor(const pxkhost::Host& host, PictureSize size, Content content);

/// Gives the kept workspace back; needed before the host closes.
void dropWorkspace();

}  // namespace pxkbench
