#include "bench/processor.h"

#include <fstream>
#include <string_view>

namespace pxkbench {
namespace {

// The first value of a field such as "model name" in /proc/cpuinfo.
std::string processorField(std::string_view field) {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        const std::size_t colon = line.find(": ");
        if (line.starts_with(field) && colon != std::string::npos) return line.substr(colon + 2);
    }
    return "unknown";
}

// The data caches of the first processor, such as "L1 32K, L2 512K".
std::string caches() {
    std::string text;
    for (int index = 0; index < 8; ++index) {
        const std::string folder = "/sys/devices/system/cpu/cpu0/cache/index" + std::to_string(index) + "/";
        std::string level;
        std::string type;
        std::string size;
        std::ifstream(folder + "level") >> level;
        std::ifstream(folder + "type") >> type;
        std::ifstream(folder + "size") >> size;
        if (size.empty() || type == "Instruction") continue;
        text += (text.empty() ? "" : ", ") + ("L" + level) + " " + size;
    }
    return text.empty() ? "unknown caches" : text;
}

}  // namespace

std::string processorDescription() {
    return processorField("model name") + " (family " + processorField("cpu family") + ", model " +
           processorField("model") + "), " + caches();
}

}  // namespace pxkbench
