/// A console picture whose image is replaced, for sizes that no memory holds.
#pragma once

#include <gd.h>

#include <vector>

#include "support/settings.h"

namespace pxk::test {

/// An image in which every row is the given one. While it lives, it is the image of every picture that is locked as a
/// libgd image.
class SubstituteImage {
  public:
    SubstituteImage(std::vector<int>& row, int height) : rows_(static_cast<std::size_t>(height), row.data()) {
        image_.sx = static_cast<int>(row.size());
        image_.sy = height;
        image_.trueColor = 1;
        image_.tpixels = rows_.data();
        current_ = &image_;
    }
    ~SubstituteImage() { current_ = nullptr; }
    SubstituteImage(const SubstituteImage&) = delete;
    SubstituteImage& operator=(const SubstituteImage&) = delete;

    /// Calls `use(host, picture)` in a console host of the plugin, and returns its result.
    template <class Use>
    auto run(Use use) {
        Options options;
        options.plugin = pluginPath();
        Host host(options);
        host.replaceService("REALLockPictureDescription", reinterpret_cast<void*>(lock));
        host.replaceService("unlockPictureDescription", reinterpret_cast<void*>(unlock));
        const auto result = use(host, Picture::console(1, 1));
        closeCleanly(host);
        return result;
    }

  private:
    static bool lock(REALpictureStruct*, REALpictureDescription* description, std::int32_t wantedType) {
        if (wantedType != gdImageType) return false;
        description->type = gdImageType;
        description->platformImage = current_;
        description->width = current_->sx;
        description->height = current_->sy;
        return true;
    }
    static void unlock(REALpictureStruct*) {}

    static inline gdImage* current_ = nullptr;

    std::vector<int*> rows_;
    gdImage image_{};
};

}  // namespace pxk::test
