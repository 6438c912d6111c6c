/// Keeps C libraries from printing.
#pragma once

#include <cstdio>

namespace pxkhost {

/// Keeps C libraries from printing on stderr while it lives: libpng's warnings and the AV1 decoder's remarks have no
/// other switch within reach. glibc lets its stream variables be assigned; elsewhere the words come through.
class QuietStderr {
  public:
#ifdef __GLIBC__
    QuietStderr() : kept_(stderr), nowhere_(std::fopen("/dev/null", "w")) {
        if (nowhere_ != nullptr) stderr = nowhere_;
    }
    ~QuietStderr() {
        stderr = kept_;
        if (nowhere_ != nullptr) std::fclose(nowhere_);
    }
#else
    QuietStderr() = default;
    ~QuietStderr() = default;
#endif
    QuietStderr(const QuietStderr&) = delete;
    QuietStderr& operator=(const QuietStderr&) = delete;

#ifdef __GLIBC__
  private:
    std::FILE* kept_;
    std::FILE* nowhere_;
#endif
};

}  // namespace pxkhost
