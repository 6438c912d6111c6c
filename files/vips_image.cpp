#include "files/vips_image.h"

#include <dlfcn.h>
#include <gmodule.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "files/messages.h"

namespace pxkfiles {
namespace {

// libvips loads every module that it finds when it starts, those for PDF and the like among them, which takes 45 ms.
// It looks where this variable points.
class NoModules {
  public:
    NoModules() {
        if (const char* value = std::getenv(variable)) before_ = value;
        setenv(variable, "/nonexistent", 1);
    }
    ~NoModules() {
        if (before_) {
            setenv(variable, before_->c_str(), 1);
        } else {
            unsetenv(variable);
        }
    }
    NoModules(const NoModules&) = delete;
    NoModules& operator=(const NoModules&) = delete;

  private:
    static constexpr const char* variable = "VIPSHOME";
    std::optional<std::string> before_;
};

void ignoreLog(const char* /*domain*/, GLogLevelFlags /*level*/, const char* /*text*/, void* /*data*/) {}

std::uint32_t word(std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

template <class Sample, class Rounding>
void convertRow(const Sample* samples, int bands, std::uint32_t* words, int width, const Rounding& rounded) {
    const bool colour = bands >= 3;
    const bool alpha = bands == 2 || bands >= 4;
    for (int x = 0; x < width; ++x, samples += bands) {
        const std::uint32_t red = rounded(samples[0]);
        words[x] = word(red, colour ? rounded(samples[1]) : red, colour ? rounded(samples[2]) : red,
                        alpha ? rounded(samples[colour ? 3 : 1]) : 255);
    }
}

// 16 bits to 8, to the nearest.
std::vector<std::uint8_t> roundingTable(int largestSample) {
    std::vector<std::uint8_t> table(65536);
    for (int sample = 0; sample < 65536; ++sample)
        table[static_cast<std::size_t>(sample)] =
            static_cast<std::uint8_t>((std::min(sample, largestSample) * 255 + largestSample / 2) / largestSample);
    return table;
}

template <int bands>
int convertRegion(VipsRegion* region, void* /*sequence*/, void* picturePointer, void* /*unused*/, gboolean* /*stop*/) {
    const auto& picture = *static_cast<const Picture*>(picturePointer);
    const VipsRect& part = region->valid;
    for (int y = part.top; y < part.top + part.height; ++y) {
        VipsPel* sample = VIPS_REGION_ADDR(region, part.left, y);
        const std::uint32_t* row =
            picture.pixels + static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + part.left;
        for (int x = 0; x < part.width; ++x, sample += bands) {
            sample[0] = static_cast<VipsPel>(row[x] >> 16);
            sample[1] = static_cast<VipsPel>(row[x] >> 8);
            sample[2] = static_cast<VipsPel>(row[x]);
            if constexpr (bands == 4) sample[3] = static_cast<VipsPel>(row[x] >> 24);
        }
    }
    return 0;
}

}  // namespace

void startVips() {
    static std::once_flag once;
    std::call_once(once, [] {
        g_log_set_handler("VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK), ignoreLog, nullptr);
        const NoModules noModules;
        if (vips_init("pxkfiles") != 0) throw FileProblem("libvips does not start");
        vips_block_untrusted_set(TRUE);
        vips_cache_set_max(0);
        vips_concurrency_set(1);
    });
}

void loadHeifModule() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (vips_type_find("VipsOperation", "heifload_source") != 0) return;  // built in
        Dl_info library;
        if (dladdr(reinterpret_cast<const void*>(vips_init), &library) == 0) return;
        const std::filesystem::path module =
            std::filesystem::path(library.dli_fname).parent_path() /
            ("vips-modules-" + std::to_string(vips_version(0)) + "." + std::to_string(vips_version(1))) /
            "vips-heif.so";
        g_module_open(module.c_str(), G_MODULE_BIND_LAZY);  // without it, loading and saving say what is missing
    });
}

std::unique_ptr<std::uint32_t[]> wordsOf(VipsImage& image, int largestSample) {
    const int width = image.Xsize;
    const int height = image.Ysize;
    const auto rowLength = static_cast<std::size_t>(width);
    // Not set to 0: the system hands out memory as it is touched.
    std::unique_ptr<std::uint32_t[]> words(new std::uint32_t[rowLength * static_cast<std::size_t>(height)]);
    const bool wide = image.BandFmt == VIPS_FORMAT_USHORT;
    const std::vector<std::uint8_t> table = wide ? roundingTable(largestSample) : std::vector<std::uint8_t>();

    const std::unique_ptr<VipsRegion, ReleaseObject> region(vips_region_new(&image));
    constexpr int stripHeight = 64;
    for (int top = 0; top < height; top += stripHeight) {
        const VipsRect strip{0, top, width, std::min(stripHeight, height - top)};
        if (vips_region_prepare(region.get(), &strip) != 0) throwReadingProblem();
        for (int y = top; y < top + strip.height; ++y) {
            const void* samples = VIPS_REGION_ADDR(region.get(), 0, y);
            std::uint32_t* row = words.get() + static_cast<std::size_t>(y) * rowLength;
            if (wide) {
                convertRow(static_cast<const std::uint16_t*>(samples), image.Bands, row, width,
                           [&](std::uint16_t sample) { return table[sample]; });
            } else {
                convertRow(static_cast<const std::uint8_t*>(samples), image.Bands, row, width,
                           [](std::uint8_t sample) { return sample; });
            }
        }
    }
    return words;
}

Image imageOver(Picture& picture, bool withAlpha) {
    Image image(vips_image_new());
    constexpr double usualDensity = 72 / 25.4;
    vips_image_init_fields(image.get(), picture.width, picture.height, withAlpha ? 4 : 3, VIPS_FORMAT_UCHAR,
                           VIPS_CODING_NONE, VIPS_INTERPRETATION_sRGB, usualDensity, usualDensity);
    if (vips_image_pipelinev(image.get(), VIPS_DEMAND_STYLE_THINSTRIP, nullptr) != 0 ||
        vips_image_generate(image.get(), nullptr, withAlpha ? convertRegion<4> : convertRegion<3>, nullptr, &picture,
                            nullptr) != 0)
        throwWritingProblem();
    return image;
}

}  // namespace pxkfiles
