/// What a measurement works on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

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

inline constexpr PictureSize onePixel = {1, 1};
inline constexpr PictureSize smallSize = {512, 512};
inline constexpr PictureSize largeSize = {4096, 3072};
inline constexpr PictureSize waveformSize = {1920, 400};

/// How many samples waveforms are drawn from.
inline constexpr std::size_t sampleCount = 10'000'000;

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

    /// Signed samples of 16 bits: a sound that swells and fades, with noise.
    pxkhost::MemoryBlock& samples() const;
    /// Three bytes a pixel, for the limits of work on such.
    std::span<std::uint32_t> packed() const;

  private:
    pxkhost::Picture& picture(std::size_t index) const;

    // Made when first asked for.
    mutable std::array<pxkhost::Ref<pxkhost::Picture>, 4> pictures_;
    mutable pxkhost::Ref<pxkhost::MemoryBlock> samples_;
    mutable std::vector<std::uint32_t> packed_;
};

/// A workspace for a size and content; those of different places have the same pictures elsewhere in memory. They are
/// kept until another size or content is asked for, since measurements of the same follow each other.
const Workspace& workspaceFor(const pxkhost::Host& host, PictureSize size, Content content, std::size_t place = 0);

/// Gives the kept workspaces back; needed before the host closes.
void dropWorkspaces();

}  // namespace pxkbench
