#include "xml/XMLText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace zanfcp {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

template <std::size_t N> bool within(const std::array<Range, N>& ranges, char32_t code)
{
    return std::any_of(ranges.begin(), ranges.end(),
                       [code](const Range& range) { return code >= range.first && code <= range.last; });
}

/// Production 4, NameStartChar, without the colon.
constexpr auto kNameStart = std::to_array<Range>({{U'A', U'Z'},
                                                  {U'_', U'_'},
                                                  {U'a', U'z'},
                                                  {0xC0, 0xD6},
                                                  {0xD8, 0xF6},
                                                  {0xF8, 0x2FF},
                                                  {0x370, 0x37D},
                                                  {0x37F, 0x1FFF},
                                                  {0x200C, 0x200D},
                                                  {0x2070, 0x218F},
                                                  {0x2C00, 0x2FEF},
                                                  {0x3001, 0xD7FF},
                                                  {0xF900, 0xFDCF},
                                                  {0xFDF0, 0xFFFD},
                                                  {0x10000, 0xEFFFF}});

/// What production 4a, NameChar, adds.
constexpr auto kNameMore =
    std::to_array<Range>({{U'-', U'.'}, {U'0', U'9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}});

/// A lead byte's sequence: its length, and the second bytes that it allows (table 3-7 of the Unicode Standard).
struct Sequence {
    std::size_t length;
    std::uint8_t secondFirst = 0x80;
    std::uint8_t secondLast = 0xBF;
};

Sequence sequenceOf(std::uint8_t lead)
{
    if (lead >= 0xC2 && lead <= 0xDF) return {2};
    if (lead == 0xE0) return {3, 0xA0, 0xBF};
    if (lead == 0xED) return {3, 0x80, 0x9F};
    if (lead >= 0xE1 && lead <= 0xEF) return {3};
    if (lead == 0xF0) return {4, 0x90, 0xBF};
    if (lead >= 0xF1 && lead <= 0xF3) return {4};
    if (lead == 0xF4) return {4, 0x80, 0x8F};
    return {1};
}

bool isAllowed(char32_t code)
{
    if (code < 0x20) return code == U'\t' || code == U'\n' || code == U'\r';
    return code != 0xFFFE && code != 0xFFFF;
}

} // namespace

XMLCharacter readXmlCharacter(std::string_view text)
{
    const auto lead = static_cast<std::uint8_t>(text.front());
    if (lead < 0x80) return {.length = 1, .code = lead, .allowed = isAllowed(lead)};

    const Sequence sequence = sequenceOf(lead);
    if (sequence.length == 1) return {.length = 1};
    char32_t code = lead & (0x7Fu >> sequence.length);
    for (std::size_t i = 1; i < sequence.length; ++i) {
        if (i == text.size()) return {.length = i};
        const auto byte = static_cast<std::uint8_t>(text[i]);
        const bool fits =
            i == 1 ? byte >= sequence.secondFirst && byte <= sequence.secondLast : (byte & 0xC0u) == 0x80u;
        if (!fits) return {.length = i};
        code = code << 6 | (byte & 0x3Fu);
    }
    return {.length = sequence.length, .code = code, .allowed = isAllowed(code)};
}

bool isUtf8(std::string_view text)
{
    while (!text.empty()) {
        const XMLCharacter character = readXmlCharacter(text);
        if (character.code == 0 && text.front() != '\0') return false;
        text.remove_prefix(character.length);
    }
    return true;
}

bool isXmlName(std::string_view text)
{
    if (text.empty()) return false;
    for (std::size_t at = 0; at < text.size();) {
        const XMLCharacter character = readXmlCharacter(text.substr(at));
        if (!character.allowed) return false;
        if (!within(kNameStart, character.code) && (at == 0 || !within(kNameMore, character.code))) return false;
        at += character.length;
    }
    return true;
}

XMLCleanText cleanXmlText(std::string_view text)
{
    XMLCleanText clean;
    clean.text.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const XMLCharacter character = readXmlCharacter(text.substr(at));
        clean.text += character.allowed ? text.substr(at, character.length) : kReplacementCharacter;
        if (!character.allowed) ++clean.replaced;
        at += character.length;
    }
    return clean;
}

std::string printableXmlText(std::string_view text)
{
    std::string clean = cleanXmlText(text).text;
    for (std::size_t at = 0; (at = clean.find_first_of("\t\n\r", at)) != std::string::npos;)
        clean.replace(at, 1, kReplacementCharacter);
    return clean;
}

} // namespace zanfcp
