/// The programs that are compared, and how each of them inverts a picture file.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace pxkbench {

/// A program's path, followed by its arguments.
using Command = std::vector<std::string>;

struct Program {
    std::string name;
    std::string version;
    /// The command that writes the inverse of the first picture file to the second, in the format of its extension:
    /// JPEG at quality 90, PNG with the program's default compression, and the program's defaults for everything else.
    std::function<Command(const std::string& from, const std::string& to)> invert;
};

struct Programs {
    std::vector<Program> present;     ///< pxk first
    std::vector<std::string> absent;  ///< the names of those that are not installed
};

/// Looks for the programs in /usr/bin, where packages install them, so that no wrapper elsewhere is measured instead.
/// Their output goes to `log`.
Programs findPrograms(const std::filesystem::path& log);

/// Has this process's children use one thread each.
void limitToOneThread();

/// Runs a command, its output going to `log`, and returns the CPU time in seconds, user and system, of the whole
/// process. Throws std::runtime_error with that output when the command fails.
double run(const Command& command, const std::filesystem::path& log);

}  // namespace pxkbench
