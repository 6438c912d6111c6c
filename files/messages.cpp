#include "files/messages.h"

#include <vips/vips.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <mutex>
#include <new>
#include <utility>

namespace pxkfiles {
namespace {

constexpr std::size_t longestName = 400;
constexpr std::size_t longestReason = 160;

std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return line;
}

/// The first thing that libvips complained about, without the name of its part: "libpng read error".
std::string firstReason() {
    std::string text = vips_error_buffer();
    text.resize(std::min(text.find('\n'), text.size()));
    const std::size_t colon = text.find(": ");
    if (colon != std::string::npos && text.find(' ') > colon) text.erase(0, colon + 2);
    if (text.size() > longestReason) text = text.substr(0, longestReason) + "...";
    return onOneLine(text);
}

bool containsOneOf(const std::string& text, std::initializer_list<const char*> parts) {
    return std::any_of(parts.begin(), parts.end(),
                       [&](const char* part) { return text.find(part) != std::string::npos; });
}

#ifdef __GLIBC__
// Several threads may read at a time; the last one lets stderr speak again.
struct SilencedStderr {
    std::mutex mutex;
    int users = 0;
    std::FILE* spoken = nullptr;
    std::FILE* nowhere = std::fopen("/dev/null", "w");
};

SilencedStderr& silencedStderr() {
    static SilencedStderr silenced;
    return silenced;
}
#endif

std::string inBrackets(const std::string& reason) { return reason.empty() ? "" : " (" + reason + ")"; }

/// Memory and what the libraries do not support are called so, whichever way the data goes.
std::string commonReason() {
    std::string reason = firstReason();
    const bool isLimit = containsOneOf(reason, {"ecurity limit"});  // libheif's, which files exceed by damage
    if (!isLimit && containsOneOf(reason, {"out of memory", "OUT_OF_MEMORY", "nsufficient memory", "emory alloc"}))
        throw std::bad_alloc();
    if (containsOneOf(reason, {"nsupported", "UNSUPPORTED", "not supported", "not configured", "nimplemented",
                               "not implemented", "not a whole number of bytes"}))
        throw FileProblem("this variant of the format is not supported" + inBrackets(reason));
    return reason;
}

}  // namespace

std::string quoted(std::string_view name) {
    std::string text(name);
    if (text.size() > longestName)
        text = text.substr(0, longestName / 2) + "..." + text.substr(text.size() - longestName / 2);
    return '"' + onOneLine(text) + '"';
}

void throwReadingProblem() { throw FileProblem("its data is cut short or damaged" + inBrackets(commonReason())); }

void throwWritingProblem() { throw FileProblem("it cannot be encoded" + inBrackets(commonReason())); }

void throwSystemProblem() { throw FileProblem(std::strerror(errno)); }

#ifdef __GLIBC__
QuietStderr::QuietStderr() {
    SilencedStderr& silenced = silencedStderr();
    const std::lock_guard lock(silenced.mutex);
    if (silenced.users++ > 0 || silenced.nowhere == nullptr) return;
    silenced.spoken = std::exchange(stderr, silenced.nowhere);
}

QuietStderr::~QuietStderr() {
    SilencedStderr& silenced = silencedStderr();
    const std::lock_guard lock(silenced.mutex);
    if (--silenced.users == 0 && silenced.nowhere != nullptr) stderr = silenced.spoken;
}
#else
QuietStderr::QuietStderr() = default;
QuietStderr::~QuietStderr() = default;
#endif

}  // namespace pxkfiles
