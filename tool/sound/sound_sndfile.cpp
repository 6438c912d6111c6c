/// Sound files read through libsndfile.
#include <fcntl.h>
#include <sndfile.h>
#include <unistd.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <numeric>

#include "chain/error.h"
#include "chain/text.h"
#include "tool/sound/sound.h"

namespace pxk::tool {
namespace {

constexpr std::size_t mostSamples = std::numeric_limits<std::int32_t>::max() / sizeof(float);
constexpr std::size_t valuesAtOnce = std::size_t{1} << 16U;

using SoundFile = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

/// Silences the decoders, which print warnings on standard error.
class Silence {
  public:
    Silence() : saved_(::dup(STDERR_FILENO)) {
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
    ~Silence() {
        ::dup2(saved_, STDERR_FILENO);
        ::close(saved_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    int saved_;
};

[[noreturn]] void fail(const std::string& path, const std::string& why) {
    throw chain::WorkError("cannot read sound " + chain::inQuotes(path) + ": " + why);
}

/// Why the last file could not be opened.
std::string whyNotOpened() {
    constexpr std::string_view systemError = "System error : ";
    std::string_view words = sf_strerror(nullptr);
    if (sf_error(nullptr) == SF_ERR_UNRECOGNISED_FORMAT) return "its format is unknown";
    if (!words.starts_with(systemError)) return "it is damaged or not supported";
    words.remove_prefix(systemError.size());
    return std::string(words.substr(0, words.find_last_not_of(".\n") + 1));
}

/// Whether a file ended before what its header states. The length of an MP3 file is an estimate, and some streams state
/// none.
bool isTruncated(const SF_INFO& info, std::size_t frames) {
    const bool isExact = (info.format & SF_FORMAT_TYPEMASK) != SF_FORMAT_MPEG && info.frames != SF_COUNT_MAX;
    return isExact && info.frames > 0 && frames < static_cast<std::uint64_t>(info.frames);
}

/// Appends the mean of each frame.
void appendMixed(std::vector<float>& samples, const float* values, std::size_t frames, std::size_t channels) {
    for (std::size_t i = 0; i < frames; ++i, values += channels) {
        samples.push_back(std::accumulate(values, values + channels, 0.0F) / static_cast<float>(channels));
    }
}

}  // namespace

std::vector<float> readSound(const std::string& path) {
    const Silence silence;
    SF_INFO info{};
    const SoundFile file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
    if (!file) fail(path, whyNotOpened());
    const auto channels = static_cast<std::size_t>(info.channels);
    std::vector<float> values(std::max<std::size_t>(valuesAtOnce / channels, 1) * channels);
    std::vector<float> samples;
    while (true) {
        const auto frames =
            sf_readf_float(file.get(), values.data(), static_cast<sf_count_t>(values.size() / channels));
        if (frames <= 0) break;
        appendMixed(samples, values.data(), static_cast<std::size_t>(frames), channels);
        if (samples.size() > mostSamples) fail(path, "it has more than " + std::to_string(mostSamples) + " samples");
    }
    if (samples.empty()) fail(path, "it has no samples");
    if (isTruncated(info, samples.size())) {
        fail(path,
             "it ends after " + std::to_string(samples.size()) + " of its " + std::to_string(info.frames) + " samples");
    }
    return samples;
}

}  // namespace pxk::tool
