/// A chain of libavfilter's video filters, on one thread.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

struct AVFilterContext;
struct AVFilterGraph;
struct AVFrame;

namespace pxkbench {

class FilterGraph {
  public:
    /// `filters` is written as for the program ffmpeg; `pixelFormat`, such as "bgra", is that of input and output.
    /// Throws when libavfilter rejects either.
    FilterGraph(const std::string& filters, const char* pixelFormat, int width, int height);

    /// Sets a plane of the input frame to pixels that the caller owns; required for each plane before `run`.
    void setPlane(int plane, const void* pixels, int rowBytes);

    /// Filters the input frame. The output frame is owned by libavfilter and valid until the next call.
    const AVFrame& run();

  private:
    struct FreeGraph {
        void operator()(AVFilterGraph* graph) const;
    };
    struct FreeFrame {
        void operator()(AVFrame* frame) const;
    };
    std::unique_ptr<AVFilterGraph, FreeGraph> graph_;
    std::unique_ptr<AVFrame, FreeFrame> input_;
    std::unique_ptr<AVFrame, FreeFrame> output_;
    AVFilterContext* source_ = nullptr;
    AVFilterContext* sink_ = nullptr;
};

}  // namespace pxkbench
