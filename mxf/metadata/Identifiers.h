#pragma once

#include "../labels/Ul.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>

namespace TamrelMxf {

/// A UUID as MXF stores it, 16 bytes in network order (RFC 4122). Sets are told apart by one of these,
/// the Instance UID, and strong references name the set they own by it.
struct SUUID {
    static constexpr std::size_t kSize = 16;
    std::array<std::uint8_t, kSize> bytes{};

    friend constexpr auto operator<=>(const SUUID&, const SUUID&) = default;

    /// The UUID that starts at `data`, of which at least 16 bytes are readable.
    static constexpr SUUID From(const std::uint8_t* data)
    {
        SUUID uuid;
        std::copy_n(data, kSize, uuid.bytes.begin());
        return uuid;
    }
    constexpr bool IsZero() const { return *this == SUUID{}; }
};

/// A basic UMID, 32 bytes (SMPTE ST 330): the name of a package in all files that speak of it.
struct SUmid {
    static constexpr std::size_t kSize = 32;
    std::array<std::uint8_t, kSize> bytes{};

    friend constexpr auto operator<=>(const SUmid&, const SUmid&) = default;

    /// The UMID that starts at `data`, of which at least 32 bytes are readable.
    static constexpr SUmid From(const std::uint8_t* data)
    {
        SUmid umid;
        std::copy_n(data, kSize, umid.bytes.begin());
        return umid;
    }
    /// All zero: the end of a chain of packages (SMPTE ST 377-1).
    constexpr bool IsZero() const { return *this == SUmid{}; }
};

/// "06.0E.2B.34.04.01.01.01.0D.01.03.01.02.7F.01.00".
std::string ToText(const SUl& label);
/// "01234567-89ab-cdef-0123-456789abcdef".
std::string ToText(const SUUID& uuid);
/// 64 hexadecimal digits in two groups, label and number, separated by a dot.
std::string ToText(const SUmid& umid);

} // namespace TamrelMxf
