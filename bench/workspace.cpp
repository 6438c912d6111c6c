#include "bench/workspace.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace pxkbench {
namespace {

std::vector<std::unique_ptr<Workspace>> kept;

}  // namespace

Workspace::Workspace(const pxkhost::Host& openHost, PictureSize pictureSize, Content pictureContent)
    : host(openHost), size(pictureSize), content(pictureContent) {}

pxkhost::Picture& Workspace::picture(std::size_t index) const {
    pxkhost::Ref<pxkhost::Picture>& made = pictures_[index];
    if (!made) {
        made = host.newPicture(size.width, size.height);
        if (!made) throw std::runtime_error("not enough memory for a picture of " + size.text());
        fill(*made, content, static_cast<unsigned>(index));
    }
    return *made;
}

pxkhost::MemoryBlock& Workspace::samples() const {
    if (!samples_) {
        samples_ = pxkhost::MemoryBlock::make(static_cast<std::int32_t>(sampleCount * sizeof(std::int16_t)));
        std::uint32_t random = 1;
        for (std::size_t i = 0; i < sampleCount; ++i) {
            random = random * 1664525 + 1013904223;
            const double time = static_cast<double>(i) / sampleCount;
            const double loudness = 9000 * std::sin(time * 3.14159) * (1 + 0.5 * std::sin(time * 200));
            const double tone = loudness * std::sin(static_cast<double>(i) * 0.0628);
            const auto sample = static_cast<std::int16_t>(tone + (random >> 20) - 2048.0);
            std::memcpy(samples_->bytes().data() + i * sizeof sample, &sample, sizeof sample);
        }
    }
    return *samples_;
}

std::span<std::uint32_t> Workspace::packed() const {
    packed_.resize(static_cast<std::size_t>(size.pixels()) / 4 * 3);
    return packed_;
}

const Workspace& workspaceFor(const pxkhost::Host& host, PictureSize size, Content content, std::size_t number) {
    if (!kept.empty() && (kept.front()->size != size || kept.front()->content != content)) kept.clear();
    while (kept.size() <= number) kept.push_back(std::make_unique<Workspace>(host, size, content));
    return *kept[number];
}

void dropWorkspaces() { kept.clear(); }

}  // namespace pxkbench
