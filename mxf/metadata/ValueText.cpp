#include "mxf/metadata/ValueText.h"

#include "mxf/metadata/Values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

namespace TamrelMxf {
namespace {

constexpr std::size_t kListHeader = 8; ///< entry count and entry size

std::string HexText(std::span<const std::uint8_t> bytes, std::size_t most)
{
    std::string out = "<";
    for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), most))) {
        std::array<char, 4> text{};
        std::snprintf(text.data(), text.size(), "%02X", byte);
        if (out.size() > 1) out += ' ';
        out += text.data();
    }
    if (bytes.size() > most) out += " ... " + std::to_string(bytes.size()) + " bytes";
    return out + ">";
}

/// The text without control characters and cut, at a whole character, to `most` bytes.
std::string Printable(const std::string& text, std::size_t most)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool c1Control = byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0;
        const bool continues = (byte & 0xC0) == 0x80;
        if (out.size() >= most && !continues) return out + "...";
        if (byte < 0x20 || byte == 0x7F || c1Control) {
            out += "\uFFFD";
            i += c1Control ? 1 : 0;
        } else {
            out += text[i];
        }
    }
    return out;
}

template <std::integral T> std::optional<std::string> NumberText(std::span<const std::uint8_t> value)
{
    const auto number = Values::Number<T>(value);
    if (!number) return std::nullopt;
    return std::to_string(*number);
}

std::string FloatText(double number)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.7g", number);
    return text.data();
}

/// IEEE 754 number with `exponentBits` and `mantissaBits`.
double Ieee(std::uint32_t bits, unsigned exponentBits, unsigned mantissaBits)
{
    const std::uint32_t mantissa = bits & ((1U << mantissaBits) - 1);
    const std::uint32_t exponent = (bits >> mantissaBits) & ((1U << exponentBits) - 1);
    const double sign = (bits >> (mantissaBits + exponentBits)) & 1 ? -1.0 : 1.0;
    const int bias = (1 << (exponentBits - 1)) - 1;
    const double fraction = std::ldexp(mantissa, -static_cast<int>(mantissaBits));
    if (exponent == (1U << exponentBits) - 1) return mantissa == 0 ? sign * HUGE_VAL : std::nan("");
    if (exponent == 0) return sign * std::ldexp(fraction, 1 - bias);
    return sign * std::ldexp(1.0 + fraction, static_cast<int>(exponent) - bias);
}

/// SMPTE RDD 18: a signed power of ten in the upper four bits, a signed mantissa in the lower twelve.
double LensNumber(std::uint16_t bits)
{
    const int exponent = (bits >> 12) >= 8 ? (bits >> 12) - 16 : bits >> 12;
    const int mantissa = (bits & 0xFFF) >= 0x800 ? (bits & 0xFFF) - 0x1000 : bits & 0xFFF;
    return mantissa * std::pow(10.0, exponent);
}

std::string LabelText(const SUl& label, const SValueStyle& style)
{
    if (label.IsSmpte()) {
        std::string text = ToText(label);
        const std::string_view name = style.labelName ? style.labelName(label) : std::string_view{};
        return name.empty() ? text : std::string(name) + " (" + text + ")";
    }
    SUUID swapped; // a UUID where a label is expected has its halves swapped
    if ((label.bytes[0] & 0x80) == 0) return ToText(SUUID::From(label.bytes.data()));
    std::rotate_copy(label.bytes.begin(), label.bytes.begin() + 8, label.bytes.end(), swapped.bytes.begin());
    return ToText(swapped);
}

/// Component code and depth by turns, ended by two zeros: "R10 G10 B10".
std::string PixelLayoutText(std::span<const std::uint8_t> value)
{
    std::string out;
    for (; value.size() >= 2 && value[0] != 0; value = value.subspan(2)) {
        if (!out.empty()) out += ' ';
        if (value[0] > 0x20 && value[0] < 0x7F)
            out += static_cast<char>(value[0]);
        else
            out += '?';
        out += value[1] == 253 ? "half" : std::to_string(value[1]);
    }
    return out;
}

std::string PrimerText(std::span<const std::uint8_t> value, const SValueStyle& style)
{
    const Values::SList list = Values::List(value, 2 + SUl::kSize);
    std::string out = "[";
    for (std::size_t i = 0; i < std::min(list.count, style.mostEntries); ++i) {
        std::array<char, 8> tag{};
        std::snprintf(tag.data(), tag.size(), "%02X%02X ", list[i][0], list[i][1]);
        if (i != 0) out += ", ";
        out += tag.data() + ToText(SUl::From(&list[i][2]));
    }
    if (list.count > style.mostEntries) out += ", ... " + std::to_string(list.count) + " entries";
    return out + "]";
}

