#include "cli/Text.h"

#include "platform/Format.h"
#include "xml/XMLText.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <iterator>

namespace zanfcp::cli {
namespace {

struct Range {
    char32_t first;
    char32_t last;
};

/// `ranges` ascend.
template <std::size_t N> bool isIn(const std::array<Range, N>& ranges, char32_t code)
{
    if (code < ranges.front().first) return false; // most characters
    const auto after = std::ranges::upper_bound(ranges, code, {}, &Range::first);
    return after != ranges.begin() && code <= std::prev(after)->last;
}

// Controls, and characters that change the order or the lines of what is shown.
constexpr auto kUnsafe = std::to_array<Range>({{0x00, 0x1F},
                                               {0x7F, 0x9F},
                                               {0x061C, 0x061C},
                                               {0x200E, 0x200F},
                                               {0x2028, 0x202E},
                                               {0x2066, 0x206F},
                                               {0xFFF9, 0xFFFB},
                                               {0xE0000, 0xE007F}});

constexpr auto kZeroWidth = std::to_array<Range>({{0x0300, 0x036F},
                                                  {0x0483, 0x0489},
                                                  {0x0591, 0x05BD},
                                                  {0x064B, 0x065F},
                                                  {0x093C, 0x093C},
                                                  {0x094D, 0x094D},
                                                  {0x0E31, 0x0E31},
                                                  {0x0E34, 0x0E3A},
                                                  {0x0E47, 0x0E4E},
                                                  {0x1AB0, 0x1AFF},
                                                  {0x1DC0, 0x1DFF},
                                                  {0x200B, 0x200D},
                                                  {0x20D0, 0x20FF},
                                                  {0x302A, 0x302D},
                                                  {0x3099, 0x309A},
                                                  {0xFE00, 0xFE0F},
                                                  {0xFE20, 0xFE2F},
                                                  {0xFEFF, 0xFEFF},
                                                  {0xE0100, 0xE01EF}});

constexpr auto kWide = std::to_array<Range>(
    {{0x1100, 0x115F},   {0x231A, 0x231B},   {0x23E9, 0x23EC},   {0x25FD, 0x25FE},   {0x2614, 0x2615},
     {0x26A1, 0x26A1},   {0x2705, 0x2705},   {0x2728, 0x2728},   {0x274C, 0x274C},   {0x2753, 0x2755},
     {0x2757, 0x2757},   {0x2795, 0x2797},   {0x2B50, 0x2B50},   {0x2E80, 0x303E},   {0x3041, 0x33FF},
     {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},
     {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F004, 0x1F004},
     {0x1F0CF, 0x1F0CF}, {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F200, 0x1F320}, {0x1F32D, 0x1F335},
     {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3}, {0x1F3E0, 0x1F3F0},
     {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC}, {0x1F4FF, 0x1F53D},
     {0x1F54B, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596}, {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F},
     {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC},
     {0x1F7E0, 0x1F7EB}, {0x1F90C, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD}});

} // namespace

std::string printable(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto [length, code, allowed] = readXmlCharacter(text);
        const std::string_view bytes = text.substr(0, length);
        text.remove_prefix(length);
        if (!isIn(kUnsafe, code)) // broken UTF-8 has the code 0
            out += bytes;
        else if (code >= 0x100)
            out += format("\\u{%04X}", static_cast<unsigned>(code));
        else
            for (const char byte : bytes)
                out += format("\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(byte)));
    }
    return out;
}

std::size_t displayWidth(std::string_view text)
{
    std::size_t columns = 0;
    while (!text.empty()) {
        const XMLCharacter character = readXmlCharacter(text);
        text.remove_prefix(character.length);
        if (!isIn(kZeroWidth, character.code)) columns += isIn(kWide, character.code) ? 2 : 1;
    }
    return columns;
}

Table::Table(std::vector<std::string> headings) : rows_{std::move(headings)} {}

void Table::addRow(std::vector<std::string> cells)
{
    assert(cells.size() == rows_.front().size());
    for (std::string& cell : cells)
        cell = printable(cell);
    rows_.push_back(std::move(cells));
}

std::string Table::text() const
{
    constexpr std::size_t kGap = 2;
    std::vector<std::size_t> widths(rows_.front().size(), 0);
    for (std::size_t column = 0; column < widths.size(); ++column) {
        for (std::size_t row = 1; row < rows_.size(); ++row)
            widths[column] = std::max(widths[column], displayWidth(rows_[row][column]));
        if (widths[column] != 0) widths[column] = std::max(widths[column], displayWidth(rows_[0][column]));
    }
    std::string out;
    for (const auto& row : rows_) {
        std::string line;
        std::size_t pad = 0;
        for (std::size_t column = 0; column < widths.size(); ++column) {
            if (widths[column] == 0) continue;
            if (!row[column].empty()) { // the gap before a cell, so that no line ends in blanks
                line.append(pad, ' ');
                line += row[column];
                pad = 0;
            }
            pad += widths[column] + kGap - displayWidth(row[column]);
        }
        out += line + "\n";
    }
    return out;
}

} // namespace zanfcp::cli
