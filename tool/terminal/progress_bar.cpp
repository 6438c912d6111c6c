#include "tool/terminal/progress_bar.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <iostream>
#include <string_view>

#include "chain/text.h"

namespace pxk::tool {
namespace {

constexpr std::string_view emptyLine = "\r\x1b[K";

/// The bar on the terminal, if there is one, where a signal handler finds it.
std::atomic<ProgressBar*> shownBar = nullptr;
static_assert(std::atomic<ProgressBar*>::is_always_lock_free);

constexpr std::size_t usualWidth = 80;
constexpr std::size_t longestBar = 30;

std::size_t terminalWidth() {
    winsize size{};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : usualWidth;
}

/// The first characters of UTF-8 text.
std::string firstCharacters(const std::string& text, std::size_t count) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        const bool starts = (static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U;
        if (starts && count-- == 0) break;
    }
    return text.substr(0, end);
}

}  // namespace

ProgressBar::ProgressBar(std::size_t total, bool wanted)
    : total_(total), enabled_(wanted && ::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() { clear(); }

void ProgressBar::show(std::size_t done, const std::string& name) {
    if (!enabled_) return;
    shownBar = this;
    // One column stays free, since a full line would wrap on some terminals.
    std::cerr << '\r' << progressText(done, total_, name, terminalWidth() - 1) << "\x1b[K" << std::flush;
}

void ProgressBar::clear() {
    if (shownBar != this) return;
    std::cerr << emptyLine << std::flush;
    shownBar = nullptr;
}

void ProgressBar::eraseInterrupted() {
    if (shownBar == nullptr) return;
    // A terminal that is gone needs no empty line.
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, emptyLine.data(), emptyLine.size());
}

std::string progressText(std::size_t done, std::size_t total, const std::string& name, std::size_t width) {
    const std::size_t length = std::min(longestBar, width / 3);
    const std::size_t filled = total == 0 ? 0 : length * std::min(done, total) / total;
    const std::string all = std::to_string(total);
    std::string count = std::to_string(done);
    count.insert(0, all.size() - std::min(all.size(), count.size()), ' ');
    std::string line = "[";
    line.append(filled, '#').append(length - filled, '-').append("] ");
    line.append(count).append("/").append(all).append(" ").append(chain::printable(name));
    return firstCharacters(line, width);
}

}  // namespace pxk::tool
