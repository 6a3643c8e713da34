#pragma once

#include <cstddef>
#include <cstdint>

namespace TamrelMxf {

/// What a hostile or broken file may cost at most. Every loop, recursion and allocation that a file
/// controls is held against one of these figures or against the bytes that are really there.

} // namespace TamrelMxf
