// The routes of libvips, on this thread, strip by strip into memory allocated in advance.
#include <vips/vips.h>

#include <memory>
#include <stdexcept>

#include "bench/looks.h"
#include "bench/peers/route.h"

namespace pxkbench {
namespace {

struct Unref {
    void operator()(void* object) const { g_object_unref(object); }
};
using Image = std::unique_ptr<VipsImage, Unref>;
using Region = std::unique_ptr<VipsRegion, Unref>;

void expect(int failed) {
    if (failed != 0) throw std::runtime_error(std::string("libvips: ") + vips_error_buffer());
}

constexpr int bands = 4;

// The bands are blue, green, red and alpha where libvips assumes red first, which matters only if bands are told apart.
Image imageOf(const PeerPictures& pictures, const Words& words) {
    return Image(vips_image_new_from_memory(words.data(), words.size() * sizeof words[0], pictures.width,
                                            pictures.height, bands, VIPS_FORMAT_UCHAR));
}

Image memoryLike(const VipsImage& image) {
    Image memory(vips_image_new_memory());
    vips_image_init_fields(memory.get(), image.Xsize, image.Ysize, image.Bands, image.BandFmt, VIPS_CODING_NONE,
                           VIPS_INTERPRETATION_sRGB, 1, 1);
    expect(vips_image_write_prepare(memory.get()));
    return memory;
}

// Computes the pixels of an image, which libvips evaluates lazily.
void evaluate(VipsImage* image, VipsImage* memory) {
    constexpr int pixels = 1 << 16;
    const Region from(vips_region_new(image));
    const Region to(vips_region_new(memory));
    const VipsRect everything = {0, 0, image->Xsize, image->Ysize};
    expect(vips_region_image(to.get(), &everything));
    const int rows = std::max(1, pixels / image->Xsize);
    for (int y = 0; y < image->Ysize; y += rows) {
        const VipsRect strip = {0, y, image->Xsize, std::min(rows, image->Ysize - y)};
        expect(vips_region_prepare_to(from.get(), to.get(), &strip, 0, y));
    }
}

struct Pipeline {
    std::vector<Image> inputs;
    Image result;
    Image memory;
};

// `operation` sets up the image that is to be computed from the source.
template <class Operation>
auto pipeline(Operation operation) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const auto line = std::make_shared<Pipeline>();
        line->inputs.push_back(imageOf(pictures, pictures.source));
        line->result = operation(line->inputs[0].get());
        line->memory = memoryLike(*line->result);
        return {[=] { evaluate(line->result.get(), line->memory.get()); },
                [=] {
                    const auto* const words =
                        reinterpret_cast<const std::uint32_t*>(VIPS_IMAGE_ADDR(line->memory.get(), 0, 0));
                    return coloursOf({words, VIPS_IMAGE_N_PELS(line->memory.get())});
                }};
    };
}

Image invert(VipsImage* source) {
    VipsImage* result = nullptr;
    expect(vips_invert(source, &result, nullptr));
    return Image(result);
}

Image line(VipsImage* source) {
    VipsImage* result = nullptr;
    expect(vips_linear1(source, &result, 0.9, 8.0, "uchar", TRUE, nullptr));
    return Image(result);
}

Image lookUp(VipsImage* source) {
    std::uint8_t entries[256 * bands];
    for (int value = 0; value < 256; ++value)
        for (int band = 0; band < bands; ++band)
            entries[value * bands + band] = band < 3 ? tableEntry(2 - band, value) : 255;
    const Image table(vips_image_new_from_memory_copy(entries, sizeof entries, 256, 1, bands, VIPS_FORMAT_UCHAR));
    VipsImage* result = nullptr;
    expect(vips_maplut(source, &result, table.get(), nullptr));
    return Image(result);
}

PeerRun histograms(const PeerPictures& pictures) {
    const std::shared_ptr<VipsImage> source(imageOf(pictures, pictures.source));
    const auto counts = std::make_shared<Image>();
    return {[=] {
                VipsImage* found = nullptr;
                expect(vips_hist_find(source.get(), &found, nullptr));
                counts->reset(found);
            },
            [=] {
                Outcome outcome;
                const auto* const numbers =
                    reinterpret_cast<const std::uint32_t*>(VIPS_IMAGE_ADDR(counts->get(), 0, 0));
                for (const int band : {2, 1, 0})
                    for (int value = 0; value < 256; ++value) {
                        const bool counted = value < (*counts)->Xsize;
                        outcome.push_back(counted ? numbers[value * bands + band] : 0);
                    }
                return outcome;
            }};
}

}  // namespace

Library libvips() {
    expect(VIPS_INIT("pxk_peers"));
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    return {std::string("libvips ") + vips_version_string(),
            {
                {"InvertPXK", "vips_invert, alpha too", 0, pipeline(invert)},
                {"ChangeCustomPXK(0.9, 8)", "vips_linear", 1, pipeline(line)},
                {"CountColorsPXK", "vips_hist_find", 0, histograms},
                {"TransformColorsPXK", "vips_maplut", 0, pipeline(lookUp)},
                {"TransformColorsPXK(dest)", "vips_maplut", 0, pipeline(lookUp)},
            }};
}

}  // namespace pxkbench
