#pragma once

#include <compare>
#include <cstdint>

namespace zanfcp::quicktime {

/// An exact length of time.
struct MediaTime {
    std::uint64_t value = 0;     ///< units
    std::uint32_t timescale = 1; ///< units a second, > 0

    double seconds() const { return static_cast<double>(value) / timescale; }

    friend bool operator==(const MediaTime&, const MediaTime&) = default;
};

/// The longer of two times; `a` when they are equal.
inline MediaTime longer(MediaTime a, MediaTime b)
{
    __extension__ using Wide = unsigned __int128;
    return Wide{b.value} * a.timescale > Wide{a.value} * b.timescale ? b : a;
}

} // namespace zanfcp::quicktime
