/// The pictures and samples that a measurement works on.
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

/// How many samples a waveform is drawn from.
inline constexpr std::size_t sampleCount = 10'000'000;

/// Pictures of one size and content, filled so that their memory is mapped.
class Workspace {
  public:
    Workspace(const pxkhost::Host& openHost, PictureSize pictureSize, Content pictureContent);

    const pxkhost::Host& host;
    const PictureSize size;
    const Content content;

    /// The picture that members are called on. The pictures have the same content from different seeds.
    pxkhost::Picture& source() const { return picture(0); }
    /// For members and limits that read several pictures.
    pxkhost::Picture& second() const { return picture(1); }
    pxkhost::Picture& third() const { return picture(2); }
    /// The picture that limits, and members that work in place, write to.
    pxkhost::Picture& target() const { return picture(3); }

    /// Signed 16-bit samples: a tone that swells and fades, with noise.
    pxkhost::MemoryBlock& samples() const;
    /// Three bytes per pixel, for the limits of binary strings.
    std::span<std::uint32_t> packed() const;

  private:
    pxkhost::Picture& picture(std::size_t index) const;

    // All of these are created on first use.
    mutable std::array<pxkhost::Ref<pxkhost::Picture>, 4> pictures_;
    mutable pxkhost::Ref<pxkhost::MemoryBlock> samples_;
    mutable std::vector<std::uint32_t> packed_;
};

/// A workspace for a size and content. Workspaces of different numbers hold the same pictures at other addresses. They
/// are kept until another size or content is asked for, since measurements of the same size and content come together.
const Workspace& workspaceFor(const pxkhost::Host& host, PictureSize size, Content content, std::size_t number = 0);

/// Frees the kept workspaces; required before the host closes.
void dropWorkspaces();

}  // namespace pxkbench
