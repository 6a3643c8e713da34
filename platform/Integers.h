#pragma once

#include <cstdint>
#include <limits>

namespace zanfcp {

/// Signed 64-bit integer of all framework interfaces.
using NSInteger = std::int64_t;

/// Marks an integer argument or result as "not set".
inline constexpr NSInteger NSNotFound = std::numeric_limits<NSInteger>::max();

/// The same number where it stands for "greatest value" rather than "not set".
inline constexpr NSInteger NSIntegerMax = std::numeric_limits<NSInteger>::max();

} // namespace zanfcp
