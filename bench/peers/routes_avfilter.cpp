// The routes of libavfilter, FFmpeg's filter library.
extern "C" {
#include <libavfilter/avfilter.h>
#include <libavutil/frame.h>
}

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "bench/looks.h"
#include "bench/peers/filter_graph.h"
#include "bench/peers/route.h"

#ifdef PXK_WITH_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace pxkbench {
namespace {

// One filter, without converting the pixels.
auto filtered(const std::string& filter) {
    return [=](const PeerPictures& pictures) -> PeerRun {
        const auto graph = std::make_shared<FilterGraph>(filter, "bgra", pictures.width, pictures.height);
        graph->setPlane(0, pictures.source.data(), pictures.width * 4);
        const auto result = std::make_shared<const AVFrame*>();
        return {[=] { *result = &graph->run(); },
                [=] {
                    Words words;
                    for (int y = 0; y < (*result)->height; ++y) {
                        const auto* const row =
                            reinterpret_cast<const std::uint32_t*>((*result)->data[0] + y * (*result)->linesize[0]);
                        words.insert(words.end(), row, row + (*result)->width);
                    }
                    return coloursOf(words);
                }};
    };
}

// Writes the table to a .cube file, in which red varies fastest.
std::string lookFilter() {
    constexpr std::uint32_t points = 16;
    const auto path = std::filesystem::temp_directory_path() / "pxk_peers_look.cube";
    std::ofstream file(path);
    file.precision(9);
    file << "LUT_3D_SIZE " << points << "\n";
    for (std::uint32_t b = 0; b < points; ++b)
        for (std::uint32_t g = 0; g < points; ++g)
            for (std::uint32_t r = 0; r < points; ++r) {
                for (std::uint32_t channel = 0; channel < 3; ++channel)
                    file << lookEntry(r, g, b, channel) / 255 << (channel < 2 ? ' ' : '\n');
            }
    return "lut3d=file=" + path.string() + ":interp=tetrahedral";
}

PeerRun lookUp(const PeerPictures& pictures) { return filtered(lookFilter())(pictures); }

#ifdef PXK_WITH_OPENCV

// The filter is vectorised for planes of floats only, so OpenCV splits the pixels into planes and merges them again, in
// strips that stay in the cache.
class PlanarLookUp {
  public:
    explicit PlanarLookUp(const PeerPictures& pictures)
        : source_(pictures.height, pictures.width, CV_8UC4, const_cast<std::uint32_t*>(pictures.source.data())),
          result_(source_.size(), CV_8UC4),
          rows_(rowsOfAStrip(pictures)),
          graph_(lookFilter(), "gbrpf32le", pictures.width, rows_) {
        for (cv::Mat& plane : planes_) plane.create(rows_, source_.cols, CV_32F);
        // The planes of this format are green, blue and red.
        const int order[] = {1, 0, 2};
        for (int plane = 0; plane < 3; ++plane)
            graph_.setPlane(plane, planes_[order[plane]].data, static_cast<int>(planes_[order[plane]].step));
    }

    void run() {
        for (int y = 0; y < source_.rows; y += rows_) {
            cv::split(source_.rowRange(y, y + rows_), bytes_);
            for (int channel = 0; channel < 3; ++channel)
                bytes_[static_cast<std::size_t>(channel)].convertTo(planes_[channel], CV_32F, 1 / 255.0);
            const AVFrame& frame = graph_.run();
            const int planeOf[] = {1, 0, 2};
            for (int channel = 0; channel < 3; ++channel) {
                const int plane = planeOf[channel];
                const cv::Mat looked(rows_, source_.cols, CV_32F, frame.data[plane],
                                     static_cast<std::size_t>(frame.linesize[plane]));
                looked.convertTo(bytes_[static_cast<std::size_t>(channel)], CV_8U, 255);
            }
            cv::Mat strip = result_.rowRange(y, y + rows_);
            cv::merge(bytes_, strip);
        }
    }

    Outcome outcome() const { return coloursOf({result_.ptr<std::uint32_t>(), result_.total()}); }

  private:
    // About 16 Ki pixels, with the same number of rows in each strip.
    static int rowsOfAStrip(const PeerPictures& pictures) {
        int rows = std::clamp((1 << 14) / pictures.width, 1, pictures.height);
        while (pictures.height % rows != 0) --rows;
        return rows;
    }

    cv::Mat source_;
    cv::Mat result_;
    int rows_;
    FilterGraph graph_;
    std::vector<cv::Mat> bytes_;
    cv::Mat planes_[3];
};

PeerRun planarLookUp(const PeerPictures& pictures) {
    const auto work = std::make_shared<PlanarLookUp>(pictures);
    return {[=] { work->run(); }, [=] { return work->outcome(); }};
}

#endif

}  // namespace

Library libavfilter() {
    const unsigned version = avfilter_version();
    Library library = {
        "libavfilter " + std::to_string(version >> 16) + "." + std::to_string(version >> 8 & 255) + "." +
            std::to_string(version & 255),
        {
            {"InvertPXK", "negate", 0, filtered("negate=components=r+g+b")},
            {"ChangeCustomPXK(0.9, 8)", "lutrgb", 1, filtered("lutrgb=r=val*0.9+8:g=val*0.9+8:b=val*0.9+8")},
            {"PictureLut3DPXK.Run", "lut3d", 1, lookUp},
        }};
#ifdef PXK_WITH_OPENCV
    library.routes.push_back(
        {"PictureLut3DPXK.Run", "lut3d on planes of floats, split and merged by OpenCV", 1, planarLookUp});
#endif
    return library;
}

}  // namespace pxkbench
