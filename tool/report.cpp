#include "report.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>

#include "error.h"
#include "text.h"

namespace pxk::tool {

void report(std::string_view message) {
    std::cout.flush();
    std::string lines = "pxk: ";
    while (true) {
        const std::size_t end = std::min(message.find('\n'), message.size());
        lines += printable(message.substr(0, end)) + '\n';
        if (end == message.size()) break;
        message.remove_prefix(end + 1);
    }
    std::cerr << lines << std::flush;
}

void flushOutput() {
    errno = 0;
    if (!std::cout.flush()) {
        const int error = errno;
        throw WorkError("standard output: " + std::string(error != 0 ? std::strerror(error) : "could not be written"));
    }
}

}  // namespace pxk::tool
