#pragma once

#include "../labels/Ul.h"
#include "Identifiers.h"

#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// An exact ratio as it is stored; nothing is reduced.
struct SRational {
    std::int32_t num = 0;
    std::int32_t den = 0;

    friend constexpr bool operator==(const SRational&, const SRational&) = default;
    /// Fit to be a rate or an aspect: both parts above zero.
    constexpr bool IsPositive() const { return num > 0 && den > 0; }
    /// As a number; 0 when the denominator is.
    constexpr double ToDouble() const { return den == 0 ? 0.0 : static_cast<double>(num) / den; }
};

/// A date and time of UTC (SMPTE ST 377-1, 4.3).
struct STimestamp {
    std::int16_t year = 0;
    std::uint8_t month = 0;
    std::uint8_t day = 0;
    std::uint8_t hour = 0;
    std::uint8_t minute = 0;
    std::uint8_t second = 0;
    std::uint8_t quarterMilliseconds = 0; ///< in units of 4 ms, 0 to 249

    friend constexpr bool operator==(const STimestamp&, const STimestamp&) = default;
    /// False for the all zero timestamp, which says that the time is not known.
    constexpr bool IsKnown() const { return *this != STimestamp{}; }
};

/// The version of a program: major, minor, tertiary, patch.
struct SProductVersion {
    std::uint16_t major = 0, minor = 0, tertiary = 0, patch = 0;
    std::uint16_t release = 0; ///< 0 unknown, 1 released, 2 development, 3 patched, 4 beta, 5 private build

    friend constexpr bool operator==(const SProductVersion&, const SProductVersion&) = default;
};

/// Readers of the values of items. Each takes the whole value, borrowed for the call, and answers nothing when the
/// value is too short for its type.
namespace Values {

/// A big-endian number of as many bytes as there are, up to eight: writers do not always keep to the width of the
/// register. Nothing when it is empty, longer, or does not fit T.
template <std::integral T> std::optional<T> Number(std::span<const std::uint8_t> value)
{
    if (value.empty() || value.size() > 8) return std::nullopt;
    std::uint64_t bits = 0;
    for (const std::uint8_t byte : value)
        bits = (bits << 8) | byte;
    if constexpr (std::is_same_v<T, bool>) {
        return bits != 0;
    } else if constexpr (std::is_signed_v<T>) {
        const unsigned spare = 64 - 8 * static_cast<unsigned>(value.size());
        const std::int64_t number = static_cast<std::int64_t>(bits << spare) >> spare;
        if (!std::in_range<T>(number)) return std::nullopt;
        return static_cast<T>(number);
    } else {
        if (!std::in_range<T>(bits)) return std::nullopt;
        return static_cast<T>(bits);
    }
}

std::optional<SRational> Rational(std::span<const std::uint8_t> value);
std::optional<STimestamp> Timestamp(std::span<const std::uint8_t> value);
std::optional<SProductVersion> ProductVersion(std::span<const std::uint8_t> value);
std::optional<SUl> Label(std::span<const std::uint8_t> value);
std::optional<SUUID> Uuid(std::span<const std::uint8_t> value);
std::optional<SUmid> Umid(std::span<const std::uint8_t> value);

/// UTF-16, big-endian, up to the first zero character or the end, as UTF-8. A lone surrogate becomes U+FFFD; an odd
/// byte at the end is ignored.
std::string Utf16(std::span<const std::uint8_t> value);
/// ISO 7-bit or UTF-8 up to the first zero or the end; bytes that are not UTF-8 become U+FFFD.
std::string Utf8(std::span<const std::uint8_t> value);

/// The entries of a batch or array: UInt32 count, UInt32 entry size, entries.
struct SList {
    std::size_t count = 0;     ///< entries that are there whole
    std::size_t entrySize = 0; ///< bytes, above 0 when there are entries
    std::span<const std::uint8_t> entries = {};

    std::span<const std::uint8_t> operator[](std::size_t index) const
    {
        return entries.subspan(index * entrySize, entrySize);
    }
};
/// The list in a value; empty for a value without entries, or with entries shorter than `leastEntrySize`.
SList List(std::span<const std::uint8_t> value, std::size_t leastEntrySize);

/// The entries of a list as numbers; those that do not fit T are 0.
template <std::integral T> std::vector<T> Numbers(std::span<const std::uint8_t> value)
{
    const SList list = List(value, 1);
    std::vector<T> numbers;
    if (list.entrySize > 8) return numbers;
    numbers.reserve(list.count);
    for (std::size_t i = 0; i < list.count; ++i)
        numbers.push_back(Number<T>(list[i]).value_or(T{}));
    return numbers;
}
/// The entries of a list of labels.
std::vector<SUl> Labels(std::span<const std::uint8_t> value);

/// The text of an indirect value: byte order, the 16-byte identifier of a type, the value in that type. Texts, numbers,
/// truth values and rationals are read; nothing for every other type.
std::optional<std::string> IndirectText(std::span<const std::uint8_t> value);

/// "2026-03-01 12:34:56.120"; "unknown" for the all zero timestamp.
std::string ToText(const STimestamp& timestamp);
/// "1.2.3.4 (released)".
std::string ToText(const SProductVersion& version);
/// "30000/1001".
std::string ToText(const SRational& rational);

} // namespace Values
} // namespace TamrelMxf