std::optional<std::string> SingleText(EValue kind, std::span<const std::uint8_t> value, const SValueStyle& style)
{
    const auto text = [](const auto& read) -> std::optional<std::string> {
        if (!read) return std::nullopt;
        if constexpr (requires { Values::ToText(*read); })
            return Values::ToText(*read);
        else
            return ToText(*read);
    };
    switch (kind) {
    case EValue::boolean:
        if (value.empty()) return std::nullopt;
        return *Values::Number<bool>(value.first(1)) ? "true" : "false";
    case EValue::uint8: return NumberText<std::uint8_t>(value);
    case EValue::uint16: return NumberText<std::uint16_t>(value);
    case EValue::uint32: return NumberText<std::uint32_t>(value);
    case EValue::uint64: return NumberText<std::uint64_t>(value);
    case EValue::int8: return NumberText<std::int8_t>(value);
    case EValue::int16: return NumberText<std::int16_t>(value);
    case EValue::int32: return NumberText<std::int32_t>(value);
    case EValue::int64: return NumberText<std::int64_t>(value);
    case EValue::position:
    case EValue::length:
        if (Values::Number<std::int64_t>(value) == -1) return "unknown";
        return NumberText<std::int64_t>(value);
    case EValue::float16:
        if (value.size() != 2) return std::nullopt;
        return FloatText(Ieee(*Values::Number<std::uint32_t>(value), 5, 10));
    case EValue::float32:
        if (value.size() != 4) return std::nullopt;
        return FloatText(Ieee(*Values::Number<std::uint32_t>(value), 8, 23));
    case EValue::lensFloat:
        if (value.size() != 2) return std::nullopt;
        return FloatText(LensNumber(*Values::Number<std::uint16_t>(value)));
    case EValue::rational: return text(Values::Rational(value));
    case EValue::timestamp: return text(Values::Timestamp(value));
    case EValue::productVersion: return text(Values::ProductVersion(value));
    case EValue::utf16: return Printable(Values::Utf16(value), style.mostLetters);
    case EValue::utf8:
    case EValue::ascii: return Printable(Values::Utf8(value), style.mostLetters);
    case EValue::uuid:
    case EValue::strongRef:
    case EValue::weakRef: return text(Values::Uuid(value));
    case EValue::umid: return text(Values::Umid(value));
    case EValue::label:
        if (const auto label = Values::Label(value)) return LabelText(*label, style);
        return std::nullopt;
    case EValue::version:
        if (value.size() != 2) return std::nullopt;
        return std::to_string(value[0]) + "." + std::to_string(value[1]);
    case EValue::indirect:
        if (const auto read = Values::IndirectText(value)) return Printable(*read, style.mostLetters);
        return std::nullopt;
    case EValue::pixelLayout: return PixelLayoutText(value);
    case EValue::chromaticity:
        if (value.size() != 4) return std::nullopt;
        return FloatText(*Values::Number<std::uint16_t>(value.first(2)) * 0.00002) + ", " +
               FloatText(*Values::Number<std::uint16_t>(value.subspan(2)) * 0.00002);
    case EValue::primerEntries: return PrimerText(value, style);
    case EValue::bytes: break;
    }
    return std::nullopt;
}

/// The bytes of one entry of a value without a count; 0 when entries have no fixed size.
std::size_t EntrySize(EValue kind)
{
    switch (kind) {
    case EValue::uint8:
    case EValue::int8: return 1;
    case EValue::uint16:
    case EValue::int16: return 2;
    case EValue::chromaticity: return 4;
    default: return 0;
    }
}

/// The bytes of the first entry of a run.
std::size_t FirstOfRun(EValue kind, std::span<const std::uint8_t> value)
{
    std::size_t size = EntrySize(kind);
    if (kind == EValue::utf16) { // texts with a zero after each
        while (size + 2 <= value.size() && (value[size] | value[size + 1]) != 0)
            size += 2;
        size += 2;
    }
    return size == 0 ? value.size() : std::min(size, value.size());
}

} // namespace

const SPropertyDef* PropertyOf(const SSetDef* set, std::uint16_t tag, const CPrimerPack* primer)
{
    // The file's own word counts for dynamic tags: a few classes claim fixed tags in their range.
    if (tag >= CPrimerPack::kFirstDynamicTag && primer != nullptr) {
        if (const auto label = primer->LabelOf(tag)) return FindProperty(set, *label);
    }
    if (const SPropertyDef* property = FindProperty(set, tag)) return property;
    const auto label = primer == nullptr ? std::nullopt : primer->LabelOf(tag);
    return label ? FindProperty(set, *label) : nullptr;
}

std::string ValueText(const SPropertyDef* property, std::span<const std::uint8_t> value, const SValueStyle& style)
{
    if (property == nullptr) return HexText(value, style.mostBytes);
    const auto one = [&](std::span<const std::uint8_t> entry) {
        return SingleText(property->value, entry, style).value_or(HexText(entry, style.mostBytes));
    };
    if (property->shape == EShape::single) return one(value);

    std::string out = "[";
    if (property->shape == EShape::run) {
        for (std::size_t shown = 0; !value.empty(); ++shown) {
            if (shown != 0) out += ", ";
            if (shown == style.mostEntries) return out + "... " + std::to_string(value.size()) + " more bytes]";
            const std::size_t size = FirstOfRun(property->value, value);
            out += one(value.first(size));
            value = value.subspan(size);
        }
        return out + "]";
    }
    const Values::SList list = Values::List(value, 1);
    if (list.count == 0 && value.size() != kListHeader) return HexText(value, style.mostBytes);
    for (std::size_t i = 0; i < std::min(list.count, style.mostEntries); ++i) {
        if (i != 0) out += ", ";
        out += one(list[i]);
    }
    if (list.count > style.mostEntries) out += ", ... " + std::to_string(list.count) + " entries";
    return out + "]";
}

} // namespace TamrelMxf
