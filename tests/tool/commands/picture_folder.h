/// A folder of the test's own, with picture files in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "host/include/pxkhost.h"

namespace pxk::tool {

struct Pixels {
    std::int32_t width;
    std::int32_t height;
    std::vector<std::uint32_t> words;  ///< 0xAARRGGBB, row by row

    bool operator==(const Pixels&) const = default;
};

/// A picture in which no two neighbours are alike.
Pixels colourful(std::int32_t width, std::int32_t height);

/// The picture with every colour turned into its opposite.
Pixels inverted(Pixels pixels);

class PictureFolder {
  public:
    PictureFolder();
    ~PictureFolder();
    PictureFolder(const PictureFolder&) = delete;
    PictureFolder& operator=(const PictureFolder&) = delete;

    std::string path() const { return path_; }
    std::string path(const std::string& name) const { return path_ / name; }
    bool has(const std::string& name) const { return std::filesystem::exists(path_ / name); }
    /// The names in the folder, in order.
    std::vector<std::string> names() const;

    void writePicture(const std::string& name, const Pixels& pixels) const;
    Pixels readPicture(const std::string& name) const;
    void writeText(const std::string& name, const std::string& text) const;
    std::string readText(const std::string& name) const;

  private:
    std::filesystem::path path_;
    pxk_host* host_;
};

}  // namespace pxk::tool
