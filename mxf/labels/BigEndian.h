#pragma once

#include <cstdint>

namespace TamrelMxf {

/// Eight bytes as one number, the most significant first. Written out, since compilers make one instruction of that and
/// not of a loop.
constexpr std::uint64_t BigEndian64(const std::uint8_t* bytes)
{
    return std::uint64_t{bytes[0]} << 56 | std::uint64_t{bytes[1]} << 48 | std::uint64_t{bytes[2]} << 40 |
           std::uint64_t{bytes[3]} << 32 | std::uint64_t{bytes[4]} << 24 | std::uint64_t{bytes[5]} << 16 |
           std::uint64_t{bytes[6]} << 8 | std::uint64_t{bytes[7]};
}

} // namespace TamrelMxf
