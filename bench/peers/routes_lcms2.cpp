// The route of lcms2: one call, without converting the pixels.
#include <lcms2.h>

#include <memory>
#include <stdexcept>

#include "bench/looks.h"
#include "bench/peers/route.h"

namespace pxkbench {
namespace {

constexpr cmsUInt32Number points = 16;  // one for each multiple of 17 up to 255

cmsInt32Number sample(const cmsUInt16Number in[], cmsUInt16Number out[], void* /*unused*/) {
    const auto point = [&](int channel) { return static_cast<std::uint32_t>((in[channel] + 2184) / 4369); };
    for (std::uint32_t channel = 0; channel < 3; ++channel)
        out[channel] = static_cast<cmsUInt16Number>(lookEntry(point(0), point(1), point(2), channel) * 257 + 0.5);
    return TRUE;
}

// A device link profile that holds just the table. lcms2 resamples it to a finer one of its own; a coarser one would be
// hardly faster and no longer agree.
cmsHTRANSFORM makeTransform() {
    cmsPipeline* const pipeline = cmsPipelineAlloc(nullptr, 3, 3);
    cmsStage* const table = cmsStageAllocCLut16bit(nullptr, points, 3, 3, nullptr);
    cmsStageSampleCLut16bit(table, sample, nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table);
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetDeviceClass(profile, cmsSigLinkClass);
    cmsSetColorSpace(profile, cmsSigRgbData);
    cmsSetPCS(profile, cmsSigRgbData);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    cmsHTRANSFORM transform =
        cmsCreateTransform(profile, TYPE_BGRA_8, nullptr, TYPE_BGRA_8, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
    cmsCloseProfile(profile);
    if (transform == nullptr) throw std::runtime_error("lcms2 created no transform");
    return transform;
}

PeerRun lookUp(const PeerPictures& pictures) {
    const std::shared_ptr<void> transform(makeTransform(), cmsDeleteTransform);
    const auto result = std::make_shared<Words>(pictures.source.size());
    return {[=, &pictures] {
                cmsDoTransform(transform.get(), pictures.source.data(), result->data(),
                               static_cast<cmsUInt32Number>(result->size()));
            },
            [=] { return coloursOf(*result); }};
}

}  // namespace

Library littleCms() {
    const int version = cmsGetEncodedCMMversion();
    return {"lcms2 " + std::to_string(version / 1000) + "." + std::to_string(version % 1000 / 10),
            {{"PictureLut3DPXK.Run", "cmsDoTransform", 3, lookUp}}};
}

}  // namespace pxkbench
