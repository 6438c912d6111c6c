/// One video filter chain of libavfilter, on one thread.
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
    /// `filters` as the program ffmpeg takes them; `pixelFormat` is a name such as "bgra" and is that of the result
    /// too. Throws when libavfilter refuses any of it.
    FilterGraph(const std::string& filters, const char* pixelFormat, int width, int height);

    /// The frame that is filtered, to be pointed at memory of the caller's with `setPlane` for each of its planes.
    void setPlane(int plane, const void* pixels, int rowBytes);

    /// Filters the frame; what comes out is libavfilter's, from memory that it uses again, and lasts until the next
    /// call.
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
