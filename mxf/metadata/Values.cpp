#include "mxf/metadata/Values.h"

#include "platform/ByteReader.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace TamrelMxf::Values {
namespace {

using zanfcp::ByteReader;

constexpr char32_t kReplacement = 0xFFFD;

ByteReader Reader(std::span<const std::uint8_t> value)
{
    return ByteReader{std::as_bytes(value)};
}

bool IsSurrogate(char32_t c, char32_t first)
{
    return c >= first && c < first + 0x400;
}

void AppendUtf8(std::string& out, char32_t c)
{
    const auto put = [&](char32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (c < 0x80) {
        put(c);
        return;
    }
    if (c < 0x800) {
        put(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            put(0xE0 | (c >> 12));
        } else {
            put(0xF0 | (c >> 18));
            put(0x80 | ((c >> 12) & 0x3F));
        }
        put(0x80 | ((c >> 6) & 0x3F));
    }
    put(0x80 | (c & 0x3F));
}

enum class EByteOrder { big, little };

std::string Utf16In(std::span<const std::uint8_t> value, EByteOrder order)
{
    constexpr char32_t kHigh = 0xD800;
    constexpr char32_t kLow = 0xDC00;
    const auto unit = [&](std::size_t at) {
        const std::uint8_t first = value[at], second = value[at + 1];
        return static_cast<char32_t>(order == EByteOrder::big ? (first << 8) | second : (second << 8) | first);
    };
    std::string out;
    for (std::size_t at = 0; value.size() - at >= 2; at += 2) {
        char32_t c = unit(at);
        if (c == 0) break;
        if (IsSurrogate(c, kHigh) && value.size() - at >= 4 && IsSurrogate(unit(at + 2), kLow)) {
            c = 0x10000 + ((c - kHigh) << 10) + (unit(at + 2) - kLow);
            at += 2;
        } else if (IsSurrogate(c, kHigh) || IsSurrogate(c, kLow)) {
            c = kReplacement;
        }
        AppendUtf8(out, c);
    }
    return out;
}

/// The length of the UTF-8 sequence that starts `bytes`, 0 when it is not well formed (RFC 3629).
std::size_t SequenceLength(std::span<const std::uint8_t> bytes)
{
    const std::uint8_t lead = bytes[0];
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return 0;
    if (!std::ranges::all_of(bytes.subspan(1, length - 1), [](std::uint8_t b) { return (b & 0xC0) == 0x80; })) return 0;
    const std::uint8_t second = bytes[1];
    const bool tooLong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool outside = (lead == 0xED && second >= 0xA0) || (lead == 0xF4 && second >= 0x90);
    return tooLong || outside ? 0 : length;
}

/// The types that indirect values are met in, by the first four bytes of their AAF identifier
/// {xxxxxxxx-0000-0000-060E-2B34-01040101}.
enum class EIndirect : std::uint32_t {
    uint8 = 0x01010100,
    uint16 = 0x01010200,
    uint32 = 0x01010300,
    uint64 = 0x01010400,
    int8 = 0x01010500,
    int16 = 0x01010600,
    int32 = 0x01010700,
    int64 = 0x01010800,
    boolean = 0x01040100,
    utf16 = 0x01100200,
    rational = 0x03010100,
};

} // namespace

std::optional<SRational> Rational(std::span<const std::uint8_t> value)
{
    ByteReader reader = Reader(value);
    const auto num = reader.read<std::int32_t>();
    const auto den = reader.read<std::int32_t>();
    if (!reader.ok()) return std::nullopt;
    return SRational{num, den};
}

std::optional<STimestamp> Timestamp(std::span<const std::uint8_t> value)
{
    ByteReader reader = Reader(value);
    STimestamp time;
    time.year = reader.read<std::int16_t>();
    for (std::uint8_t* part :
         {&time.month, &time.day, &time.hour, &time.minute, &time.second, &time.quarterMilliseconds})
        *part = reader.read<std::uint8_t>();
    if (!reader.ok()) return std::nullopt;
    return time;
}

std::optional<SProductVersion> ProductVersion(std::span<const std::uint8_t> value)
{
    ByteReader reader = Reader(value);
    SProductVersion version;
    for (std::uint16_t* part : {&version.major, &version.minor, &version.tertiary, &version.patch, &version.release})
        *part = reader.read<std::uint16_t>();
    if (!reader.ok()) return std::nullopt;
    return version;
}

std::optional<SUl> Label(std::span<const std::uint8_t> value)
{
    if (value.size() < SUl::kSize) return std::nullopt;
    return SUl::From(value.data());
}

std::optional<SUUID> Uuid(std::span<const std::uint8_t> value)
{
    if (value.size() < SUUID::kSize) return std::nullopt;
    return SUUID::From(value.data());
}

std::optional<SUmid> Umid(std::span<const std::uint8_t> value)
{
    if (value.size() < SUmid::kSize) return std::nullopt;
    return SUmid::From(value.data());
}

std::string Utf16(std::span<const std::uint8_t> value)
{
    return Utf16In(value, EByteOrder::big);
}

std::string Utf8(std::span<const std::uint8_t> value)
{
    std::string out;
    while (!value.empty() && value[0] != 0) {
        const std::size_t length = SequenceLength(value);
        if (length == 0)
            AppendUtf8(out, kReplacement);
        else
            out.append(value.begin(), value.begin() + static_cast<std::ptrdiff_t>(length));
        value = value.subspan(std::max<std::size_t>(length, 1));
    }
    return out;
}

SList List(std::span<const std::uint8_t> value, std::size_t leastEntrySize)
{
    ByteReader reader = Reader(value);
    const std::size_t stated = reader.read<std::uint32_t>();
    const std::size_t size = reader.read<std::uint32_t>();
    if (!reader.ok() || size == 0 || size < leastEntrySize) return {};
    const std::span<const std::uint8_t> rest = value.last(reader.remaining());
    const std::size_t count = std::min(stated, rest.size() / size);
    return {.count = count, .entrySize = size, .entries = rest.first(count * size)};
}

std::vector<SUl> Labels(std::span<const std::uint8_t> value)
{
    const SList list = List(value, SUl::kSize);
    std::vector<SUl> labels;
    labels.reserve(list.count);
    for (std::size_t i = 0; i < list.count; ++i)
        labels.push_back(SUl::From(list[i].data()));
    return labels;
}

std::optional<std::string> IndirectText(std::span<const std::uint8_t> value)
{
    constexpr std::size_t kHeader = 1 + SUUID::kSize;
    constexpr std::array<std::uint8_t, 8> kTypeTail{0x06, 0x0E, 0x2B, 0x34, 0x01, 0x04, 0x01, 0x01};

    if (value.size() < kHeader || (value[0] != 'B' && value[0] != 'L')) return std::nullopt;
    const EByteOrder order = value[0] == 'B' ? EByteOrder::big : EByteOrder::little;
    const auto type = value.subspan(1, SUUID::kSize);
    if (!std::ranges::equal(type.last(kTypeTail.size()), kTypeTail)) return std::nullopt;

    // In little-endian order the first three fields of the identifier are turned round as well.
    std::array<std::uint8_t, 8> name{};
    std::copy_n(type.begin(), 4, name.begin());
    std::vector<std::uint8_t> content(value.begin() + kHeader, value.end());
    if (order == EByteOrder::little) std::reverse(name.begin(), name.begin() + 4);
    const auto kind = static_cast<EIndirect>(*Number<std::uint32_t>(std::span(name).first(4)));
    if (kind == EIndirect::utf16) return Utf16In(content, order);
    if (content.size() > 8) return std::nullopt;
    if (order == EByteOrder::little) std::ranges::reverse(content);

    const auto number = [&]<typename T>(T) -> std::optional<std::string> {
        const auto read = Number<T>(content);
        if (!read) return std::nullopt;
        return std::to_string(*read);
    };
    switch (kind) {
    case EIndirect::uint8:
    case EIndirect::uint16:
    case EIndirect::uint32:
    case EIndirect::uint64: return number(std::uint64_t{});
    case EIndirect::int8:
    case EIndirect::int16:
    case EIndirect::int32:
    case EIndirect::int64: return number(std::int64_t{});
    case EIndirect::boolean:
        if (content.empty()) return std::nullopt;
        return content.front() != 0 ? "true" : "false";
    case EIndirect::rational:
        if (content.size() != 8) return std::nullopt;
        // Turned round as a whole, the halves have changed places.
        if (order == EByteOrder::little) std::rotate(content.begin(), content.begin() + 4, content.end());
        return ToText(*Rational(content));
    case EIndirect::utf16: break;
    }
    return std::nullopt;
}

std::string ToText(const STimestamp& time)
{
    if (!time.IsKnown()) return "unknown";
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02u:%02u:%02u.%03u", time.year, time.month, time.day,
                  time.hour, time.minute, time.second, 4U * time.quarterMilliseconds);
    return text.data();
}

std::string ToText(const SProductVersion& version)
{
    constexpr std::array<const char*, 6> kReleases{"unknown", "released", "development",
                                                   "patched", "beta",     "private build"};
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%u.%u.%u.%u (%s)", version.major, version.minor, version.tertiary,
                  version.patch, kReleases[version.release < kReleases.size() ? version.release : 0]);
    return text.data();
}

std::string ToText(const SRational& rational)
{
    return std::to_string(rational.num) + "/" + std::to_string(rational.den);
}

} // namespace TamrelMxf::Values
