#include "tool/terminal/report.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>

#include "chain/error.h"
#include "chain/text.h"

namespace pxk::tool {

void report(std::string_view message) {
    std::cout.flush();
    std::string lines = "pxk: ";
    while (true) {
        const std::size_t end = std::min(message.find('\n'), message.size());
        lines += chain::printable(message.substr(0, end)) + '\n';
        if (end == message.size()) break;
        message.remove_prefix(end + 1);
    }
    std::cerr << lines << std::flush;
}

std::string shownName(const std::string& name) { return ::isatty(STDOUT_FILENO) == 1 ? chain::printable(name) : name; }

void flushOutput() {
    errno = 0;
    if (!std::cout.flush()) {
        const int error = errno;
        throw chain::WorkError("cannot write to standard output" +
                               (error != 0 ? ": " + std::string(std::strerror(error)) : ""));
    }
}

}  // namespace pxk::tool
