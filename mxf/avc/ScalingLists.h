#pragma once

#include "BitsReader.h"

#include <array>
#include <cstdint>

namespace TamrelMxf {

/// The scaling lists of a sequence or picture parameter set, in the order of transmission, zig-zag inside a list
/// (ITU-T H.264, table 7-2): 4x4 intra Y, Cb, Cr, 4x4 inter Y, Cb, Cr; 8x8 intra Y, inter Y, intra Cb, inter Cb,
/// intra Cr, inter Cr. Without any list of its own a stream uses 16 throughout.
struct SScalingLists {
    using TList4x4 = std::array<std::uint8_t, 16>;
    using TList8x8 = std::array<std::uint8_t, 64>;
    std::array<TList4x4, 6> lists4x4;
    std::array<TList8x8, 6> lists8x8;

    static SScalingLists Flat();
    /// Fall-back rule set A: the lists of tables 7-3 and 7-4.
    static SScalingLists Default();

    /// Reads the flags and lists of a parameter set. A list that is not transmitted is that of `fallBack` where it
    /// is the first of its kind, otherwise the one before it of the same kind.
    /// \param count     lists that are signalled, 6 to 12; the rest follow the rule
    /// \param fallBack  Default() in a sequence parameter set and for rule set A; the sequence's own for rule set B
    /// \return false when a delta is out of range or the bits end
    bool Read(CBitsReader& bits, unsigned count, const SScalingLists& fallBack);

    bool operator==(const SScalingLists&) const = default;
};

} // namespace TamrelMxf
