#include "bench/peers/filter_graph.h"

#include <stdexcept>

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
}

namespace pxkbench {
namespace {

void expect(int result, const std::string& what) {
    if (result < 0) throw std::runtime_error("libavfilter: " + what);
}

void freeNothing(void* /*opaque*/, std::uint8_t* /*data*/) {}

}  // namespace

void FilterGraph::FreeGraph::operator()(AVFilterGraph* graph) const { avfilter_graph_free(&graph); }
void FilterGraph::FreeFrame::operator()(AVFrame* frame) const { av_frame_free(&frame); }

FilterGraph::FilterGraph(const std::string& filters, const char* pixelFormat, int width, int height)
    : graph_(avfilter_graph_alloc()), input_(av_frame_alloc()), output_(av_frame_alloc()) {
    av_log_set_level(AV_LOG_ERROR);
    graph_->nb_threads = 1;
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    const std::string format = pixelFormat;
    const std::string chain = "buffer@in=video_size=" + size + ":pix_fmt=" + format + ":time_base=1/1," + filters +
                              ",format=" + format + ",buffersink@out";
    AVFilterInOut* inputs = nullptr;
    AVFilterInOut* outputs = nullptr;
    expect(avfilter_graph_parse2(graph_.get(), chain.c_str(), &inputs, &outputs), chain);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    expect(avfilter_graph_config(graph_.get(), nullptr), chain);
    source_ = avfilter_graph_get_filter(graph_.get(), "buffer@in");
    sink_ = avfilter_graph_get_filter(graph_.get(), "buffersink@out");
    if (source_ == nullptr || sink_ == nullptr)
        throw std::runtime_error("libavfilter did not keep the names of the source and the sink");
    input_->width = width;
    input_->height = height;
    input_->format = av_get_pix_fmt(pixelFormat);
}

void FilterGraph::setPlane(int plane, const void* pixels, int rowBytes) {
    auto* const bytes = static_cast<std::uint8_t*>(const_cast<void*>(pixels));
    const auto size = static_cast<std::size_t>(rowBytes) * static_cast<std::size_t>(input_->height);
    av_buffer_unref(&input_->buf[plane]);
    input_->buf[plane] = av_buffer_create(bytes, size, freeNothing, nullptr, AV_BUFFER_FLAG_READONLY);
    input_->data[plane] = bytes;
    input_->linesize[plane] = rowBytes;
}

const AVFrame& FilterGraph::run() {
    av_frame_unref(output_.get());
    expect(av_buffersrc_write_frame(source_, input_.get()), "the source did not accept the frame");
    expect(av_buffersink_get_frame(sink_, output_.get()), "the sink gave no frame");
    return *output_;
}

}  // namespace pxkbench
