/// Numbers at the edges of what a member may be given.
#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace pxk::test {

inline constexpr std::array extremeDoubles = {0.0,
                                              -0.0,
                                              0.5,
                                              -0.5,
                                              1.0,
                                              -1.0,
                                              -2.0,
                                              0.1,
                                              1.7,
                                              -3.3,
                                              100.0,
                                              254.99999999999997,
                                              255.0,
                                              -255.0,
                                              300.0,
                                              -300.0,
                                              8421504.5,
                                              2147483647.0,
                                              2147483648.0,
                                              -2147483648.0,
                                              -2147483649.0,
                                              4294967296.0,
                                              1e12,
                                              -1e12,
                                              1e300,
                                              std::numeric_limits<double>::max(),
                                              std::numeric_limits<double>::lowest(),
                                              std::numeric_limits<double>::denorm_min(),
                                              std::numeric_limits<double>::infinity(),
                                              -std::numeric_limits<double>::infinity(),
                                              std::numeric_limits<double>::quiet_NaN()};

inline constexpr std::array<std::int32_t, 19> extremeIntegers = {0,
                                                                 1,
                                                                 -1,
                                                                 2,
                                                                 -255,
                                                                 -256,
                                                                 255,
                                                                 -510,
                                                                 1000,
                                                                 -1000,
                                                                 65536,
                                                                 -65536,
                                                                 8421504,
                                                                 -8421505,
                                                                 1 << 24,
                                                                 1 << 30,
                                                                 -(1 << 30),
                                                                 std::numeric_limits<std::int32_t>::max(),
                                                                 std::numeric_limits<std::int32_t>::min()};

}  // namespace pxk::test
