/// The ways in which a chain fails.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace pxk::chain {

/// Work that could not be done: a file, the plugin or a member refused. The message is one line.
struct WorkError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A mistake in the text of a chain. `position` is the byte in that text where it shows.
struct ChainError : std::runtime_error {
    ChainError(std::size_t at, const std::string& message) : std::runtime_error(message), position(at) {}
    std::size_t position;
};

}  // namespace pxk::chain
