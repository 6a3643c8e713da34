#pragma once

#include <cstdint>
#include <string>

namespace zanfcp {

/// A four-character code: four bytes, most significant first, as media files and events carry them.
struct FourCC {
    std::uint32_t value = 0;

    constexpr FourCC() = default;
    constexpr explicit FourCC(std::uint32_t code) : value{code} {}
    /// From a literal of exactly four characters: `FourCC{"moov"}`.
    constexpr explicit FourCC(const char (&text)[5])
        : value{static_cast<std::uint32_t>(static_cast<unsigned char>(text[0])) << 24 |
                static_cast<std::uint32_t>(static_cast<unsigned char>(text[1])) << 16 |
                static_cast<std::uint32_t>(static_cast<unsigned char>(text[2])) << 8 |
                static_cast<std::uint32_t>(static_cast<unsigned char>(text[3]))}
    {}

    friend constexpr bool operator==(FourCC, FourCC) = default;

    /// The four bytes as printable ASCII, for messages; a byte outside 0x20 to 0x7E becomes '?'.
    std::string text() const
    {
        std::string out;
        for (int shift = 24; shift >= 0; shift -= 8) {
            const auto byte = static_cast<unsigned char>(value >> shift);
            out += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
        }
        return out;
    }
};

} // namespace zanfcp
