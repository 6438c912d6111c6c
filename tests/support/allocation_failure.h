/// Makes the plugin's own allocations fail, one at a time.
#pragma once

#include <cstddef>

namespace pxk::test {

/// While it lives, counts the arrays asked for with `new (std::nothrow)`, which is how the plugin allocates, and lets
/// one of them fail: `which` counts from 0. The test program replaces that operator, and the loaded plugin uses it.
class AllocationFailure {
  public:
    explicit AllocationFailure(std::size_t which);
    ~AllocationFailure();
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;

    /// Whether the allocation that was to fail has been asked for.
    bool happened() const;
};

/// Calls `attempt` once for each allocation that it makes, each time with another one failing, and a last time with
/// none failing. Returns the number of allocations.
template <class Attempt>
std::size_t failEveryAllocation(Attempt attempt) {
    for (std::size_t which = 0;; ++which) {
        const AllocationFailure failure(which);
        attempt();
        if (!failure.happened()) return which;
    }
}

}  // namespace pxk::test
