/// Files of every format become pictures.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "files/formats.h"
#include "files/pxkfiles.h"

namespace pxkfiles {

/// A picture that owns what it points to.
struct OwnedPicture {
    Picture view;
    std::unique_ptr<std::uint32_t[]> pixels;
    std::vector<std::uint8_t> profile;
    std::vector<std::uint8_t> exif;
    std::vector<std::uint8_t> xmp;
    std::string profileName;

    /// Keeps a profile, when it is one for RGB, and shows it in the view; its name is shown in any case.
    void setProfile(std::span<const std::uint8_t> bytes);
};

/// Reads a picture of a format that is known from its content.
/// @throws FileProblem or std::bad_alloc
std::unique_ptr<OwnedPicture> readPicture(Format format, std::span<const std::uint8_t> file,
                                          const ReadOptions& options);

}  // namespace pxkfiles
