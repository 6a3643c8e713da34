#pragma once

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// A SMPTE universal label or KLV key: 16 bytes, most significant first (SMPTE ST 298, ST 336).
/// Byte numbers of the standards count from 1; `bytes` counts from 0.
struct SUl {
    static constexpr std::size_t kSize = 16;
    std::array<std::uint8_t, kSize> bytes{};

    friend constexpr auto operator<=>(const SUl&, const SUl&) = default;

    /// The label that starts at `data`, of which at least 16 bytes are readable.
    static constexpr SUl From(const std::uint8_t* data)
    {
        SUl ul;
        std::copy_n(data, kSize, ul.bytes.begin());
        return ul;
    }
    /// True for a label of the SMPTE register: 06 0E 2B 34 comes first. A UUID in the place of a label
    /// has its halves swapped and therefore a first byte above 7F.
    constexpr bool IsSmpte() const
    {
        return bytes[0] == 0x06 && bytes[1] == 0x0E && bytes[2] == 0x2B && bytes[3] == 0x34;
    }
    /// Equal apart from byte 8, the version of the register that named the label (SMPTE ST 298).
    constexpr bool MatchesAnyVersion(const SUl& other) const
    {
        return std::equal(bytes.begin(), bytes.begin() + 7, other.bytes.begin()) &&
               std::equal(bytes.begin() + 8, bytes.end(), other.bytes.begin() + 8);
    }
    /// Bytes 9 to 16 as one number: what names the label once category and version are left aside.
    constexpr std::uint64_t Item() const
    {
        std::uint64_t value = 0;
        for (std::size_t i = 8; i < kSize; ++i)
            value = (value << 8) | bytes[i];
        return value;
    }
};

} // namespace TamrelMxf
