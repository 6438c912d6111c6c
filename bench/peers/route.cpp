#include "bench/peers/route.h"

namespace pxkbench {
namespace {

Words wordsOf(const pxkhost::Picture& picture) {
    Words words = outcomeOf(picture);
    for (std::uint32_t& word : words) word |= 0xFF000000;
    return words;
}

}  // namespace

PeerPictures::PeerPictures(const Workspace& work)
    : width(work.size.width),
      height(work.size.height),
      source(wordsOf(work.source())),
      second(wordsOf(work.second())),
      third(wordsOf(work.third())),
      target(wordsOf(work.target())) {}

Outcome coloursOf(std::span<const std::uint32_t> words) {
    Outcome colours(words.begin(), words.end());
    for (std::uint32_t& colour : colours) colour &= 0xFFFFFF;
    return colours;
}

Libraries allLibraries() {
    Libraries libraries;
    libraries.present.push_back(cLibrary());
    libraries.present.push_back(libgd());
#ifdef PXK_WITH_OPENCV
    libraries.present.push_back(openCv());
#else
    libraries.absent.emplace_back("OpenCV");
#endif
#ifdef PXK_WITH_VIPS
    libraries.present.push_back(libvips());
#else
    libraries.absent.emplace_back("libvips");
#endif
#ifdef PXK_WITH_LCMS2
    libraries.present.push_back(littleCms());
#else
    libraries.absent.emplace_back("lcms2");
#endif
#ifdef PXK_WITH_AVFILTER
    libraries.present.push_back(libavfilter());
#else
    libraries.absent.emplace_back("libavfilter");
#endif
    return libraries;
}

}  // namespace pxkbench
