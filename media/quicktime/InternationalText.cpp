#include "media/quicktime/InternationalText.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace zanfcp::quicktime {
namespace {

/// Unicode of the upper half of Mac OS Roman.
constexpr auto kMacRoman = std::to_array<char16_t>({
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, // 0x80
    0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5, 0x00E7, 0x00E9, 0x00E8, // 0x88
    0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, // 0x90
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, // 0x98
    0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6, 0x00DF, // 0xA0
    0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, // 0xA8
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211, // 0xB0
    0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, // 0xB8
    0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, // 0xC0
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153, // 0xC8
    0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, // 0xD0
    0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, // 0xD8
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1, // 0xE0
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, // 0xE8
    0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC, // 0xF0
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7, // 0xF8
});

constexpr char32_t kReplacement = 0xFFFD;

void append(std::string& out, char32_t code)
{
    const auto put = [&out](char32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) {
        put(code);
        return;
    }
    if (code < 0x800) {
        put(0xC0 | code >> 6);
    } else {
        if (code < 0x10000) {
            put(0xE0 | code >> 12);
        } else {
            put(0xF0 | code >> 18);
            put(0x80 | (code >> 12 & 0x3F));
        }
        put(0x80 | (code >> 6 & 0x3F));
    }
    put(0x80 | (code & 0x3F));
}

/// Length of the well-formed UTF-8 sequence that `bytes` begins with; 0 for none. Source: RFC 3629.
std::size_t sequenceLength(std::span<const std::byte> bytes)
{
    const auto at = [bytes](std::size_t i) { return std::to_integer<unsigned>(bytes[i]); };
    const unsigned lead = at(0);
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xC2 && lead < 0xE0   ? 2
                               : lead >= 0xE0 && lead < 0xF0 ? 3
                               : lead >= 0xF0 && lead < 0xF5 ? 4
                                                             : 0;
    if (length == 0 || length > bytes.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((at(i) & 0xC0) != 0x80) return 0;
    const bool overlong = (lead == 0xE0 && at(1) < 0xA0) || (lead == 0xF0 && at(1) < 0x90);
    const bool surrogate = lead == 0xED && at(1) >= 0xA0;
    const bool beyondUnicode = lead == 0xF4 && at(1) >= 0x90;
    return overlong || surrogate || beyondUnicode ? 0 : length;
}

bool isUtf8(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) return false;
        bytes = bytes.subspan(length);
    }
    return true;
}

enum class Order { bigEndian, littleEndian };

std::optional<Order> byteOrderMark(std::span<const std::byte> bytes)
{
    if (bytes.size() < 2) return {};
    if (bytes[0] == std::byte{0xFE} && bytes[1] == std::byte{0xFF}) return Order::bigEndian;
    if (bytes[0] == std::byte{0xFF} && bytes[1] == std::byte{0xFE}) return Order::littleEndian;
    return {};
}

std::string decodeUtf16(std::span<const std::byte> bytes, Order order)
{
    const std::size_t units = bytes.size() / 2;
    const auto unit = [bytes, order](std::size_t i) {
        const auto first = std::to_integer<char32_t>(bytes[2 * i]);
        const auto second = std::to_integer<char32_t>(bytes[2 * i + 1]);
        return order == Order::bigEndian ? first << 8 | second : second << 8 | first;
    };
    std::string out;
    for (std::size_t i = 0; i < units && unit(i) != 0; ++i) {
        char32_t code = unit(i);
        if (code >= 0xD800 && code < 0xE000) {
            const char32_t low = i + 1 < units ? unit(i + 1) : 0;
            const bool isPair = code < 0xDC00 && low >= 0xDC00 && low < 0xE000;
            code = isPair ? 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00) : kReplacement;
            if (isPair) ++i;
        }
        append(out, code);
    }
    return out;
}

} // namespace

std::string decodeInternationalText(std::span<const std::byte> bytes)
{
    if (const auto order = byteOrderMark(bytes)) return decodeUtf16(bytes.subspan(2), *order);
    bytes = bytes.first(static_cast<std::size_t>(std::ranges::find(bytes, std::byte{0}) - bytes.begin()));
    std::string out;
    const bool unicode = isUtf8(bytes);
    for (const std::byte byte : bytes) {
        const auto value = std::to_integer<unsigned char>(byte);
        if (unicode || value < 0x80)
            out += static_cast<char>(value);
        else
            append(out, kMacRoman[value - 0x80U]);
    }
    return out;
}

} // namespace zanfcp::quicktime
