#include "tool/commands/picture_folder.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace pxk::tool {
namespace {

namespace fs = std::filesystem;

fs::path newFolder() {
    std::string name = (fs::temp_directory_path() / "pxk-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder " + name);
    return name;
}

pxk_host* newHost() {
    pxk_options options{};
    options.plugin_path = PXK_TRIAL_PLUGIN;
    options.application = PXK_DESKTOP;  // whose pictures keep every alpha
    pxk_host* host = pxk_open(&options);
    if (host == nullptr) throw std::runtime_error(pxk_last_error(nullptr));
    return host;
}

}  // namespace

Pixels colourful(std::int32_t width, std::int32_t height) {
    Pixels pixels{width, height, {}};
    for (std::int32_t i = 0; i < width * height; ++i) {
        pixels.words.push_back(0xFF000000U | (static_cast<std::uint32_t>(i + 1) * 0x123457U & 0xFFFFFFU));
    }
    return pixels;
}

Pixels inverted(Pixels pixels) {
    for (std::uint32_t& word : pixels.words) word ^= 0xFFFFFFU;
    return pixels;
}

PictureFolder::PictureFolder() : path_(newFolder()), host_(newHost()) {}

PictureFolder::~PictureFolder() {
    pxk_close(host_);
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::vector<std::string> PictureFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void PictureFolder::writePicture(const std::string& name, const Pixels& pixels) const {
    pxk_object* picture = pxk_new_picture(host_, pixels.width, pixels.height);
    const bool done = picture != nullptr && pxk_set_pixels(host_, picture, pixels.words.data()) == PXK_OK &&
                      pxk_save_picture(host_, picture, path(name).c_str()) == PXK_OK;
    const std::string why = pxk_last_error(host_);
    pxk_release(picture);
    if (!done) throw std::runtime_error(why);
}

Pixels PictureFolder::readPicture(const std::string& name) const {
    pxk_object* picture = pxk_load_picture(host_, path(name).c_str());
    if (picture == nullptr) throw std::runtime_error(pxk_last_error(host_));
    Pixels pixels{pxk_picture_width(picture), pxk_picture_height(picture), {}};
    pixels.words.resize(static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.height));
    const bool done = pxk_get_pixels(host_, picture, pixels.words.data()) == PXK_OK;
    pxk_release(picture);
    if (!done) throw std::runtime_error(pxk_last_error(host_));
    return pixels;
}

void PictureFolder::writeText(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
}

std::string PictureFolder::readText(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace pxk::tool
