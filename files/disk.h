/// Whole files on disk, read at once and replaced at once.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace pxkfiles {

/// The bytes of a file, its first ones only when `most` is smaller.
/// @throws FileProblem when it is missing, unreadable, empty, too large or no ordinary file
std::vector<std::uint8_t> readBytes(const char* path, std::uint64_t most);

/// Writes a file beside its place and then renames it, so that a failure leaves what was there before. A replaced file
/// hands on its permissions; a symbolic link is followed.
/// @throws FileProblem or std::filesystem::filesystem_error
void replaceFile(const char* path, std::span<const std::uint8_t> bytes);

/// Deletes the files that have not taken their place yet. Safe in a signal handler.
void removeUnfinishedFiles();

}  // namespace pxkfiles
